#include "pages/LogoStore.h"

#include <algorithm>
#include <utility>

#include "pages/logo_failures.h"
#include "pages/logo_files.h"

namespace qlx {

LogoStore::LogoStore(LogoSystem system) : system_(std::move(system)), copies_(system_) {}

void LogoStore::Load(ConfigDocument& document) {
  records_ = ReadLogos(document);
  written_ = records_;
}

std::vector<LogoRecord>::const_iterator LogoStore::Find(int row) const {
  return std::ranges::find(records_, row + 1, &LogoRecord::slot);
}

LogoSelection LogoStore::Select(int row) const {
  if (row < 0 || row >= kMostSlots) return {};
  const auto record = Find(row);
  if (record == records_.end()) return {.can_add = true, .can_delete = false, .preview = {}};
  return {.can_add = false, .can_delete = true, .preview = record->path};
}

void LogoStore::Add(int row, const std::wstring& path, int encode_choice, const FatalEnd& end) {
  if (row < 0 || row >= kMostSlots || Find(row) != records_.end()) return;
  const EncodeChoice& choice = kEncodeChoices.at(static_cast<std::size_t>(encode_choice));
  const bool cut = choice.treatment == Treatment::kTruncated;
  std::wstring picture = cut ? copies_.Make(path, choice.station, end) : path;
  if (!picture.empty()) records_.push_back({row + 1, std::move(picture), choice.station});
}

void LogoStore::Delete(int row) {
  const auto record = Find(row);
  if (record == records_.end()) return;
  copies_.Delete(record->path);
  records_.erase(record);
}

void LogoStore::Write(ConfigDocument& document, const std::function<void(const std::wstring&)>& show_status,
                      const FatalEnd& end) {
  if (records_ == written_) return;
  const auto directory = system_.data_directory();
  if (!directory) return EndFor(kNoDataDirectory, {}, system_, end);
  written_.reset();
  for (LogoRecord& record : records_) {
    const std::wstring file = LogoFile(*directory, record.slot);
    if (show_status && record.path != file) {
      show_status(L"Saving Logo #" + std::to_wstring(record.slot) + L"...");
    }
    if (!ConvertLogo(record, file, system_, end)) return;
  }
  ListLogos(records_, TimestampText(system_.now()), document);
  if (!document.Save()) return;
  written_ = records_;
  RemoveStaleLogos(*directory, records_, system_);
}

}  // namespace qlx
