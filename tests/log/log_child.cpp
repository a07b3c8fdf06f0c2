// A program that logs, for tests of the log as a whole process sees it. Its configuration file lies beside
// it.
#include <cstdlib>
#include <numeric>
#include <string_view>
#include <thread>
#include <vector>

#include "log/LogMessage.h"

namespace {

using namespace qlx;

void Say() {
  LogMessage(MZP_PRINTER, LEVEL_ERROR, "Child::Say - %s %d", "text", 7);
}

void Dump() {
  std::vector<unsigned char> bytes(20);
  std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(0));
  LogHexDump(MZP_PRINTER, LEVEL_TRACE, bytes.data(), static_cast<std::uint32_t>(bytes.size()), "Child::Dump");
}

/// Registered before the first message, so it runs after the log's own routine at the exit.
void SayAfterTheEnd() {
  std::atexit([] {
    LogMessage(MZP_PRINTER, LEVEL_ERROR, "after the end");
    LogHexDump(MZP_PRINTER, LEVEL_ERROR, "x", 1, "after the end");
  });
  Say();
}

void SayWhileExiting() {
  Say();
  static auto& loggers = *new std::vector<std::thread>;  // that nobody joins
  for (int i = 0; i < 2; ++i) {
    loggers.emplace_back([] {
      for (;;) LogMessage(MZP_PRINTER, LEVEL_ERROR, "while exiting");
    });
  }
}

}  // namespace

int main(int count, char** arguments) {
  const std::string_view task = count == 2 ? arguments[1] : "";
  if (task == "say") Say();
  if (task == "dump") Dump();
  if (task == "after the end") SayAfterTheEnd();
  if (task == "while exiting") SayWhileExiting();
}
