#include "platform/xml_dom.h"

#include <algorithm>
#include <iterator>

#include <libxml/tree.h>

#include "platform/linux/xml_loading.h"
#include "platform/linux/xml_nodes.h"
#include "platform/linux/xml_selection.h"
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

class LibxmlDom final : public XmlDom {
 public:
  LibxmlDom() : document_(NewDocument()) {}

  bool Parse(std::string_view bytes) override {
    document_.reset();
    document_ = LoadXml(bytes);
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
    std::ranges::transform(SelectNodes(xpath, document_.get()), std::back_inserter(nodes), Handle);
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

  static XmlDocument NewDocument() { return XmlDocument(xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"))); }

  XmlDocument document_;
};

}  // namespace

std::unique_ptr<XmlDom> CreateXmlDom() {
  return std::make_unique<LibxmlDom>();
}

}  // namespace qlx::platform
