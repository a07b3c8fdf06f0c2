#include "platform/windows/xml_entities.h"

#include <algorithm>
#include <set>
#include <vector>

#include "platform/windows/xml_document_type.h"
#include "platform/windows/xml_scanner.h"
#include "platform/xml_dom.h"

namespace qlx::platform {
namespace {

constexpr std::size_t kMostGrowth = 10'000'000;  // bytes that entities may add in all
constexpr std::size_t kDeepestUse = 40;          // entities within entities
constexpr std::string_view kPredefined[] = {"lt", "gt", "amp", "apos", "quot"};

/// Where a text stands: between tags, as a tag, or by reference in one of a tag's values.
enum class Place { kContent, kTag, kValue };

/// True when what opens in `text` is closed in it, and nothing else is: tags of a whole document are.
bool IsWhole(std::string_view text) {
  int depth = 0;
  XmlScanner scanner(text);
  while (const auto piece = scanner.Next()) {
    if (piece->kind == XmlPieceKind::kBroken || piece->kind == XmlPieceKind::kDocumentType) return false;
    if (piece->kind == XmlPieceKind::kStartTag) ++depth;
    if (piece->kind == XmlPieceKind::kEndTag && --depth < 0) return false;
  }
  return depth == 0;
}

/// In an attribute's value a quotation mark from an entity does not end it, and each blank is a space.
void AppendToValue(std::string_view text, std::string& out) {
  for (const char c : text) {
    if (c == '"') {
      out += "&#34;";
    } else if (c == '\'') {
      out += "&#39;";
    } else {
      out += IsXmlBlank(c) ? ' ' : c;
    }
  }
}

class Expander {
 public:
  explicit Expander(const XmlDocumentType& type) : type_(type) {}

  /// Appends `text` to `out`; false when it may not be.
  bool Content(std::string_view text, std::string& out) {
    XmlScanner scanner(text);
    while (const auto piece = scanner.Next()) {
      if (piece->kind == XmlPieceKind::kBroken) return false;
      if (!Piece(*piece, out)) return false;
    }
    return true;
  }

 private:
  bool Piece(const XmlPiece& piece, std::string& out) {
    const bool is_tag = piece.kind == XmlPieceKind::kStartTag || piece.kind == XmlPieceKind::kEmptyTag;
    if (piece.kind == XmlPieceKind::kText) return References(piece.text, Place::kContent, out);
    if (is_tag) return References(piece.text, Place::kTag, out);
    out += piece.text;
    return true;
  }

  /// `text` is a piece of content without markup, or a tag: a reference can stand only in one of its values.
  bool References(std::string_view text, Place place, std::string& out) {
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t reference = std::min(text.find('&', at), text.size());
      Literal(text.substr(at, reference - at), place, out);
      if (reference == text.size()) break;
      const std::size_t end = text.find(';', reference);
      if (end == std::string_view::npos) return false;
      if (!Reference(text.substr(reference, end + 1 - reference), place, out)) return false;
      at = end + 1;
    }
    return true;
  }

  static void Literal(std::string_view text, Place place, std::string& out) {
    if (place == Place::kValue) {
      AppendToValue(text, out);
    } else {
      out += text;
    }
  }

  /// `reference` is "&name;" or "&#number;".
  bool Reference(std::string_view reference, Place place, std::string& out) {
    const std::string_view name = reference.substr(1, reference.size() - 2);
    if (name.starts_with('#') || std::ranges::find(kPredefined, name) != std::end(kPredefined)) {
      out += reference;
      return true;
    }
    const auto found = type_.entities.find(name);
    if (found == type_.entities.end() || found->second.external) return false;
    if (open_.size() == kDeepestUse || std::ranges::find(open_, found->first) != open_.end()) return false;
    growth_ += found->second.text.size();
    if (growth_ > kMostGrowth) return false;
    open_.push_back(found->first);
    const bool put_in = PutIn(found->first, found->second.text, place, out);
    open_.pop_back();
    return put_in;
  }

  bool PutIn(const std::string& name, std::string_view text, Place place, std::string& out) {
    const bool in_content = place == Place::kContent;
    if (text.find('<') == std::string_view::npos)
      return References(text, in_content ? Place::kContent : Place::kValue, out);
    return in_content && IsWhole(text) && used_with_markup_.insert(name).second && Content(text, out);
  }

  const XmlDocumentType& type_;
  std::vector<std::string> open_;           ///< entities whose text is being put in
  std::set<std::string> used_with_markup_;  ///< each may be used once
  std::size_t growth_ = 0;
};

/// What a document says of itself before its content.
struct Surroundings {
  std::string_view document_type;  ///< empty when there is none
  int elements = 0;
};

Surroundings Look(std::string_view text) {
  Surroundings found;
  XmlScanner scanner(text);
  while (const auto piece = scanner.Next()) {
    if (piece->kind == XmlPieceKind::kDocumentType) found.document_type = piece->text;
    if (piece->kind == XmlPieceKind::kStartTag || piece->kind == XmlPieceKind::kEmptyTag) ++found.elements;
  }
  return found;
}

}  // namespace

std::optional<std::string> WithXmlEntities(std::string_view text) {
  const std::string_view document_type = Look(text).document_type;
  if (document_type.empty()) return std::string(text);
  const auto type = ReadXmlDocumentType(document_type);
  std::string expanded;
  if (!type || !Expander(*type).Content(text, expanded)) return std::nullopt;
  const auto given = static_cast<long long>(type->default_attributes) * Look(expanded).elements;
  if (type->default_attributes > kXmlAttributeLimit || given > kXmlNodeLimit) return std::nullopt;
  return expanded;
}

}  // namespace qlx::platform
