// Which characters the file can hold.
#pragma once

#include <string>
#include <string_view>

namespace qlx {

/// `text` without the characters that XML 1.0 (production 2) cannot hold; a drop is told to the debugger's
/// channel. The last line of defence: the fields filter what is typed.
std::wstring XmlCharacters(std::wstring_view text);

}  // namespace qlx
