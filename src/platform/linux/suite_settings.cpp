#include "platform/suite_settings.h"

#include <climits>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include <glib.h>

#include "platform/file_store.h"
#include "platform/linux/path_text.h"

namespace qlx::platform {
namespace {

namespace fs = std::filesystem;

constexpr char kDefaultFile[] = "/etc/harlune/quillon.conf";
constexpr wchar_t kDefaultData[] = L"/var/lib/quillon/";
constexpr char kDataFolder[] = "DAT";
constexpr char kDirectoryKey[] = "Directory";
constexpr std::size_t kLargestFile = std::size_t{64} << 10;

/// The library's files have groups, the suite's has none.
constexpr char kGroup[] = "suite";

struct Release {
  void operator()(GKeyFile* file) const { g_key_file_free(file); }
  void operator()(gchar* text) const { g_free(text); }
  void operator()(gchar** texts) const { g_strfreev(texts); }
};

template <typename Held>
using Glib = std::unique_ptr<Held, Release>;

fs::path SettingsFile() {
  const char* chosen = std::getenv("QUILLON_SETTINGS");
  return chosen != nullptr && *chosen != '\0' ? chosen : kDefaultFile;
}

/// What stands behind "Directory=", as it is written; empty when nothing does.
std::string DirectorySetting() {
  const auto file = SystemFileStore().Read(PathText(SettingsFile().native()), kLargestFile);
  const std::string text = std::string("[") + kGroup + "]\n" + file.bytes;
  const Glib<GKeyFile> keys(g_key_file_new());
  if (!g_key_file_load_from_data(keys.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr)) return {};
  const Glib<gchar> value(g_key_file_get_value(keys.get(), kGroup, kDirectoryKey, nullptr));
  return value ? value.get() : "";
}

/// The one word of `value` by a shell's rules of quotes, backslashes and comments.
std::optional<std::string> OneWord(const std::string& value) {
  gchar** parsed = nullptr;
  gint count = 0;
  if (!g_shell_parse_argv(value.c_str(), &count, &parsed, nullptr)) return std::nullopt;
  const std::unique_ptr<gchar*, Release> words(parsed);
  if (count != 1) return std::nullopt;
  return words.get()[0];
}

}  // namespace

std::wstring SettingsDirectory() {
  const fs::path file = SettingsFile();
  // A bare file name is one of the current directory.
  const fs::path directory = file.has_parent_path() ? file.parent_path() : ".";
  return PathText((directory / "").native());
}

std::optional<std::wstring> DataDirectory() {
  const std::string setting = DirectorySetting();
  if (setting.empty()) return kDefaultData;
  const auto directory = OneWord(setting);
  if (!directory || !fs::path(*directory).is_absolute()) return std::nullopt;
  const std::string data = (fs::path(*directory) / kDataFolder / "").native();
  if (data.size() >= PATH_MAX) return std::nullopt;
  return PathText(data);
}

}  // namespace qlx::platform
