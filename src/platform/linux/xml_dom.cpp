#include "platform/xml_dom.h"

#include <algorithm>
#include <limits>

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/pattern.h>
#include <libxml/tree.h>
#include <libxml/xpath.h>

#include "platform/text.h"
#include "platform/xml_limits.h"

namespace qlx::platform {
namespace {

xmlNode* Raw(const XmlNode* node) {
  return reinterpret_cast<xmlNode*>(const_cast<XmlNode*>(node));
}
XmlNode* Handle(xmlNode* node) {
  return reinterpret_cast<XmlNode*>(node);
}

const char* Chars(const xmlChar* text) {
  return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

/// UTF-8 in the form that libxml2 takes; lives as long as the expression it stands in.
class XmlText {
 public:
  explicit XmlText(std::wstring_view text) : bytes_(ToUtf8(text)) {}
  operator const xmlChar*() const { return reinterpret_cast<const xmlChar*>(bytes_.c_str()); }

 private:
  std::string bytes_;
};

template <auto Free>
struct Deleter {
  template <typename T>
  void operator()(T* pointer) const {
    Free(pointer);
  }
};

void FreeXmlChars(xmlChar* text) {
  xmlFree(text);
}

using Document = std::unique_ptr<xmlDoc, Deleter<xmlFreeDoc>>;
using ParserContext = std::unique_ptr<xmlParserCtxt, Deleter<xmlFreeParserCtxt>>;
using XPathContext = std::unique_ptr<xmlXPathContext, Deleter<xmlXPathFreeContext>>;
using XmlChars = std::unique_ptr<xmlChar, Deleter<FreeXmlChars>>;

bool IsOwnText(const xmlNode* node) {
  return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
}

bool IsOnlyText(const xmlNode* child) {
  return child != nullptr && child->type == XML_TEXT_NODE && child->next == nullptr;
}

bool IsBlankText(const xmlNode* node) {
  return node->type == XML_TEXT_NODE && xmlIsBlankNode(node) != 0;
}

/// The node after `node` in document order; null after the last one. No recursion, however deep the tree.
xmlNode* Next(xmlNode* node, int& depth) {
  if (node->children != nullptr && node->type == XML_ELEMENT_NODE) {
    ++depth;
    return node->children;
  }
  while (node != nullptr && node->next == nullptr) {
    node = node->parent;
    --depth;
    if (node == nullptr || node->type == XML_DOCUMENT_NODE) return nullptr;
  }
  return node == nullptr ? nullptr : node->next;
}

/// A reference that is still there after the parse names an entity that nobody declared. The text of the
/// deepest element stands a level below it.
bool IsWithinBounds(xmlDoc* document) {
  int depth = 1;
  for (xmlNode* node = document->children; node != nullptr; node = Next(node, depth)) {
    if (node->type == XML_ENTITY_REF_NODE) return false;
    if (node->type == XML_ELEMENT_NODE && depth > kXmlDepthLimit) return false;
  }
  return true;
}

void DropBlankText(xmlNode* element) {
  for (xmlNode* child = element->children; child != nullptr;) {
    xmlNode* next = child->next;
    if (IsBlankText(child)) {
      xmlUnlinkNode(child);
      xmlFreeNode(child);
    }
    child = next;
  }
}

/// Blanks between child elements or comments only set them apart: true when `element` holds such and no other
/// text. A CDATA section counts as text even when it is empty.
bool HoldsNoText(const xmlNode* element) {
  bool others = false;
  for (const xmlNode* child = element->children; child != nullptr; child = child->next) {
    if (IsOwnText(child) && !IsBlankText(child)) return false;
    others = others || !IsOwnText(child);
  }
  return others;
}

void DropFormatting(xmlDoc* document) {
  int depth = 1;
  for (xmlNode* node = document->children; node != nullptr; node = Next(node, depth)) {
    if (node->type == XML_ELEMENT_NODE && HoldsNoText(node)) DropBlankText(node);
  }
}

/// What the parser passes over without calling the document ill-formed.
struct PassedOver {
  bool external_entity = false;
  bool undeclared_entity = false;
  bool copied_entity = false;
  bool broken_namespace = false;  ///< such as a prefix that nobody declared
  int attributes = 0;             ///< in all, with those that a document type gives
  bool too_many_attributes = false;

  bool any() const {
    return external_entity || undeclared_entity || copied_entity || broken_namespace || too_many_attributes;
  }
};

PassedOver& PassedOverBy(xmlParserCtxt* context) {
  return *static_cast<PassedOver*>(context->_private);
}

xmlParserInput* RefuseExternalEntity(const char*, const char*, xmlParserCtxt* context) {
  if (context != nullptr && context->_private != nullptr) PassedOverBy(context).external_entity = true;
  return nullptr;
}

void NoteError(void* context, xmlError* error) {
  PassedOver& passed_over = PassedOverBy(static_cast<xmlParserCtxt*>(context));
  if (error->code == XML_WAR_UNDECLARED_ENTITY) passed_over.undeclared_entity = true;
  if (error->domain == XML_FROM_NAMESPACE && error->level >= XML_ERR_ERROR)
    passed_over.broken_namespace = true;
}

/// The library bounds the growth of text only: each further use of an entity copies its nodes without bound,
/// so one that holds more than a text may be used once.
xmlEntity* EntityForUse(void* parser, const xmlChar* name) {
  xmlEntity* entity = xmlSAX2GetEntity(parser, name);
  const xmlNode* content = entity == nullptr ? nullptr : entity->children;
  if (content == nullptr || (content->type == XML_TEXT_NODE && content->next == nullptr)) return entity;
  auto* context = static_cast<xmlParserCtxt*>(parser);
  PassedOverBy(context).copied_entity = true;
  xmlStopParser(context);
  return nullptr;
}

/// A short document type can give every element of a document thousands of attributes, each of which the
/// library compares with all others; no count of the bytes foresees that.
void StartElement(void* parser, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                  int namespaces, const xmlChar** namespace_list, int attributes, int defaulted,
                  const xmlChar** attribute_list) {
  auto* context = static_cast<xmlParserCtxt*>(parser);
  PassedOver& passed_over = PassedOverBy(context);
  passed_over.attributes += attributes;
  if (attributes > kXmlAttributeLimit || passed_over.attributes > kXmlNodeLimit) {
    passed_over.too_many_attributes = true;
    xmlStopParser(context);
    return;
  }
  xmlSAX2StartElementNs(parser, name, prefix, uri, namespaces, namespace_list, attributes, defaulted,
                        attribute_list);
}

/// The loader is one for the whole process, and the toolkit reads its pictures with the same library.
class ScopedEntityLoader {
 public:
  ScopedEntityLoader() { xmlSetExternalEntityLoader(RefuseExternalEntity); }
  ScopedEntityLoader(const ScopedEntityLoader&) = delete;
  ScopedEntityLoader& operator=(const ScopedEntityLoader&) = delete;
  ~ScopedEntityLoader() { xmlSetExternalEntityLoader(before_); }

 private:
  xmlExternalEntityLoader before_ = xmlGetExternalEntityLoader();
};

void Quiet(void*, xmlError*) {}

/// What belongs to no document (a byte that its encoding has not) the library would write to standard error.
class QuietErrors {
 public:
  QuietErrors() { xmlSetStructuredErrorFunc(nullptr, Quiet); }
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;
  ~QuietErrors() { xmlSetStructuredErrorFunc(nullptr, nullptr); }
};

Document ParseStrictly(std::string_view bytes) {
  const ScopedEntityLoader loader;
  const QuietErrors quiet;
  const ParserContext context(xmlNewParserCtxt());
  if (!context || bytes.size() > std::numeric_limits<int>::max() || !WithinXmlLimits(bytes)) return nullptr;
  PassedOver passed_over;
  context->_private = &passed_over;
  context->sax->serror = NoteError;
  context->sax->getEntity = EntityForUse;
  context->sax->startElementNs = StartElement;
  // Entities are put in, within the library's bound on their growth; its bounds on depth and size stay on.
  constexpr int kOptions =
      XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_COMPACT;
  Document document(xmlCtxtReadMemory(context.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                      nullptr, kOptions));
  const bool accepted = document && !passed_over.any() && IsWithinBounds(document.get());
  return accepted ? std::move(document) : nullptr;
}

/// A query in two halves: which elements by name, in linear time, and which of these by their attributes. The
/// library's own evaluation of the whole takes quadratic time where sections are nested or repeated.
class Query {
 public:
  Query(const std::wstring& xpath, xmlDoc* document) : context_(xmlXPathNewContext(document)) {
    const std::size_t bracket = std::min(xpath.find(L'['), xpath.size());
    const std::wstring names = xpath.substr(0, bracket);
    names_.reset(xmlPatterncompile(XmlText(names), nullptr, 0, nullptr));
    const std::wstring last = names.substr(names.rfind(L'/') + 1);
    if (last.find_first_of(L":*@.(|") == std::wstring::npos) last_name_ = ToUtf8(last);
    if (bracket < xpath.size())
      predicate_.reset(xmlXPathCompile(XmlText(L"self::node()" + xpath.substr(bracket))));
    valid_ = names_ && context_ && (predicate_ || bracket == xpath.size());
  }
  bool valid() const { return valid_; }

  bool Selects(xmlNode* node) const {
    if (node->type != XML_ELEMENT_NODE || !MayMatch(node) || xmlPatternMatch(names_.get(), node) != 1) {
      return false;
    }
    if (!predicate_) return true;
    context_->node = node;
    return xmlXPathCompiledEvalToBoolean(predicate_.get(), context_.get()) == 1;
  }

 private:
  /// Rules most elements out before the pattern is tried, which costs more than the rest of the walk.
  bool MayMatch(const xmlNode* element) const {
    return last_name_.empty() || last_name_ == Chars(element->name);
  }

  QuietErrors quiet_;
  std::unique_ptr<xmlPattern, Deleter<xmlFreePattern>> names_;
  std::string last_name_;  ///< of the last step; empty when it is more than a name
  std::unique_ptr<xmlXPathCompExpr, Deleter<xmlXPathFreeCompExpr>> predicate_;
  XPathContext context_;
  bool valid_ = false;
};

/// Of an element or attribute.
template <typename Node>
std::wstring QualifiedName(const Node* node) {
  if (node->ns == nullptr || node->ns->prefix == nullptr) return FromUtf8(Chars(node->name));
  return FromUtf8(std::string(Chars(node->ns->prefix)) + ":" + Chars(node->name));
}

class LibxmlDom final : public XmlDom {
 public:
  LibxmlDom() : document_(NewDocument()) {}

  bool Parse(std::string_view bytes) override {
    document_.reset();
    document_ = ParseStrictly(bytes);
    if (document_) return true;
    document_ = NewDocument();
    return false;
  }

  std::string Serialise() const override {
    DropFormatting(document_.get());  // or the library would keep the old one and add none
    xmlChar* bytes = nullptr;
    int size = 0;
    xmlDocDumpFormatMemoryEnc(document_.get(), &bytes, &size, "UTF-8", 1);
    const XmlChars owner(bytes);
    return std::string(Chars(bytes), static_cast<std::size_t>(size));
  }

  bool CanBeParsedAgain(std::string_view bytes) const override {
    return xmlDocGetRootElement(document_.get()) != nullptr && IsWithinBounds(document_.get()) &&
           WithinXmlLimits(bytes);
  }

  std::vector<XmlNode*> Select(const std::wstring& xpath) const override {
    std::vector<XmlNode*> nodes;
    const Query query(xpath, document_.get());
    if (!query.valid()) return nodes;
    int depth = 1;
    for (xmlNode* node = document_->children; node != nullptr; node = Next(node, depth)) {
      if (query.Selects(node)) nodes.push_back(Handle(node));
    }
    return nodes;
  }

  std::wstring Name(const XmlNode* node) const override {
    const xmlNode* raw = Raw(node);
    return raw->type == XML_COMMENT_NODE ? L"#comment" : QualifiedName(raw);
  }

  std::wstring Text(const XmlNode* element) const override {
    const xmlNode* first = Raw(element)->children;
    if (IsOnlyText(first)) return FromUtf8(Chars(first->content));
    if (HoldsNoText(Raw(element))) return {};
    std::string text;
    for (const xmlNode* child = Raw(element)->children; child != nullptr; child = child->next) {
      if (IsOwnText(child)) text += Chars(child->content);
    }
    return FromUtf8(text);
  }

  void SetText(XmlNode* element, const std::wstring& text) override {
    xmlNode* parent = Raw(element);
    for (xmlNode* child = parent->children; child != nullptr;) {
      xmlNode* next = child->next;
      if (IsOwnText(child)) {
        xmlUnlinkNode(child);
        xmlFreeNode(child);
      }
      child = next;
    }
    if (text.empty()) return;
    xmlNode* own = xmlNewDocText(document_.get(), XmlText(text));
    xmlNode* others = parent->children;
    if (others == nullptr) {
      xmlAddChild(parent, own);
      return;
    }
    xmlAddPrevSibling(others, own);
    // Says to the next reader that these blanks are the value.
    if (IsBlankText(own)) xmlAddPrevSibling(others, xmlNewCDataBlock(document_.get(), nullptr, 0));
  }

  std::map<std::wstring, std::wstring> Attributes(const XmlNode* element) const override {
    std::map<std::wstring, std::wstring> attributes;
    for (const xmlAttr* attribute = Raw(element)->properties; attribute != nullptr;
         attribute = attribute->next) {
      attributes.emplace(QualifiedName(attribute), AttributeValue(attribute));
    }
    return attributes;
  }

  void SetAttribute(XmlNode* element, const std::wstring& name, const std::wstring& value) override {
    const XmlText text(name);
    if (xmlValidateQName(text, 0) == 0) xmlSetProp(Raw(element), text, XmlText(value));
  }

  std::vector<XmlNode*> Children(const XmlNode* element) const override {
    std::vector<XmlNode*> children;
    for (xmlNode* child = Raw(element)->children; child != nullptr; child = child->next) {
      if (child->type == XML_ELEMENT_NODE || child->type == XML_COMMENT_NODE)
        children.push_back(Handle(child));
    }
    return children;
  }

  XmlNode* Parent(const XmlNode* node) const override {
    xmlNode* parent = Raw(node)->parent;
    return parent != nullptr && parent->type == XML_ELEMENT_NODE ? Handle(parent) : nullptr;
  }

  XmlNode* Append(XmlNode* parent, const std::wstring& name) override {
    const XmlText text(name);
    if (xmlValidateNCName(text, 0) != 0) return nullptr;
    if (parent == nullptr && xmlDocGetRootElement(document_.get()) != nullptr) return nullptr;
    xmlNode* element = xmlNewDocNode(document_.get(), nullptr, text, nullptr);
    if (parent == nullptr) {
      xmlAddChild(reinterpret_cast<xmlNode*>(document_.get()), element);
    } else {
      xmlAddChild(Raw(parent), element);
      if (HoldsNoText(Raw(parent))) DropBlankText(Raw(parent));
    }
    return Handle(element);
  }

  void Remove(XmlNode* node) override {
    xmlUnlinkNode(Raw(node));
    xmlFreeNode(Raw(node));
  }

 private:
  /// Nearly always a value is one text node, which needs no copy.
  std::wstring AttributeValue(const xmlAttr* attribute) const {
    if (IsOnlyText(attribute->children)) return FromUtf8(Chars(attribute->children->content));
    const XmlChars value(xmlNodeListGetString(document_.get(), attribute->children, 1));
    return FromUtf8(Chars(value.get()));
  }

  static Document NewDocument() { return Document(xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"))); }

  Document document_;
};

}  // namespace

std::unique_ptr<XmlDom> CreateXmlDom() {
  return std::make_unique<LibxmlDom>();
}

}  // namespace qlx::platform
