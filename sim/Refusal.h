// How a part of the simulator says no.
#pragma once

#include <string>

namespace qlx::sim {

/// Why something was not done, as a sentence without its point; empty when it was.
using Refusal = std::string;

}  // namespace qlx::sim
