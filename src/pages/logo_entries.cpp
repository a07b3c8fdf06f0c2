#include "pages/logo_entries.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <optional>

#include "config/values.h"

namespace qlx {
namespace {

constexpr wchar_t kSection[] = L"Printer_Configuration";
constexpr wchar_t kSectionPath[] = L"MZP//Printer_Configuration";
constexpr wchar_t kListPath[] = L"MZP//Printer_Configuration/Printer_Logo";
constexpr wchar_t kList[] = L"Printer_Logo";
constexpr wchar_t kEntry[] = L"Logo";
constexpr wchar_t kTimestamp[] = L"Timestamp";
constexpr wchar_t kSlot[] = L"Slot";
constexpr wchar_t kStation[] = L"Station";

constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;
constexpr std::int64_t kUnitsPerSecond = 10'000'000;
constexpr std::int64_t kUnitsPerMillisecond = 10'000;

std::wstring Attribute(const ConfigNode& entry, const wchar_t* name) {
  const auto found = entry.attributes.find(name);
  return found == entry.attributes.end() ? std::wstring() : found->second;
}

std::optional<LogoRecord> RecordOf(const ConfigNode& entry) {
  const int slot = ParseNumber(Attribute(entry, kSlot)).value_or(0);
  const auto station = std::ranges::find(kStations, Attribute(entry, kStation), &StationRow::stored);
  const bool known = slot >= 1 && slot <= kMostSlots && station != kStations.end();
  if (entry.name != kEntry || entry.text.empty() || !known) return std::nullopt;
  return LogoRecord{slot, entry.text, station->station};
}

}  // namespace

std::vector<LogoRecord> ReadLogos(ConfigDocument& document) {
  std::vector<LogoRecord> records;
  for (const ConfigNode& list : document.ReadSection(kSection)) {
    if (list.name != kList) continue;
    for (const ConfigNode& entry : list.children) {
      const auto record = RecordOf(entry);
      const bool taken =
          record && std::ranges::find(records, record->slot, &LogoRecord::slot) != records.end();
      if (record && !taken) records.push_back(*record);
    }
  }
  return records;
}

void ListLogos(const std::vector<LogoRecord>& records, const std::wstring& timestamp,
               ConfigDocument& document) {
  document.RemoveNodes(kSection, kList);
  document.AddNode(kSectionPath, kList, {}, {{kTimestamp, timestamp}});
  for (const LogoRecord& record : records) {
    document.AddNode(
        kListPath, kEntry, record.path,
        {{kSlot, std::to_wstring(record.slot)}, {kStation, std::wstring(RowOf(record.station).stored)}});
  }
}

std::wstring TimestampText(platform::WallTime time) {
  const auto units = static_cast<std::uint64_t>((time.seconds + kSecondsFrom1601To1970) * kUnitsPerSecond +
                                                time.milliseconds * kUnitsPerMillisecond);
  std::array<wchar_t, 17> digits{};
  std::swprintf(digits.data(), digits.size(), L"%016llx", static_cast<unsigned long long>(units));
  return digits.data();
}

}  // namespace qlx
