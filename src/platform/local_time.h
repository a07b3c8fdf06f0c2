// The calendar of the machine's time zone.
#pragma once

#include <cstdint>
#include <ctime>

namespace qlx::platform {

/// Local date and time of `seconds` since 1970-01-01 00:00 UTC, in the zone that is set at the time of the
/// call. May be called from any thread.
std::tm LocalTime(std::int64_t seconds);

}  // namespace qlx::platform
