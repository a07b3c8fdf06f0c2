#include "sim/LineDisplay.h"

#include <utility>

namespace qlx::sim {
namespace {

constexpr std::string_view kClear = "\x1F\x10\x04";

}  // namespace

Reaction LineDisplay::Receive(std::string_view bytes) {
  for (const char byte : bytes) Take(byte);
  return {{}, {}, {"line display: [" + lines_[0] + "] [" + lines_[1] + "]"}};
}

void LineDisplay::Take(char byte) {
  escape_ += byte;
  if (escape_ == kClear) {
    Clear();
  } else if (!kClear.starts_with(escape_)) {
    escape_ = byte == kClear.front() ? std::string(1, byte) : std::string();
    if (escape_.empty()) Show(byte);
  }
}

void LineDisplay::Show(char byte) {
  if (byte == '\n') {
    FeedLine();
  } else if (byte == '\r') {
    column_ = 0;
  } else if (byte >= 0x20 && byte < 0x7F && column_ < kColumns) {
    lines_[line_][column_++] = byte;
  }
}

void LineDisplay::Clear() {
  lines_.fill(std::string(kColumns, ' '));
  line_ = column_ = 0;
  escape_.clear();
}

void LineDisplay::FeedLine() {
  if (line_ == 1) lines_[0] = std::exchange(lines_[1], std::string(kColumns, ' '));
  line_ = 1;
}

}  // namespace qlx::sim
