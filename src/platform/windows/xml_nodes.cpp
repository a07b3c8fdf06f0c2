#include "platform/windows/xml_nodes.h"

#include <algorithm>

namespace qlx::platform {

DOMNodeType TypeOf(IXMLDOMNode* node) {
  DOMNodeType type = NODE_INVALID;
  node->get_nodeType(&type);
  return type;
}

std::wstring NameOf(IXMLDOMNode* node) {
  Bstr name;
  node->get_nodeName(name.out());
  return name.text();
}

std::wstring ValueOf(IXMLDOMNode* node) {
  VARIANT value;
  VariantInit(&value);
  std::wstring text;
  if (node->get_nodeValue(&value) == S_OK && value.vt == VT_BSTR)
    text.assign(value.bstrVal, value.bstrVal + SysStringLen(value.bstrVal));
  VariantClear(&value);
  return text;
}

std::wstring NamespaceOf(IXMLDOMNode* node) {
  Bstr uri;
  node->get_namespaceURI(uri.out());
  return uri.text();
}

NodePtr FirstChild(IXMLDOMNode* node) {
  return Got<IXMLDOMNode>([&](IXMLDOMNode** child) { return node->get_firstChild(child); });
}

NodePtr NextSibling(IXMLDOMNode* node) {
  return Got<IXMLDOMNode>([&](IXMLDOMNode** sibling) { return node->get_nextSibling(sibling); });
}

std::vector<NodePtr> ChildrenOf(IXMLDOMNode* node) {
  std::vector<NodePtr> children;
  const auto list =
      Got<IXMLDOMNodeList>([&](IXMLDOMNodeList** found) { return node->get_childNodes(found); });
  while (list) {
    auto child = Got<IXMLDOMNode>([&](IXMLDOMNode** next) { return list->nextNode(next); });
    if (!child) break;
    children.push_back(std::move(child));
  }
  return children;
}

std::vector<XmlAttribute> AttributesOf(IXMLDOMNode* element) {
  std::vector<XmlAttribute> attributes;
  const auto map =
      Got<IXMLDOMNamedNodeMap>([&](IXMLDOMNamedNodeMap** found) { return element->get_attributes(found); });
  long length = 0;
  if (map) map->get_length(&length);
  attributes.reserve(static_cast<std::size_t>(length));
  for (long i = 0; i < length; ++i) {
    const auto attribute = Got<IXMLDOMNode>([&](IXMLDOMNode** item) { return map->get_item(i, item); });
    if (attribute) attributes.push_back({NameOf(attribute.get()), ValueOf(attribute.get())});
  }
  return attributes;
}

bool DeclaresNamespace(const XmlAttribute& attribute) {
  return attribute.name == L"xmlns" || attribute.name.starts_with(L"xmlns:");
}

bool IsOwnText(IXMLDOMNode* node) {
  const DOMNodeType type = TypeOf(node);
  return type == NODE_TEXT || type == NODE_CDATA_SECTION;
}

bool IsBlankText(IXMLDOMNode* node) {
  return TypeOf(node) == NODE_TEXT && ValueOf(node).find_first_not_of(L" \t\r\n") == std::wstring::npos;
}

bool HoldNoText(const std::vector<NodePtr>& children) {
  const bool has_others =
      std::ranges::any_of(children, [](const NodePtr& child) { return !IsOwnText(child.get()); });
  return has_others && std::ranges::none_of(children, [](const NodePtr& child) {
           return IsOwnText(child.get()) && !IsBlankText(child.get());
         });
}

}  // namespace qlx::platform
