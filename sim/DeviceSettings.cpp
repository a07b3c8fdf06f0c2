#include "sim/DeviceSettings.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <vector>

#include "config/ConfigDocument.h"
#include "config/schema.h"
#include "config/values.h"
#include "platform/linux/path_text.h"
#include "platform/text.h"
#include "sim/hex_bytes.h"

namespace qlx::sim {
namespace {

constexpr std::size_t kLongestWrapper = 14;
constexpr std::size_t kMostHexBytes = 16;
constexpr int kIdDigits = 16;
constexpr std::string_view kDelimiters[] = {"", "\r", "\n", "\r\n", "\t"};

/// The settings of one section; a key that the file does not hold has the text of a new file.
class Section {
 public:
  Section(const std::wstring& name, ConfigDocument* document)
      : name_(name),
        settings_(document != nullptr ? document->ReadSection(name) : std::vector<ConfigNode>()) {}

  std::wstring Text(std::wstring_view key) const {
    const auto setting = std::ranges::find(settings_, key, &ConfigNode::name);
    return setting != settings_.end() ? setting->text : Default(key);
  }
  std::wstring Default(std::wstring_view key) const { return std::wstring(DefaultText(name_, key)); }

  bool On(std::wstring_view key) const { return IsTrue(Text(key)); }

  /// Characters as the bytes of Latin-1.
  std::string Bytes(std::wstring_view key, std::size_t longest) const {
    const std::wstring text = Text(key);
    std::string bytes;
    for (const wchar_t c : text.size() <= longest ? text : Default(key)) {
      bytes += static_cast<char>(c <= 0xFF ? c : L'?');
    }
    return bytes;
  }

  std::string Hex(std::wstring_view key) const {
    const auto bytes = FromHex(platform::ToUtf8(Text(key)));
    if (bytes && bytes->size() <= kMostHexBytes) return *bytes;
    return FromHex(platform::ToUtf8(Default(key))).value_or("");
  }

  std::size_t Number(std::wstring_view key, int least, int most) const {
    const auto number = ParseNumber(Text(key));
    const bool usable = number && *number >= least && *number <= most;
    return static_cast<std::size_t>(usable ? *number : ParseNumber(Default(key)).value_or(least));
  }

 private:
  std::wstring name_;
  std::vector<ConfigNode> settings_;
};

MsrSettings ReadMsr(const Section& section) {
  MsrSettings settings;
  for (std::size_t i = 0; i < settings.tracks.size(); ++i) {
    const std::wstring track = L"Track" + std::to_wstring(i + 1);
    settings.tracks[i] = {.enabled = section.On(track + L"_Enabled"),
                          .carriage_return = section.On(track + L"_CR_Enabled"),
                          .start_sentinel = section.Bytes(track + L"_Start_Sentinel", 1)};
  }
  settings.end_sentinel = section.Bytes(L"End_Sentinel", 1);
  settings.head = section.Bytes(L"Head_Wrapper", kLongestWrapper);
  settings.tail = section.Bytes(L"Tail_Wrapper", kLongestWrapper);
  settings.carriage_returns = section.On(L"CR_Enabled");
  settings.strip_sentinels = section.On(L"Strip_Sentinels");
  settings.hide_error_tracks = section.On(L"Hide_Error_Tracks");
  return settings;
}

IButtonSettings ReadIButton(const Section& section) {
  constexpr int kLastDelimiter = static_cast<int>(std::size(kDelimiters)) - 1;
  return {
      .start = section.Number(L"ID_Start", 1, kIdDigits),
      .length = section.Number(L"ID_Length", 1, kIdDigits),
      .prefix = section.Hex(L"Prefix"),
      .suffix = section.Hex(L"Suffix"),
      .delimiter = std::string(kDelimiters[section.Number(L"Delimiter", 0, kLastDelimiter)]),
      .on_remove = section.Hex(L"OnRemove"),
  };
}

/// Null when the file cannot be loaded.
std::unique_ptr<ConfigDocument> OpenDocument(const std::filesystem::path& path) {
  try {
    auto document = MakeConfigDocument([](const std::wstring&) {});
    if (!document->Open(platform::PathText(path.native()), false)) return nullptr;
    return document;
  } catch (const std::exception&) {
    return nullptr;  // without a parser
  }
}

}  // namespace

DeviceSettings ReadDeviceSettings(const std::filesystem::path& configuration) {
  const auto document = OpenDocument(configuration);
  DeviceSettings settings;
  const Section ports(L"Ports_Configuration", document.get());
  for (const KindFacts& facts : kKinds)
    settings.ports[facts.kind] = platform::ToUtf8(ports.Text(facts.element));
  settings.msr = ReadMsr(Section(L"MSR_Configuration", document.get()));
  settings.ibutton = ReadIButton(Section(L"IB_Configuration", document.get()));
  return settings;
}

}  // namespace qlx::sim
