#include "platform/debug_output.h"

#include <string>

#include <windows.h>

namespace qlx::platform {
namespace {

class DebuggerOutput final : public DebugOutput {
 public:
  void Write(std::wstring_view line) override { OutputDebugStringW(std::wstring(line).c_str()); }
};

}  // namespace

DebugOutput& SystemDebugOutput() {
  static DebuggerOutput output;
  return output;
}

}  // namespace qlx::platform
