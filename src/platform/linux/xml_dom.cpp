#include "platform/xml_dom.h"

#include <algorithm>

#include <libxml/parser.h>
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
using XPathResult = std::unique_ptr<xmlXPathObject, Deleter<xmlXPathFreeObject>>;
using XmlChars = std::unique_ptr<xmlChar, Deleter<FreeXmlChars>>;

bool IsOwnText(const xmlNode* node) {
  return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
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

/// A reference that is still there after the parse names an entity that nobody declared.
bool IsWithinBounds(xmlDoc* document) {
  int depth = 1;
  for (xmlNode* node = document->children; node != nullptr; node = Next(node, depth)) {
    if (depth > kXmlDepthLimit || node->type == XML_ENTITY_REF_NODE) return false;
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

/// Blanks between child elements only set them apart: true when `element` holds such and no other text.
bool HoldsOnlyElements(const xmlNode* element) {
  bool elements = false;
  for (const xmlNode* child = element->children; child != nullptr; child = child->next) {
    if (IsOwnText(child) && !IsBlankText(child)) return false;
    elements = elements || child->type == XML_ELEMENT_NODE;
  }
  return elements;
}

void DropFormatting(xmlDoc* document) {
  int depth = 1;
  for (xmlNode* node = document->children; node != nullptr; node = Next(node, depth)) {
    if (node->type == XML_ELEMENT_NODE && HoldsOnlyElements(node)) DropBlankText(node);
  }
}

thread_local bool external_entity_wanted = false;

xmlParserInput* RefuseExternalEntity(const char*, const char*, xmlParserCtxt*) {
  external_entity_wanted = true;
  return nullptr;
}

void Quiet(void*, xmlError*) {}

Document ParseStrictly(std::string_view bytes) {
  xmlSetExternalEntityLoader(RefuseExternalEntity);
  const ParserContext context(xmlNewParserCtxt());
  if (!context || !WithinXmlLimits(bytes)) return nullptr;
  external_entity_wanted = false;
  // Entities are put in, within the library's bound on their growth; its bounds on depth and size stay on.
  constexpr int kOptions =
      XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_COMPACT;
  Document document(xmlCtxtReadMemory(context.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                      nullptr, kOptions));
  const bool accepted = document && !external_entity_wanted && IsWithinBounds(document.get());
  return accepted ? std::move(document) : nullptr;
}

class LibxmlDom final : public XmlDom {
 public:
  LibxmlDom() : document_(NewDocument()) {}

  bool Parse(std::string_view bytes) override {
    document_.reset();
    document_ = ParseStrictly(bytes);
    if (document_) {
      DropFormatting(document_.get());
      return true;
    }
    document_ = NewDocument();
    return false;
  }

  std::string Serialise() const override {
    xmlChar* bytes = nullptr;
    int size = 0;
    xmlDocDumpFormatMemoryEnc(document_.get(), &bytes, &size, "UTF-8", 1);
    const XmlChars owner(bytes);
    return std::string(Chars(bytes), static_cast<std::size_t>(size));
  }

  std::vector<XmlNode*> Select(const std::wstring& xpath) const override {
    const XPathContext context(xmlXPathNewContext(document_.get()));
    xmlSetStructuredErrorFunc(nullptr, Quiet);
    const XPathResult result(xmlXPathEvalExpression(XmlText(xpath), context.get()));
    xmlSetStructuredErrorFunc(nullptr, nullptr);
    std::vector<XmlNode*> nodes;
    if (!result || result->type != XPATH_NODESET || result->nodesetval == nullptr) return nodes;
    const xmlNodeSet& found = *result->nodesetval;
    for (int i = 0; i < found.nodeNr; ++i) {
      if (found.nodeTab[i]->type == XML_ELEMENT_NODE) nodes.push_back(Handle(found.nodeTab[i]));
    }
    return nodes;
  }

  std::wstring Name(const XmlNode* node) const override {
    const xmlNode* raw = Raw(node);
    if (raw->type == XML_COMMENT_NODE) return L"#comment";
    const std::string prefix = raw->ns != nullptr && raw->ns->prefix != nullptr ? Chars(raw->ns->prefix) : "";
    return FromUtf8(prefix.empty() ? Chars(raw->name) : prefix + ":" + Chars(raw->name));
  }

  std::wstring Text(const XmlNode* element) const override {
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
    if (parent->children == nullptr) {
      xmlAddChild(parent, own);
    } else {
      xmlAddPrevSibling(parent->children, own);
    }
  }

  std::map<std::wstring, std::wstring> Attributes(const XmlNode* element) const override {
    std::map<std::wstring, std::wstring> attributes;
    for (const xmlAttr* attribute = Raw(element)->properties; attribute != nullptr;
         attribute = attribute->next) {
      const XmlChars value(xmlNodeListGetString(document_.get(), attribute->children, 1));
      attributes.emplace(FromUtf8(Chars(attribute->name)), FromUtf8(Chars(value.get())));
    }
    return attributes;
  }

  void SetAttribute(XmlNode* element, const std::wstring& name, const std::wstring& value) override {
    xmlSetProp(Raw(element), XmlText(name), XmlText(value));
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
    if (xmlValidateName(text, 0) != 0) return nullptr;
    if (parent == nullptr && xmlDocGetRootElement(document_.get()) != nullptr) return nullptr;
    xmlNode* element = xmlNewDocNode(document_.get(), nullptr, text, nullptr);
    if (parent == nullptr) {
      xmlAddChild(reinterpret_cast<xmlNode*>(document_.get()), element);
    } else {
      xmlAddChild(Raw(parent), element);
      if (HoldsOnlyElements(Raw(parent))) DropBlankText(Raw(parent));
    }
    return Handle(element);
  }

  void Remove(XmlNode* node) override {
    xmlUnlinkNode(Raw(node));
    xmlFreeNode(Raw(node));
  }

 private:
  static Document NewDocument() { return Document(xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"))); }

  Document document_;
};

}  // namespace

std::unique_ptr<XmlDom> CreateXmlDom() {
  return std::make_unique<LibxmlDom>();
}

}  // namespace qlx::platform
