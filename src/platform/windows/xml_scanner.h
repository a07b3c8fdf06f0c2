// The pieces of a document's text, found by their delimiters alone: for the checks that have to come before
// the system's parser.
#pragma once

#include <optional>
#include <string_view>

namespace qlx::platform {

enum class XmlPieceKind {
  kText,
  kStartTag,
  kEmptyTag,
  kEndTag,
  kComment,
  kCdata,
  kInstruction,  ///< the declaration too
  kDocumentType,
  kBroken,  ///< begins like markup and never ends as such: not well-formed
};

/// `text` is a part of what is scanned, delimiters included.
struct XmlPiece {
  XmlPieceKind kind;
  std::string_view text;
};

/// Linear in the text. Pieces follow each other without a gap; says nothing about well-formedness within one.
class XmlScanner {
 public:
  /// `text` is UTF-8 and outlives the scanner.
  explicit XmlScanner(std::string_view text) : rest_(text) {}

  /// Empty at the end and after a broken piece.
  std::optional<XmlPiece> Next();

 private:
  XmlPiece Take(XmlPieceKind kind, std::size_t size);
  /// Up to and with `end`, looked for from `from` on.
  XmlPiece TakeTo(XmlPieceKind kind, std::string_view end, std::size_t from);
  XmlPiece TakeMarkup();
  XmlPiece TakeTag();
  XmlPiece TakeDocumentType();

  std::string_view rest_;
};

/// The name of a start, empty or end tag, of an instruction or of a declaration such as "<!ENTITY".
std::string_view XmlMarkupName(std::string_view markup);

/// One attribute of a tag as it is written.
struct XmlRawAttribute {
  std::string_view name;
  std::string_view value;  ///< without its quotes
};

/// The attributes of a tag in their order. Ends where something is no attribute, which no parser will take.
class XmlAttributeReader {
 public:
  explicit XmlAttributeReader(std::string_view tag);
  std::optional<XmlRawAttribute> Next();

 private:
  std::string_view rest_;
};

bool IsXmlBlank(char c);

}  // namespace qlx::platform
