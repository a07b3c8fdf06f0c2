// Which elements of a tree a query selects.
#pragma once

#include <string>
#include <vector>

#include "platform/linux/libxml.h"

namespace qlx::platform {

/// In document order. `xpath` is of the form that XmlDom::Select takes; none for any other.
std::vector<xmlNode*> SelectNodes(const std::wstring& xpath, xmlDoc* document);

}  // namespace qlx::platform
