#include "platform/suite_settings.h"

#include <cstdlib>
#include <filesystem>

#include "platform/linux/path_text.h"

namespace qlx::platform {

std::wstring SettingsDirectory() {
  const char* chosen = std::getenv("QUILLON_SETTINGS");
  const std::filesystem::path file =
      chosen != nullptr && *chosen != '\0' ? chosen : "/etc/harlune/quillon.conf";
  // A bare file name is one of the current directory.
  const std::filesystem::path directory = file.has_parent_path() ? file.parent_path() : ".";
  return PathText((directory / "").native());
}

}  // namespace qlx::platform
