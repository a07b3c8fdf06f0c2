#include "platform/windows/xml_document_type.h"

#include <algorithm>
#include <charconv>

#include <utf8.h>

#include "platform/windows/xml_scanner.h"

namespace qlx::platform {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

/// The character of a reference such as "#38" or "#x26"; empty when it is none.
std::optional<char32_t> ReferencedCharacter(std::string_view reference) {
  const bool hexadecimal = reference.starts_with("#x");
  const std::string_view digits = reference.substr(hexadecimal ? 2 : 1);
  std::uint32_t code = 0;
  const auto read =
      std::from_chars(digits.data(), digits.data() + digits.size(), code, hexadecimal ? 16 : 10);
  const bool whole = read.ec == std::errc() && read.ptr == digits.data() + digits.size();
  return whole && utf8::internal::is_code_point_valid(code) ? std::optional<char32_t>(code) : std::nullopt;
}

/// An entity's text as its declaration's value gives it: only character references are resolved yet.
std::optional<std::string> ReplacementText(std::string_view value) {
  std::string text;
  for (std::size_t at = 0; at < value.size();) {
    const std::size_t reference = std::min(value.find("&#", at), value.size());
    text += value.substr(at, reference - at);
    if (reference == value.size()) break;
    const std::size_t end = value.find(';', reference);
    if (end == kNone) return std::nullopt;
    const auto character = ReferencedCharacter(value.substr(reference + 1, end - reference - 1));
    if (!character) return std::nullopt;
    utf8::append(*character, std::back_inserter(text));
    at = end + 1;
  }
  return text;
}

std::string_view WithoutBlanks(std::string_view text) {
  while (!text.empty() && IsXmlBlank(text.front())) text.remove_prefix(1);
  return text;
}

/// `declaration` begins behind "<!ENTITY".
bool ReadEntity(std::string_view declaration, XmlDocumentType& type) {
  declaration = WithoutBlanks(declaration);
  const std::size_t end = declaration.find_first_of(" \t\r\n");
  if (end == kNone) return false;
  const std::string name(declaration.substr(0, end));
  declaration = WithoutBlanks(declaration.substr(end));
  if (declaration.empty()) return false;
  if (declaration.front() != '"' && declaration.front() != '\'') {
    type.entities.emplace(name, XmlEntity{{}, true});
    return true;
  }
  const std::size_t close = declaration.find(declaration.front(), 1);
  auto text = ReplacementText(declaration.substr(1, close - 1));
  if (!text) return false;
  type.entities.emplace(name, XmlEntity{std::move(*text), false});  // of two, the first counts
  return true;
}

bool RefersToEntity(std::string_view value) {
  constexpr std::string_view kHarmless[] = {"&#", "&lt;", "&gt;", "&amp;", "&apos;", "&quot;"};
  for (std::size_t at = value.find('&'); at != kNone; at = value.find('&', at + 1)) {
    const std::string_view rest = value.substr(at);
    if (std::ranges::none_of(kHarmless, [&](std::string_view known) { return rest.starts_with(known); }))
      return true;
  }
  return false;
}

/// Each quoted text in a list of attributes is the default value of one.
bool ReadAttributes(std::string_view declaration, XmlDocumentType& type) {
  for (std::size_t open = declaration.find_first_of("\"'"); open != kNone;) {
    const std::size_t close = declaration.find(declaration[open], open + 1);
    if (RefersToEntity(declaration.substr(open, close - open))) return false;
    ++type.default_attributes;
    open = declaration.find_first_of("\"'", close + 1);
  }
  return true;
}

/// The internal subset's text, empty when there is none.
std::string_view InternalSubset(std::string_view piece) {
  std::size_t at = piece.find_first_of("\"'[");
  while (at != kNone && piece[at] != '[') at = piece.find_first_of("\"'[", piece.find(piece[at], at + 1) + 1);
  return at == kNone ? std::string_view() : piece.substr(at + 1, piece.rfind(']') - at - 1);
}

bool ReadDeclaration(std::string_view declaration, XmlDocumentType& type) {
  const std::string_view name = XmlMarkupName(declaration);
  const std::string_view rest = declaration.substr(declaration.find(name) + name.size());
  if (name == "ENTITY") return ReadEntity(rest, type);
  return name != "ATTLIST" || ReadAttributes(rest, type);
}

/// How long the declaration, comment or instruction at the beginning of `subset` is.
std::size_t DeclarationSize(std::string_view subset) {
  if (subset.starts_with("<!--")) return subset.find("-->", 4);
  if (subset.starts_with("<?")) return subset.find("?>");
  std::size_t at = subset.find_first_of("\"'>");
  while (at != kNone && subset[at] != '>') {
    const std::size_t close = subset.find(subset[at], at + 1);
    at = close == kNone ? kNone : subset.find_first_of("\"'>", close + 1);
  }
  return at;
}

}  // namespace

std::string_view XmlDocumentTypeName(std::string_view piece) {
  const std::string_view name = WithoutBlanks(piece.substr(std::string_view("<!DOCTYPE").size()));
  return name.substr(0, name.find_first_of(" \t\r\n[>"));
}

std::optional<XmlDocumentType> ReadXmlDocumentType(std::string_view piece) {
  XmlDocumentType type;
  std::string_view subset = InternalSubset(piece);
  for (std::size_t at = subset.find('<'); at != kNone; at = subset.find('<')) {
    subset.remove_prefix(at);
    const std::size_t size = DeclarationSize(subset);
    if (size == kNone) return std::nullopt;
    const bool is_declaration = !subset.starts_with("<!--") && !subset.starts_with("<?");
    if (is_declaration && !ReadDeclaration(subset.substr(0, size), type)) return std::nullopt;
    subset.remove_prefix(size);
  }
  return type;
}

}  // namespace qlx::platform
