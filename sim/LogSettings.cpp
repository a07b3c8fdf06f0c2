#include "sim/LogSettings.h"

#include <vector>

#include "log/LogSettings.h"
#include "log/logging_section.h"
#include "platform/linux/path_text.h"

namespace qlx::sim {

LogSettings ReadLogSettings(const std::filesystem::path& configuration) {
  const std::vector<ConfigNode> keys = ReadLoggingSection(platform::PathText(configuration.native()));
  qlx::LogSettings suite;
  ReadFilterKeys(keys, suite);
  ReadFileKeys(keys, suite);

  LogSettings settings;
  settings.port = static_cast<std::uint16_t>(suite.port);
  // Configured paths have the separators of either platform.
  const std::string name = suite.file_name.substr(suite.file_name.find_last_of("/\\") + 1);
  if (!name.empty() && name != "." && name != "..") settings.file_name = name;
  if (suite.file_size > 0) settings.file_bytes = static_cast<std::uint64_t>(suite.file_size);
  return settings;
}

}  // namespace qlx::sim
