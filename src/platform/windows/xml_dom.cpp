#include "platform/xml_dom.h"

#include <stdexcept>
#include <utility>

#include "platform/windows/XmlWriter.h"
#include "platform/windows/com.h"
#include "platform/windows/xml_loading.h"
#include "platform/windows/xml_names.h"
#include "platform/windows/xml_nodes.h"
#include "platform/windows/xml_selection.h"
#include "platform/windows/xml_structure.h"
#include "platform/xml_limits.h"

namespace qlx::platform {
namespace {

/// IXMLDOMElement
constexpr IID kElementInterface = {
    0x2933BF86, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

IXMLDOMNode* Raw(const XmlNode* node) {
  return reinterpret_cast<IXMLDOMNode*>(const_cast<XmlNode*>(node));
}

VARIANT InterfaceVariant(IUnknown* object) {
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = VT_UNKNOWN;
  variant.punkVal = object;
  return variant;
}

class MsxmlDom final : public XmlDom {
 public:
  MsxmlDom() : document_(NewXmlDocument()) {}

  bool ready() const { return document_ != nullptr; }

  bool Parse(std::string_view bytes) override {
    held_.clear();
    auto loaded = LoadXml(bytes);
    const bool taken = loaded.has_value();
    document_ = taken ? std::move(loaded->document) : NewXmlDocument();
    document_type_ = taken ? std::move(loaded->document_type) : std::string();
    if (!document_) throw std::runtime_error("Unable to create XML parser object");
    return taken;
  }

  std::string Serialise() const override { return XmlWriter().Document(document_.get(), document_type_); }

  bool CanBeParsedAgain(std::string_view bytes) const override {
    return HasRoot() && XmlStructureIsTaken(bytes) && WithinXmlLimits(bytes);
  }

  std::vector<XmlNode*> Select(const std::wstring& xpath) const override {
    held_.clear();
    return Held(SelectElements(document_.get(), xpath));
  }

  std::wstring Name(const XmlNode* node) const override { return NameOf(Raw(node)); }

  std::wstring Text(const XmlNode* element) const override {
    const auto children = ChildrenOf(Raw(element));
    std::wstring text;
    if (HoldNoText(children)) return text;
    for (const NodePtr& child : children) {
      if (IsOwnText(child.get())) text += ValueOf(child.get());
    }
    return text;
  }

  void SetText(XmlNode* element, const std::wstring& text) override {
    IXMLDOMNode* const parent = Raw(element);
    for (const NodePtr& child : ChildrenOf(parent)) {
      if (IsOwnText(child.get())) parent->removeChild(child.get(), nullptr);
    }
    if (text.empty()) return;
    const NodePtr others = FirstChild(parent);
    const auto own = NewText(text);
    if (!own) return;
    Insert(parent, own.get(), others.get());
    // Says to the next reader that these blanks are the value.
    if (others && IsBlankText(own.get())) InsertEmptySection(parent, others.get());
  }

  std::map<std::wstring, std::wstring> Attributes(const XmlNode* element) const override {
    std::map<std::wstring, std::wstring> attributes;
    for (auto& attribute : AttributesOf(Raw(element))) {
      if (!DeclaresNamespace(attribute))
        attributes.emplace(std::move(attribute.name), std::move(attribute.value));
    }
    return attributes;
  }

  void SetAttribute(XmlNode* element, const std::wstring& name, const std::wstring& value) override {
    if (!IsQualifiedXmlName(name)) return;
    const auto target = Got<IXMLDOMElement>([&](IXMLDOMElement** found) {
      return Raw(element)->QueryInterface(kElementInterface, reinterpret_cast<void**>(found));
    });
    const Bstr key(name);
    const Bstr text(value);
    if (target) target->setAttribute(key.get(), TextVariant(text));
  }

  std::vector<XmlNode*> Children(const XmlNode* element) const override {
    auto children = ChildrenOf(Raw(element));
    std::erase_if(children, [](const NodePtr& child) {
      const DOMNodeType type = TypeOf(child.get());
      return type != NODE_ELEMENT && type != NODE_COMMENT;
    });
    return Held(std::move(children));
  }

  XmlNode* Parent(const XmlNode* node) const override {
    auto parent = Got<IXMLDOMNode>([&](IXMLDOMNode** found) { return Raw(node)->get_parentNode(found); });
    return parent && TypeOf(parent.get()) == NODE_ELEMENT ? Held(std::move(parent)) : nullptr;
  }

  XmlNode* Append(XmlNode* parent, const std::wstring& name) override {
    if (!IsXmlName(name) || (parent == nullptr && HasRoot())) return nullptr;
    const Bstr tag(name);
    const auto element =
        Got<IXMLDOMElement>([&](IXMLDOMElement** made) { return document_->createElement(tag.get(), made); });
    if (!element) return nullptr;
    IXMLDOMNode* const under = parent == nullptr ? static_cast<IXMLDOMNode*>(document_.get()) : Raw(parent);
    auto added =
        Got<IXMLDOMNode>([&](IXMLDOMNode** child) { return under->appendChild(element.get(), child); });
    return added ? Held(std::move(added)) : nullptr;
  }

  void Remove(XmlNode* node) override {
    const auto parent =
        Got<IXMLDOMNode>([&](IXMLDOMNode** found) { return Raw(node)->get_parentNode(found); });
    if (parent) parent->removeChild(Raw(node), nullptr);
  }

 private:
  bool HasRoot() const {
    const auto get = [&](IXMLDOMElement** root) { return document_->get_documentElement(root); };
    return Got<IXMLDOMElement>(get) != nullptr;
  }

  /// Made empty and then filled: of a text that it is made with, the parser would turn carriage returns into
  /// line feeds.
  ComPtr<IXMLDOMText> NewText(const std::wstring& text) {
    const Bstr empty(L"");
    auto node =
        Got<IXMLDOMText>([&](IXMLDOMText** made) { return document_->createTextNode(empty.get(), made); });
    const Bstr value(text);
    if (node) node->put_nodeValue(TextVariant(value));
    return node;
  }

  /// `before` null means last.
  static void Insert(IXMLDOMNode* parent, IXMLDOMNode* node, IXMLDOMNode* before) {
    if (before == nullptr) {
      parent->appendChild(node, nullptr);
    } else {
      parent->insertBefore(node, InterfaceVariant(before), nullptr);
    }
  }

  void InsertEmptySection(IXMLDOMNode* parent, IXMLDOMNode* before) {
    const Bstr empty(L"");
    const auto section = Got<IXMLDOMCDATASection>(
        [&](IXMLDOMCDATASection** made) { return document_->createCDATASection(empty.get(), made); });
    if (section) Insert(parent, section.get(), before);
  }

  XmlNode* Held(NodePtr node) const {
    held_.push_back(std::move(node));
    return reinterpret_cast<XmlNode*>(held_.back().get());
  }

  std::vector<XmlNode*> Held(std::vector<NodePtr> nodes) const {
    std::vector<XmlNode*> handles;
    handles.reserve(nodes.size());
    for (NodePtr& node : nodes) handles.push_back(Held(std::move(node)));
    return handles;
  }

  ComApartment apartment_;
  XmlDocumentPtr document_;
  std::string document_type_;          ///< its text, which the parser does not give back
  mutable std::vector<NodePtr> held_;  ///< what the caller has been handed since the last selection
};

}  // namespace

std::unique_ptr<XmlDom> CreateXmlDom() {
  auto dom = std::make_unique<MsxmlDom>();
  return dom->ready() ? std::move(dom) : nullptr;
}

}  // namespace qlx::platform
