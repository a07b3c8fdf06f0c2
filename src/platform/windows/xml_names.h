// Which texts are names.
#pragma once

#include <string_view>

namespace qlx::platform {

/// True for a name without a colon (NCName of Namespaces in XML 1.0): the system's parser takes any text for
/// one.
bool IsXmlName(std::wstring_view text);

/// True for such a name, or two with a colon between them.
bool IsQualifiedXmlName(std::wstring_view text);

}  // namespace qlx::platform
