// Limits that a document must keep before any parser sees it.
#pragma once

#include <string_view>

namespace qlx::platform {

/// False when `bytes` are in an encoding that the tool does not read or of another version of XML than 1.0,
/// when they declare a parameter entity, when one element has more than kXmlAttributeLimit attributes, which
/// parsers check for doubled names in quadratic time, or when there are more than kXmlNodeLimit nodes, each
/// of which takes a parser many times the memory that it takes in the file. Linear; says nothing about
/// well-formedness otherwise.
bool WithinXmlLimits(std::string_view bytes);

}  // namespace qlx::platform
