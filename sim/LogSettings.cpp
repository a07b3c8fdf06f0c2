#include "sim/LogSettings.h"

namespace qlx::sim {

LogSettings ReadLogSettings(const std::filesystem::path&) {
  return {};
}

}  // namespace qlx::sim
