#include "log/RecordFormatter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>

#include "log/levels.h"
#include "platform/local_time.h"

namespace qlx {
namespace {

constexpr std::size_t kLongestRecord = 1280;
constexpr std::size_t kContinuationBlanks = 72;

struct ModuleName {
  std::uint32_t flag;
  std::string_view name;
};

// The padding keeps the columns of the log file in line.
constexpr ModuleName kModuleNames[] = {
    {MZP_DRIVER, "MZP_DRIVER     "}, {MZP_SERVICE, "MZP_SERVICE    "},    {MZP_IOBUS, "MZP_IOBUS      "},
    {MZP_MSRUSB, "MZP_MSRUSB     "}, {MZP_CDUSB, "MZP_CDUSB      "},      {MZP_LDUSB, "MZP_LDUSB      "},
    {MZP_CDPCI, "MZP_CDPCI      "},  {MZP_IBUTTONUSB, "MZP_IBUTTONUSB "}, {MZP_PRINTER, "MZP_PRINTER    "},
};

constexpr std::string_view kLevelNames[] = {
    "LEVEL_OFF     ", "LEVEL_ERROR   ", "LEVEL_WARNING ",
    "LEVEL_INFO    ", "LEVEL_VERBOSE ", "LEVEL_TRACE   ",
};

std::string_view NameOfModule(std::uint32_t module) {
  const auto* found = std::find_if(std::begin(kModuleNames), std::end(kModuleNames),
                                   [&](const ModuleName& entry) { return entry.flag == module; });
  return found == std::end(kModuleNames) ? std::string_view() : found->name;
}

/// Appends `number` with zeros before it up to `width` digits.
void AppendNumber(std::string& text, std::uint32_t number, int base, std::size_t width) {
  std::array<char, 10> digits{};
  const char* end = std::to_chars(digits.begin(), digits.end(), number, base).ptr;
  const auto count = static_cast<std::size_t>(end - digits.begin());
  if (count < width) text.append(width - count, '0');
  text.append(digits.begin(), count);
}

std::string Date(std::int64_t seconds) {
  const std::tm local = platform::LocalTime(seconds);
  std::array<char, 64> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%d/%m/%Y %H:%M:%S.", &local);
  return std::string(text.data(), length);
}

}  // namespace

RecordFormatter::RecordFormatter() {
  record_.reserve(kLongestRecord);
}

std::string_view RecordFormatter::Format(const LogRecord& record) {
  record_.clear();
  if ((record.module & kContinuation) != 0) {
    record_.append(kContinuationBlanks, ' ');
  } else {
    AppendTime(record.time);
    record_ += "\tP[";
    AppendNumber(record_, record.process_id, 16, 4);
    record_ += "]\tT[";
    AppendNumber(record_, record.thread_id, 16, 4);
    record_ += "]\t";
    record_ += NameOfModule(record.module);
    record_ += '\t';
    record_ += kLevelNames[record.level];
    record_ += '\t';
  }
  record_ += record.text;
  record_ += "\r\n";
  return record_;
}

void RecordFormatter::AppendTime(const platform::WallTime& time) {
  if (time.seconds != second_) {
    date_of_second_ = Date(time.seconds);
    second_ = time.seconds;
  }
  record_ += date_of_second_;
  AppendNumber(record_, time.milliseconds, 10, 3);
}

}  // namespace qlx
