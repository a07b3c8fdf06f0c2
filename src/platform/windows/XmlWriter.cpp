#include "platform/windows/XmlWriter.h"

#include <algorithm>

#include "platform/text.h"

namespace qlx::platform {
namespace {

constexpr std::size_t kDeepestIndent = 30;  // levels; deeper ones stand below each other

/// What stands for `c` in a text or an attribute's value; empty for itself.
std::string_view Escape(char c, bool in_attribute) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\r':
      return "&#13;";
    case '\n':
      return in_attribute ? "&#10;" : "";
    case '\t':
      return in_attribute ? "&#9;" : "";
    case '"':
      return in_attribute ? "&quot;" : "";
    default:
      return {};
  }
}

std::string Escaped(std::wstring_view text, bool in_attribute) {
  std::string escaped;
  for (const char c : ToUtf8(text)) {
    const std::string_view reference = Escape(c, in_attribute);
    if (reference.empty()) {
      escaped += c;
    } else {
      escaped += reference;
    }
  }
  return escaped;
}

/// What `key` has in the declaration's data, with its quotation marks made double; empty without it.
std::wstring DeclaredValue(std::wstring_view data, std::wstring_view key) {
  const std::size_t at = data.find(key);
  if (at == std::wstring_view::npos) return {};
  const std::size_t open = data.find_first_of(L"\"'", at);
  if (open == std::wstring_view::npos) return {};
  return L"\"" + std::wstring(data.substr(open + 1, data.find(data[open], open + 1) - open - 1)) + L"\"";
}

}  // namespace

std::string XmlWriter::Document(IXMLDOMNode* document, std::string_view document_type) {
  const auto children = ChildrenOf(document);
  const bool declared = !children.empty() && TypeOf(children.front().get()) == NODE_PROCESSING_INSTRUCTION &&
                        NameOf(children.front().get()) == L"xml";
  Declaration(declared ? ValueOf(children.front().get()) : std::wstring());
  for (auto child = children.begin() + (declared ? 1 : 0); child != children.end(); ++child) {
    if (TypeOf(child->get()) == NODE_DOCUMENT_TYPE) {
      out_ += document_type;
    } else if (IsOwnText(child->get())) {
      continue;  // blanks between the document's own nodes
    } else {
      Node(child->get(), true);
    }
    out_ += '\n';
  }
  return std::move(out_);
}

void XmlWriter::Declaration(std::wstring_view data) {
  out_ += "<?xml version=\"1.0\" encoding=\"UTF-8\"";
  const std::wstring standalone = DeclaredValue(data, L"standalone");
  if (!standalone.empty()) Append(L" standalone=" + standalone);
  out_ += "?>\n";
}

void XmlWriter::Node(IXMLDOMNode* node, bool formatted) {
  switch (TypeOf(node)) {
    case NODE_ELEMENT:
      return Element(node, formatted);
    case NODE_TEXT:
      out_ += Escaped(ValueOf(node), false);
      return;
    case NODE_CDATA_SECTION:
      return CdataSection(ValueOf(node));
    case NODE_COMMENT:
      return Append(L"<!--" + ValueOf(node) + L"-->");
    case NODE_PROCESSING_INSTRUCTION: {
      const std::wstring data = ValueOf(node);
      return Append(L"<?" + NameOf(node) + (data.empty() ? L"" : L" ") + data + L"?>");
    }
    default:
      return;
  }
}

void XmlWriter::Element(IXMLDOMNode* element, bool formatted) {
  const std::wstring outer = default_namespace_;
  const std::wstring name = NameOf(element);
  Append(L"<" + name);
  Attributes(element, name);
  const auto children = ChildrenOf(element);
  if (children.empty()) {
    out_ += "/>";
  } else {
    out_ += '>';
    Content(children, formatted);
    Append(L"</" + name + L">");
  }
  default_namespace_ = outer;
}

/// Declarations of namespaces first. Not every version of the parser lists the default one, but an element
/// tells its own.
void XmlWriter::Attributes(IXMLDOMNode* element, const std::wstring& name) {
  auto attributes = AttributesOf(element);
  const auto listed = std::ranges::find(attributes, L"xmlns", &XmlAttribute::name);
  const bool has_prefix = name.find(L':') != std::wstring::npos;
  const std::wstring uri = listed != attributes.end() ? listed->value
                           : has_prefix               ? default_namespace_
                                                      : NamespaceOf(element);
  if (listed == attributes.end() && uri != default_namespace_)
    attributes.insert(attributes.begin(), {L"xmlns", uri});
  default_namespace_ = uri;
  std::ranges::stable_partition(attributes, DeclaresNamespace);
  for (const XmlAttribute& attribute : attributes) Attribute(attribute.name, attribute.value);
}

void XmlWriter::Attribute(std::wstring_view name, std::wstring_view value) {
  out_ += ' ';
  Append(name);
  out_ += "=\"" + Escaped(value, true) + "\"";
}

void XmlWriter::Content(const std::vector<NodePtr>& children, bool formatted) {
  const bool no_text = HoldNoText(children);
  const bool own_lines = formatted && no_text;
  ++level_;
  for (const NodePtr& child : children) {
    if (no_text && IsOwnText(child.get())) continue;
    if (own_lines) Indent();
    Node(child.get(), own_lines);
  }
  --level_;
  if (own_lines) Indent();
}

/// The text could hold the section's end: then it takes two.
void XmlWriter::CdataSection(std::wstring_view text) {
  out_ += "<![CDATA[";
  for (std::size_t end = text.find(L"]]>"); end != std::wstring_view::npos; end = text.find(L"]]>")) {
    Append(text.substr(0, end + 2));
    out_ += "]]><![CDATA[";
    text.remove_prefix(end + 2);
  }
  Append(text);
  out_ += "]]>";
}

void XmlWriter::Indent() {
  out_ += '\n';
  out_.append(2 * std::min(level_, kDeepestIndent), ' ');
}

void XmlWriter::Append(std::wstring_view text) {
  out_ += ToUtf8(text);
}

}  // namespace qlx::platform
