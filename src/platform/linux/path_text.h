// Linux file names are bytes, not text: the two functions here turn any name into wide text and back
// unchanged.
#pragma once

#include <string>
#include <string_view>

namespace qlx::platform {

/// Wide text of the file name `bytes`. A byte 0x80 + n that is no UTF-8 becomes the lone surrogate
/// U+DC80 + n, which no valid name holds, so that PathBytes gives the name back to the byte.
std::wstring PathText(std::string_view bytes);

/// The file name for `text`: the inverse of PathText.
std::string PathBytes(std::wstring_view text);

}  // namespace qlx::platform
