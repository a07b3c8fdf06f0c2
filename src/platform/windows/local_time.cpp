#include "platform/local_time.h"

#include <windows.h>

namespace qlx::platform {
namespace {

constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kSecondsTo1970 = 11'644'473'600;  // from 1601, where file times begin

SYSTEMTIME UniversalTime(std::int64_t seconds) {
  const auto ticks = static_cast<std::uint64_t>((seconds + kSecondsTo1970) * kTicksPerSecond);
  const FILETIME time{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  SYSTEMTIME universal{};
  FileTimeToSystemTime(&time, &universal);
  return universal;
}

int DayOfYear(const SYSTEMTIME& time) {
  constexpr int kDaysBefore[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
  const bool leap = (time.wYear % 4 == 0 && time.wYear % 100 != 0) || time.wYear % 400 == 0;
  return kDaysBefore[time.wMonth - 1] + time.wDay - 1 + (leap && time.wMonth > 2 ? 1 : 0);
}

}  // namespace

/// By the system's zone: the C library's own knows one rule for all years, and a variable of the environment
/// over it.
std::tm LocalTime(std::int64_t seconds) {
  const SYSTEMTIME universal = UniversalTime(seconds);
  SYSTEMTIME local = universal;
  SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local);
  std::tm time{};
  time.tm_year = local.wYear - 1900;
  time.tm_mon = local.wMonth - 1;
  time.tm_mday = local.wDay;
  time.tm_hour = local.wHour;
  time.tm_min = local.wMinute;
  time.tm_sec = local.wSecond;
  time.tm_wday = local.wDayOfWeek;
  time.tm_yday = DayOfYear(local);
  time.tm_isdst = -1;  // not told
  return time;
}

}  // namespace qlx::platform
