// Documents of the system's XML parser.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/windows/xml_nodes.h"

namespace qlx::platform {

using XmlDocumentPtr = ComPtr<IXMLDOMDocument2>;

/// An empty document; null when the system has no parser. The calling thread is in an apartment.
XmlDocumentPtr NewXmlDocument();

struct LoadedXml {
  XmlDocumentPtr document;
  std::string document_type;  ///< its text, of which `document` has the name only; empty for none
};

/// The document that `bytes` are; empty when they are not well-formed or past a limit.
std::optional<LoadedXml> LoadXml(std::string_view bytes);

}  // namespace qlx::platform
