#include "log/logging_section.h"

namespace qlx {

std::vector<ConfigNode> ReadLoggingSection(const std::wstring&) {
  return {};
}

}  // namespace qlx
