#include "platform/debug_output.h"

#include <cstdlib>
#include <string>

#include <syslog.h>
#include <unistd.h>

#include "platform/text.h"

namespace qlx::platform {
namespace {

/// syslog at level debug; standard error as well when QUILLON_DEBUG is set to 1 at the first use.
class Syslog final : public DebugOutput {
 public:
  Syslog() {
    const char* echo = std::getenv("QUILLON_DEBUG");
    echo_ = echo != nullptr && std::string_view(echo) == "1";
  }

  void Write(std::wstring_view line) override {
    const std::string text = ToUtf8(line);
    syslog(LOG_USER | LOG_DEBUG, "%s", text.c_str());
    if (!echo_) return;
    const std::string with_end = text + "\n";
    // Nobody is left to tell when standard error itself cannot be written.
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, with_end.data(), with_end.size());
  }

 private:
  bool echo_ = false;
};

}  // namespace

DebugOutput& SystemDebugOutput() {
  static Syslog output;
  return output;
}

}  // namespace qlx::platform
