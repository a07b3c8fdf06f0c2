// A listener to the system-wide channel of debugger output, as a monitor of such lines is one.
#pragma once

#include <cstdint>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/windows/Handle.h"

namespace qlx::test {

/// A mutex that all processes know by its name, held as long as this object lives.
class NamedLock {
 public:
  /// Throws when it is not free within a minute. A holder that crashed counts as having released it.
  explicit NamedLock(const wchar_t* name);
  NamedLock(const NamedLock&) = delete;
  NamedLock& operator=(const NamedLock&) = delete;
  ~NamedLock();

 private:
  platform::Handle mutex_;
};

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
