// The log of one process: its settings, read once, and its connection to the logging service.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "config/ConfigNode.h"
#include "log/LogDelivery.h"
#include "log/LogSettings.h"
#include "log/RecordFormatter.h"
#include "platform/debug_output.h"
#include "platform/program.h"

namespace qlx {

/// The children of Logging_Configuration in the configuration file `path`; empty when it cannot be loaded.
using ReadLoggingKeys = std::function<std::vector<ConfigNode>(const std::wstring& path)>;

/// What a logger uses of the world around it. The references must outlive the logger.
struct LoggerSystem {
  const platform::Program& program;
  platform::DebugOutput& debug_output;
  ReadLoggingKeys read_keys;
  MakeSocket make_socket;
};

class Logger {
 public:
  /// Reads the settings; writes three lines about them to the debugger's channel.
  explicit Logger(const LoggerSystem& system);

  const LogSettings& settings() const { return settings_; }

  /// Builds the record of `text` (at most 1023 bytes) with the present time and the calling thread, and
  /// sends it. Never fails towards the caller: a record that cannot be sent is lost. Any thread.
  void Write(std::uint32_t module, std::uint32_t level, std::string_view text);

 private:
  const platform::Program& program_;
  const std::uint32_t process_id_;  // read once: asking the kernel costs as much as the rest of a record
  LogSettings settings_;
  std::mutex instance_lock_;
  RecordFormatter formatter_;
  LogDelivery delivery_;
};

}  // namespace qlx
