// The text of a document: the system's own would be on one line and without its encoding.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/windows/xml_nodes.h"

namespace qlx::platform {

/// Writes one document, one element a line, indented by two blanks for a level, where an element holds no
/// text of its own.
class XmlWriter {
 public:
  /// `document_type` is the text to write for it.
  std::string Document(IXMLDOMNode* document, std::string_view document_type);

 private:
  void Declaration(std::wstring_view data);
  void Node(IXMLDOMNode* node, bool formatted);
  void Element(IXMLDOMNode* element, bool formatted);
  void Attributes(IXMLDOMNode* element, const std::wstring& name);
  void Attribute(std::wstring_view name, std::wstring_view value);
  void Content(const std::vector<NodePtr>& children, bool formatted);
  void CdataSection(std::wstring_view text);
  void Indent();
  void Append(std::wstring_view text);

  std::string out_;
  std::size_t level_ = 0;
  std::wstring default_namespace_;  ///< where the walk stands
};

}  // namespace qlx::platform
