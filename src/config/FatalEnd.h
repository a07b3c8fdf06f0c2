// How a model ends the program: it is handed this function and knows neither window nor process.
#pragma once

#include <functional>
#include <string>

namespace qlx {

/// Shows `message` with the exclamation icon, logs a line at level 1 and ends the process with exit code 1.
/// Does not return to the caller; a test's stand-in throws.
using FatalEnd = std::function<void(const std::wstring& message)>;

}  // namespace qlx
