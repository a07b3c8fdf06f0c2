// How the simulator tells what happens: one line at a time, without its end.
#pragma once

#include <functional>
#include <string>

namespace qlx::sim {

using Say = std::function<void(const std::string& line)>;

}  // namespace qlx::sim
