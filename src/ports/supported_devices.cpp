#include "ports/supported_devices.h"

#include <charconv>
#include <map>
#include <memory>
#include <optional>
#include <string_view>

#include "log/LogMessage.h"
#include "platform/file_store.h"
#include "platform/suite_settings.h"
#include "platform/text.h"
#include "platform/xml_dom.h"

namespace qlx {
namespace {

constexpr wchar_t kName[] = L"supported_devices";
constexpr std::size_t kLargestFile = std::size_t{64} << 10;

using Attributes = std::map<std::wstring, std::wstring>;

/// Of the root; nothing when `bytes` are not the XML that is asked for.
std::optional<Attributes> RootAttributes(std::string_view bytes) {
  const std::unique_ptr<platform::XmlDom> dom = platform::CreateXmlDom();
  if (!dom || !dom->Parse(bytes)) return std::nullopt;
  const auto elements = dom->Select(std::wstring(L"//") + kName);
  if (elements.empty() || dom->Parent(elements.front()) != nullptr) return std::nullopt;
  return dom->Attributes(elements.front());
}

std::optional<std::uint16_t> ParseId(std::wstring_view text) {
  constexpr std::size_t kLength = 6;
  if (text.size() != kLength || !text.starts_with(L"0x")) return std::nullopt;
  const std::string digits = platform::ToUtf8(text.substr(2));
  const char* const end = digits.data() + digits.size();
  std::uint16_t id = 0;
  const auto [stop, error] = std::from_chars(digits.data(), end, id, 16);
  if (error != std::errc() || stop != end) return std::nullopt;
  return id;
}

template <std::size_t kCount>
void TakeIds(wchar_t letter, const Attributes& attributes, std::array<std::uint16_t, kCount>& ids,
             const Complain& complain) {
  for (std::size_t i = 0; i < kCount; ++i) {
    const std::wstring name = letter + std::to_wstring(i + 1);
    const auto given = attributes.find(name);
    const auto id = given == attributes.end() ? std::nullopt : ParseId(given->second);
    if (id) {
      ids[i] = *id;
    } else {
      complain(platform::ToUtf8(name) +
               (given == attributes.end() ? " is missing" : " is no 0x and four digits"));
    }
  }
}

}  // namespace

SupportedDevices ReadSupportedDevices(const std::wstring& directory, const Complain& complain) {
  SupportedDevices devices = kSupportedDevices;
  const auto file = platform::SystemFileStore().Read(directory + kName, kLargestFile);
  if (file.status == platform::ReadStatus::kMissing) return devices;
  if (file.status != platform::ReadStatus::kRead) {
    complain("the file cannot be read");
  } else if (const auto attributes = RootAttributes(file.bytes)) {
    TakeIds(L'V', *attributes, devices.vendors, complain);
    TakeIds(L'P', *attributes, devices.products, complain);
  } else {
    complain("the file is not one XML element of that name");
  }
  return devices;
}

SupportedDevices InstalledSupportedDevices() {
  return ReadSupportedDevices(platform::SettingsDirectory(), [](const std::string& complaint) {
    LogMessage(MZP_PRINTER, LEVEL_ERROR, "supported_devices: %s", complaint.c_str());
  });
}

}  // namespace qlx
