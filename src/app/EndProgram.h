// The end of the program when it cannot go on.
#pragma once

#include <string>

namespace qlx {

/// Shows `message` with the exclamation icon, logs it at level 1 and ends the process with exit code 1.
/// User-interface thread.
[[noreturn]] void EndProgram(const std::wstring& message);

}  // namespace qlx
