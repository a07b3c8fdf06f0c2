// How many threads the program has.
#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace qlx::testing {

inline std::size_t ThreadCount() {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}));
}

}  // namespace qlx::testing
