#include "platform/windows/xml_scanner.h"

#include <algorithm>

namespace qlx::platform {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kCommentStart = "<!--";
constexpr std::string_view kCommentEnd = "-->";
constexpr std::string_view kCdataStart = "<![CDATA[";
constexpr std::string_view kInstructionStart = "<?";
constexpr std::string_view kInstructionEnd = "?>";
constexpr std::size_t kNone = std::string_view::npos;

/// Where the quoted text that begins at `at` ends, or kNone.
std::size_t QuoteEnd(std::string_view text, std::size_t at) {
  return text.find(text[at], at + 1);
}

/// The ">" of the markup at `from`, outside quotes; kNone when there is none.
std::size_t MarkupEnd(std::string_view text, std::size_t from) {
  std::size_t at = text.find_first_of("\"'>", from);
  while (at != kNone && text[at] != '>') {
    at = QuoteEnd(text, at);
    if (at != kNone) at = text.find_first_of("\"'>", at + 1);
  }
  return at;
}

/// The "]" that ends the internal subset whose "[" is before `at`.
std::size_t SubsetEnd(std::string_view text, std::size_t at) {
  while (at != kNone) {
    at = text.find_first_of("<]", at);
    if (at == kNone || text[at] == ']') return at;
    const std::string_view rest = text.substr(at);
    if (rest.starts_with(kCommentStart)) {
      at = text.find(kCommentEnd, at + kCommentStart.size());
    } else if (rest.starts_with(kInstructionStart)) {
      at = text.find(kInstructionEnd, at);
    } else {
      at = MarkupEnd(text, at);
    }
  }
  return kNone;
}

}  // namespace

bool IsXmlBlank(char c) {
  return kBlanks.find(c) != kNone;
}

std::optional<XmlPiece> XmlScanner::Next() {
  if (rest_.empty()) return std::nullopt;
  if (rest_.front() != '<') return Take(XmlPieceKind::kText, std::min(rest_.find('<'), rest_.size()));
  XmlPiece piece = TakeMarkup();
  if (piece.kind == XmlPieceKind::kBroken) rest_ = {};
  return piece;
}

XmlPiece XmlScanner::TakeMarkup() {
  if (rest_.starts_with(kCommentStart))
    return TakeTo(XmlPieceKind::kComment, kCommentEnd, kCommentStart.size());
  if (rest_.starts_with(kCdataStart)) return TakeTo(XmlPieceKind::kCdata, "]]>", kCdataStart.size());
  if (rest_.starts_with(kInstructionStart))
    return TakeTo(XmlPieceKind::kInstruction, kInstructionEnd, kInstructionStart.size());
  if (rest_.starts_with("<!DOCTYPE")) return TakeDocumentType();
  if (rest_.starts_with("<!")) return Take(XmlPieceKind::kBroken, rest_.size());
  return TakeTag();
}

XmlPiece XmlScanner::Take(XmlPieceKind kind, std::size_t size) {
  const XmlPiece piece{kind, rest_.substr(0, size)};
  rest_.remove_prefix(size);
  return piece;
}

XmlPiece XmlScanner::TakeTo(XmlPieceKind kind, std::string_view end, std::size_t from) {
  const std::size_t at = rest_.find(end, from);
  return at == kNone ? Take(XmlPieceKind::kBroken, rest_.size()) : Take(kind, at + end.size());
}

XmlPiece XmlScanner::TakeTag() {
  const std::size_t end = MarkupEnd(rest_, 0);
  if (end == kNone) return Take(XmlPieceKind::kBroken, rest_.size());
  if (rest_.starts_with("</")) return Take(XmlPieceKind::kEndTag, end + 1);
  return Take(rest_[end - 1] == '/' ? XmlPieceKind::kEmptyTag : XmlPieceKind::kStartTag, end + 1);
}

XmlPiece XmlScanner::TakeDocumentType() {
  std::size_t at = rest_.find_first_of("\"'[>");
  while (at != kNone && rest_[at] != '>') {
    at = rest_[at] == '[' ? SubsetEnd(rest_, at + 1) : QuoteEnd(rest_, at);
    if (at != kNone) at = rest_.find_first_of("\"'[>", at + 1);
  }
  return at == kNone ? Take(XmlPieceKind::kBroken, rest_.size()) : Take(XmlPieceKind::kDocumentType, at + 1);
}

std::string_view XmlMarkupName(std::string_view markup) {
  markup.remove_prefix(std::min(markup.find_first_not_of("</?!"), markup.size()));
  return markup.substr(0, markup.find_first_of(" \t\r\n/>?"));
}

XmlAttributeReader::XmlAttributeReader(std::string_view tag) : rest_(tag) {
  const std::string_view name = XmlMarkupName(tag);
  rest_.remove_prefix(static_cast<std::size_t>(name.data() - tag.data()) + name.size());
}

std::optional<XmlRawAttribute> XmlAttributeReader::Next() {
  rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
  const std::size_t name = std::min(rest_.find_first_of(" \t\r\n=/>"), rest_.size());
  const std::size_t equals = rest_.find_first_not_of(kBlanks, name);
  if (name == 0 || equals == kNone || rest_[equals] != '=') return std::nullopt;
  const std::size_t open = rest_.find_first_not_of(kBlanks, equals + 1);
  if (open == kNone || (rest_[open] != '"' && rest_[open] != '\'')) return std::nullopt;
  const std::size_t close = QuoteEnd(rest_, open);
  if (close == kNone) return std::nullopt;
  const XmlRawAttribute attribute{rest_.substr(0, name), rest_.substr(open + 1, close - open - 1)};
  rest_.remove_prefix(close + 1);
  return attribute;
}

}  // namespace qlx::platform
