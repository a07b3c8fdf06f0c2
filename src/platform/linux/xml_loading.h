// Reads the bytes of a document as strictly as the tool promises.
#pragma once

#include <string_view>

#include "platform/linux/libxml.h"

namespace qlx::platform {

/// Null for what is not well-formed, leans on an external or undeclared entity, breaks the rules of
/// namespaces or the limits of xml_limits.h. Sets the library's entity loader meanwhile: not for two threads
/// at once.
XmlDocument LoadXml(std::string_view bytes);

}  // namespace qlx::platform
