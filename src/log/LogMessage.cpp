#include "log/LogMessage.h"

#include <chrono>
#include <cstdarg>
#include <cstdlib>
#include <thread>

#include "log/ProcessLog.h"
#include "log/logging_section.h"

namespace qlx {
namespace {

// Time for the service to take what was sent before the connection goes.
constexpr auto kLastWords = std::chrono::milliseconds(200);

void EndAtExit();

std::unique_ptr<Logger> CreateLogger() {
  auto logger = std::make_unique<Logger>(LoggerSystem{platform::ThisProgram(), platform::SystemDebugOutput(),
                                                      &ReadLoggingSection, &platform::MakeTcpSocket});
  std::atexit(&EndAtExit);
  return logger;
}

/// Made by the first call, on purpose never destroyed.
ProcessLog& Log() {
  static ProcessLog& log = *new ProcessLog(&CreateLogger);
  return log;
}

void EndAtExit() {
  std::this_thread::sleep_for(kLastWords);
  Log().End();
}

}  // namespace

void LogMessage(std::uint32_t module, std::uint32_t level, const char* format, ...) {
  ProcessLog& log = Log();
  if (!log.Passes(module, level)) return;
  std::va_list arguments;
  va_start(arguments, format);
  log.Message(module, level, format, arguments);
  va_end(arguments);
}

void LogHexDump(std::uint32_t module, std::uint32_t level, const void* data, std::uint32_t length,
                const char* format, ...) {
  ProcessLog& log = Log();
  if (!log.Passes(module, level)) return;
  std::va_list arguments;
  va_start(arguments, format);
  log.HexDump(module, level, data, length, format, arguments);
  va_end(arguments);
}

}  // namespace qlx
