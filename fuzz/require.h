// What a fuzz target does about a broken promise.
#pragma once

#include <cstdlib>

namespace qlx {

/// Ends the program as a crash does, so that the input is kept.
inline void Require(bool promise) {
  if (!promise) std::abort();
}

}  // namespace qlx
