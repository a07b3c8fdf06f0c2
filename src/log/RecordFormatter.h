// From a record to the bytes that go to the logging service.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "platform/program.h"

namespace qlx {

struct LogRecord {
  std::uint32_t module = 0;
  std::uint32_t level = 0;
  std::string_view text;
  platform::WallTime time;
  std::uint32_t thread_id = 0;
  std::uint32_t process_id = 0;
};

/// Builds one record at a time; used by one thread at a time.
class RecordFormatter {
 public:
  RecordFormatter();

  /// The record's bytes with the "\r\n" that ends them, good until the next call. A continuation record is
  /// its text after 72 blanks; any other has the fields time, process, thread, module and level before it,
  /// each ended by a tab.
  std::string_view Format(const LogRecord& record);

 private:
  void AppendTime(const platform::WallTime& time);

  std::string record_;
  std::int64_t second_ = std::numeric_limits<std::int64_t>::min();
  std::string date_of_second_;
};

}  // namespace qlx
