// Limits that a document must keep before any parser sees it.
#pragma once

#include <string_view>

namespace qlx::platform {

/// False when `bytes` are declared in an encoding that the tool does not read, or when one element has more
/// than kXmlAttributeLimit attributes, which parsers check for doubled names in quadratic time. Linear; says
/// nothing about well-formedness otherwise.
bool WithinXmlLimits(std::string_view bytes);

}  // namespace qlx::platform
