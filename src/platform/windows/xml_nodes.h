// Nodes of the system's XML document, as plain functions.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <msxml2.h>

#include "platform/windows/com.h"

namespace qlx::platform {

using NodePtr = ComPtr<IXMLDOMNode>;

DOMNodeType TypeOf(IXMLDOMNode* node);
/// As it is written, prefix included; "#text" and the like for what has no name.
std::wstring NameOf(IXMLDOMNode* node);
/// What a text, a CDATA section, a comment, an instruction or an attribute holds.
std::wstring ValueOf(IXMLDOMNode* node);
/// Empty for none.
std::wstring NamespaceOf(IXMLDOMNode* node);

NodePtr FirstChild(IXMLDOMNode* node);
NodePtr NextSibling(IXMLDOMNode* node);
/// Every child in document order, a document's too.
std::vector<NodePtr> ChildrenOf(IXMLDOMNode* node);

struct XmlAttribute {
  std::wstring name;
  std::wstring value;
};

/// In the order of the document, declarations of namespaces too as far as the parser gives them.
std::vector<XmlAttribute> AttributesOf(IXMLDOMNode* element);
bool DeclaresNamespace(const XmlAttribute& attribute);

/// A text or CDATA section, which are parts of an element's own text.
bool IsOwnText(IXMLDOMNode* node);
/// A text, not a CDATA section, of nothing but blanks.
bool IsBlankText(IXMLDOMNode* node);
/// Blanks between child elements or comments only set them apart: true when `children` hold such and no other
/// text. A CDATA section counts as text even when it is empty.
bool HoldNoText(const std::vector<NodePtr>& children);

}  // namespace qlx::platform
