#include "platform/windows/xml_structure.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "platform/windows/xml_scanner.h"
#include "platform/xml_dom.h"

namespace qlx::platform {
namespace {

constexpr std::string_view kXmlUri = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view kXmlnsUri = "http://www.w3.org/2000/xmlns/";
constexpr std::string_view kDeclare = "xmlns";

struct QualifiedName {
  std::string_view prefix;  ///< empty for a name without a colon
  std::string_view local;
};

std::optional<QualifiedName> Split(std::string_view name) {
  const std::size_t colon = name.find(':');
  if (colon == std::string_view::npos) return QualifiedName{{}, name};
  const QualifiedName split{name.substr(0, colon), name.substr(colon + 1)};
  const bool valid =
      !split.prefix.empty() && !split.local.empty() && split.local.find(':') == std::string_view::npos;
  return valid ? std::optional(split) : std::nullopt;
}

struct Binding {
  std::string_view prefix;
  std::string_view uri;
};

bool MayBeBound(const Binding& binding) {
  const bool is_xml = binding.prefix == "xml";
  return is_xml == (binding.uri == kXmlUri) && binding.prefix != kDeclare && binding.uri != kXmlnsUri &&
         !(binding.uri.empty() && !binding.prefix.empty());
}

/// The prefixes that are declared where a walk through a document stands.
class Scopes {
 public:
  /// False when the tag breaks a rule.
  bool Enter(std::string_view tag) {
    marks_.push_back(bindings_.size());
    std::vector<QualifiedName> prefixed;
    XmlAttributeReader attributes(tag);
    while (const auto attribute = attributes.Next()) {
      const auto name = Split(attribute->name);
      if (!name || !Take(*name, attribute->value, prefixed)) return false;
    }
    const auto element = Split(XmlMarkupName(tag));
    return element && (element->prefix.empty() || Uri(element->prefix)) && AreDeclaredOnce(prefixed);
  }

  void Leave() {
    if (marks_.empty()) return;
    bindings_.resize(marks_.back());
    marks_.pop_back();
  }

  std::size_t depth() const { return marks_.size(); }

 private:
  bool Take(const QualifiedName& name, std::string_view value, std::vector<QualifiedName>& prefixed) {
    const bool is_default = name.prefix.empty() && name.local == kDeclare;
    if (is_default || name.prefix == kDeclare) {
      const Binding binding{is_default ? std::string_view() : name.local, value};
      bindings_.push_back(binding);
      return MayBeBound(binding);
    }
    if (!name.prefix.empty()) prefixed.push_back(name);
    return true;
  }

  std::optional<std::string_view> Uri(std::string_view prefix) const {
    if (prefix == "xml") return kXmlUri;
    const auto found = std::ranges::find(bindings_.rbegin(), bindings_.rend(), prefix, &Binding::prefix);
    return found == bindings_.rend() ? std::nullopt : std::optional(found->uri);
  }

  /// Two prefixes may stand for one namespace: then a name can be there twice without being spelled so.
  bool AreDeclaredOnce(const std::vector<QualifiedName>& prefixed) const {
    std::set<std::pair<std::string_view, std::string_view>> seen;
    return std::ranges::all_of(prefixed, [&](const QualifiedName& name) {
      const auto uri = Uri(name.prefix);
      return uri && seen.emplace(*uri, name.local).second;
    });
  }

  std::vector<Binding> bindings_;
  std::vector<std::size_t> marks_;  ///< for each open element, how many bindings are older
};

bool IsTag(const XmlPiece& piece) {
  return piece.kind == XmlPieceKind::kStartTag || piece.kind == XmlPieceKind::kEmptyTag;
}

}  // namespace

bool XmlStructureIsTaken(std::string_view text) {
  Scopes scopes;
  XmlScanner scanner(text);
  while (const auto piece = scanner.Next()) {
    if (piece->kind == XmlPieceKind::kBroken) return false;
    if (piece->kind == XmlPieceKind::kInstruction &&
        XmlMarkupName(piece->text).find(':') != std::string_view::npos)
      return false;
    if (IsTag(*piece) && (!scopes.Enter(piece->text) || scopes.depth() > kXmlDepthLimit)) return false;
    if (piece->kind == XmlPieceKind::kEmptyTag || piece->kind == XmlPieceKind::kEndTag) scopes.Leave();
  }
  return true;
}

}  // namespace qlx::platform
