// A record and the parts of its text. Times are expected in UTC, the zone that these tests run in.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "log/RecordFormatter.h"
#include "log/levels.h"

namespace qlx::test {

inline constexpr std::int64_t kMoment = 1794796067;  // 2026-11-16 02:27:47 UTC

class RecordFormatterTest : public testing::Test {
 protected:
  std::string Time(std::int64_t seconds, std::uint16_t milliseconds) {
    record_.time = {seconds, milliseconds};
    const std::string text(formatter_.Format(record_));
    return text.substr(0, text.find('\t'));
  }

  /// The record's field number `index`, the time being 0.
  std::string Field(int index) {
    std::string rest(formatter_.Format(record_));
    while (index-- > 0) rest.erase(0, rest.find('\t') + 1);
    return rest.substr(0, rest.find('\t'));
  }

  LogRecord record_{MZP_PRINTER, LEVEL_ERROR, "text", {kMoment, 123}, 0x1f20, 0xa1c};
  RecordFormatter formatter_;
};

}  // namespace qlx::test
