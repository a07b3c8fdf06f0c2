// The encodings in which a document may come, made one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qlx::platform {

/// The document `bytes` in UTF-8 without a mark, its declaration naming UTF-8 where it names an encoding. Of
/// the system's parsers each has its own list of encodings and passes over other bytes that an encoding
/// lacks. Empty for an encoding that this system does not have and for bytes that are no text in theirs.
std::optional<std::string> XmlInUtf8(std::string_view bytes);

}  // namespace qlx::platform
