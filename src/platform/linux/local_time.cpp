#include "platform/local_time.h"

#include <time.h>

namespace qlx::platform {

std::tm LocalTime(std::int64_t seconds) {
  tzset();  // localtime_r alone need not notice that the zone was changed
  std::tm local{};
  localtime_r(&seconds, &local);
  return local;
}

}  // namespace qlx::platform
