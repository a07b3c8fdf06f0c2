// Bounds and rules of a document's structure that the system's parser does not keep.
#pragma once

#include <string_view>

namespace qlx::platform {

/// True when no element of `text` (UTF-8, its entities put in) is deeper than kXmlDepthLimit and every name
/// keeps the rules of Namespaces in XML 1.0: one colon at most, behind a prefix that is declared. Says
/// nothing about well-formedness otherwise.
bool XmlStructureIsTaken(std::string_view text);

}  // namespace qlx::platform
