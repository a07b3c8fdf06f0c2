#include "config/start_up.h"

#include "config/Message.h"
#include "config/schema.h"

namespace qlx {
namespace {

constexpr wchar_t kDefaultPath[] = L"C:\\Program Files\\Harlune\\MZP\\BIN\\QLXConfig.xml";
constexpr const wchar_t* kLoadError = Translatable(L"Error loading QLXConfig.xml!\nExiting program.");

ConfigNode DefaultTree() {
  ConfigNode root{std::wstring(kRootElement), {}, {}, {}};
  for (const SectionDefault& section : Sections()) {
    ConfigNode& added = root.children.emplace_back(ConfigNode{std::wstring(section.name), {}, {}, {}});
    for (const SettingDefault& setting : section.settings) {
      ConfigNode key{std::wstring(setting.key), std::wstring(setting.text), {}, {}};
      if (setting.usb_identity) key.attributes = {{L"PID", L""}, {L"Serial_Number", L""}, {L"VID", L""}};
      added.children.push_back(std::move(key));
    }
  }
  return root;
}

bool OpenOrCreate(ConfigDocument& document, const std::wstring& path) {
  if (document.Open(path, false)) return true;
  if (!document.Open(path, true)) return false;
  document.AddTree(DefaultTree(), {});
  document.Save();
  return true;
}

void AddMissingSections(ConfigDocument& document) {
  const std::wstring root(kRootElement);
  bool added = false;
  for (const SectionDefault& section : Sections()) {
    const std::wstring name(section.name);
    if (document.Contains(root + L"//" + name)) continue;
    document.AddNode(root, name, {}, {});
    added = true;
  }
  if (added) document.Save();
}

}  // namespace

std::wstring ConfigurationPath(const platform::Program& program) {
  return program.PathBesideExecutable(kFileName).value_or(kDefaultPath);
}

void StartUpLoad(ConfigDocument& document, const platform::Program& program,
                 platform::DebugOutput& debug_output, const FatalEnd& end) {
  const std::wstring path = ConfigurationPath(program);
  debug_output.Write(L"[MZP]: MZP Config XML File Path = " + path);
  if (!program.IsAbsolutePath(path) || !OpenOrCreate(document, path)) return end(kLoadError);
  if (!document.Contains(std::wstring(kRootElement))) return end(kLoadError);
  AddMissingSections(document);
}

}  // namespace qlx
