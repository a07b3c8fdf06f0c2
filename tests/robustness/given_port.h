// A program that links this chooses the port that the system gives to who asks for any.
#pragma once

#include <cstdint>

namespace qlx::test {

/// Makes `port` the next ones' to bind without a wish; 0 leaves the choice to the system.
void GivePort(std::uint16_t port);

}  // namespace qlx::test
