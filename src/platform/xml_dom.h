// One XML document in memory: what the configuration store needs of the platform's parser.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qlx::platform {

/// Deepest nesting of elements that a document may have; a deeper one counts as not well-formed.
inline constexpr int kXmlDepthLimit = 200;
/// Most attributes that one element may have; the parsers' own check for doubled ones is quadratic.
inline constexpr int kXmlAttributeLimit = 1000;
/// Most elements, comments and attributes that a document may have in all.
inline constexpr int kXmlNodeLimit = 500'000;

/// A node of an XmlDom, owned by it: valid until the node is removed, the next Select or the document parsed
/// anew.
class XmlNode;

/// Document object model of one document (XML 1.0). Used from one thread.
class XmlDom {
 public:
  virtual ~XmlDom() = default;

  /// Replaces the document. False, and an empty document, when `bytes` are not well-formed: strict, as to
  /// namespaces too, nothing is fetched, no external entity is read, no entity expanded without bound.
  /// Encodings: UTF-8, UTF-16 with mark, declared 8-bit sets.
  virtual bool Parse(std::string_view bytes) = 0;

  /// The document in UTF-8 with a declaration, one element a line, indented.
  virtual std::string Serialise() const = 0;

  /// True when Parse would take `bytes`, which Serialise has just given: the document has a root and has not
  /// grown past a limit.
  virtual bool CanBeParsedAgain(std::string_view bytes) const = 0;

  /// The elements that `xpath` selects, in document order; none when it is no valid expression. Of XPath 1.0
  /// the form "//name" with any number of "/name" or "//name" and at most one predicate behind. Linear in the
  /// document.
  virtual std::vector<XmlNode*> Select(const std::wstring& xpath) const = 0;

  /// An element's name as it is written, prefix included; "#comment" for a comment.
  virtual std::wstring Name(const XmlNode* node) const = 0;

  /// The element's own text, without that of its descendants. Blanks count, except where they only set child
  /// elements or comments apart.
  virtual std::wstring Text(const XmlNode* element) const = 0;
  /// Replaces the element's own text; its comments and child elements stay. `text` must hold nothing but
  /// characters of XML 1.0 (production 2).
  virtual void SetText(XmlNode* element, const std::wstring& text) = 0;

  virtual std::map<std::wstring, std::wstring> Attributes(const XmlNode* element) const = 0;
  /// Nothing happens when `name` is no XML name; of `value` the same is asked as of a text.
  virtual void SetAttribute(XmlNode* element, const std::wstring& name, const std::wstring& value) = 0;

  /// Child elements and comments in document order.
  virtual std::vector<XmlNode*> Children(const XmlNode* element) const = 0;
  /// Null when the parent is the document itself.
  virtual XmlNode* Parent(const XmlNode* node) const = 0;

  /// Adds a new element as the last child of `parent`, null meaning the document. Null when the document has
  /// a root already or `name` is no XML name without a colon.
  virtual XmlNode* Append(XmlNode* parent, const std::wstring& name) = 0;
  virtual void Remove(XmlNode* node) = 0;
};

/// An empty document. Null when the system has no parser.
std::unique_ptr<XmlDom> CreateXmlDom();

}  // namespace qlx::platform
