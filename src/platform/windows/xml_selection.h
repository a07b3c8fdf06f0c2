// The elements that a path of names selects, in time that is linear in the document.
#pragma once

#include <string>
#include <vector>

#include "platform/windows/xml_nodes.h"

namespace qlx::platform {

/// `xpath` is of the form that XmlDom::Select takes; none for any other.
std::vector<NodePtr> SelectElements(IXMLDOMDocument2* document, const std::wstring& xpath);

}  // namespace qlx::platform
