// The debugger's output channel: diagnostic lines that a developer or administrator can listen to.
#pragma once

#include <string_view>

namespace qlx::platform {

/// Takes one diagnostic line at a time. May be called from any thread; never fails towards the caller.
class DebugOutput {
 public:
  virtual ~DebugOutput() = default;
  virtual void Write(std::wstring_view line) = 0;
};

/// The system's channel; lives as long as the process.
DebugOutput& SystemDebugOutput();

}  // namespace qlx::platform
