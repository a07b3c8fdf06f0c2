// A listener to the system-wide channel of debugger output, as a monitor of such lines is one.
#pragma once

#include <cstdint>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/windows/Handle.h"
#include "tests/support/windows/NamedLock.h"

namespace qlx::test {

/// Listens as long as it lives. There can be one listener at a time: a further one waits for its turn.
class DebuggerChannel {
 public:
  DebuggerChannel();
  DebuggerChannel(const DebuggerChannel&) = delete;
  DebuggerChannel& operator=(const DebuggerChannel&) = delete;
  ~DebuggerChannel();

  /// Ends the listening and answers what `process` wrote until now, each piece with "\n".
  std::string LinesOf(std::uint32_t process);

 private:
  void Listen();
  void Take();
  void End();

  const NamedLock turn_;
  platform::Handle memory_;
  platform::Handle ready_;
  platform::Handle written_;
  platform::Handle end_;
  std::vector<std::pair<std::uint32_t, std::string>> pieces_;
  std::thread listener_;
};

}  // namespace qlx::test
