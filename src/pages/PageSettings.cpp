#include "pages/PageSettings.h"

#include <algorithm>
#include <new>

#include "config/schema.h"
#include "config/values.h"
#include "platform/text.h"

namespace qlx {
namespace {

/// The services read the index into a field of this many characters.
constexpr std::size_t kLongestChoice = 2;

}  // namespace

PageSettings::PageSettings(const PageFacts& facts, std::span<const SettingRow> rows)
    : facts_(facts), rows_(rows) {
  PageSettings::SetDefaults();
}

void PageSettings::SetDefaults() {
  for (const SettingRow& row : rows_) {
    const std::wstring text(DefaultText(facts_.section, row.key));
    switch (row.form) {
      case SettingForm::kCheck:
        values_[row.control] = IsTrue(text);
        break;
      case SettingForm::kChoice:
        values_[row.control] = ParseNumber(text).value_or(0);
        break;
      case SettingForm::kText:
      case SettingForm::kFilledText:
      case SettingForm::kDigits:
        values_.try_emplace(row.control, std::wstring());
        SetText(row.control, text);
        break;
    }
  }
}

void PageSettings::Load(const std::vector<ConfigNode>& pairs) {
  for (const ConfigNode& pair : pairs) {
    const auto row = std::ranges::find(rows_, pair.name, &SettingRow::key);
    if (row != rows_.end()) LoadValue(*row, pair.text);
  }
}

void PageSettings::LoadValue(const SettingRow& row, const std::wstring& text) {
  const bool fits = platform::Utf16Length(text) <= row.limit;
  const auto number = ParseNumber(text);
  switch (row.form) {
    case SettingForm::kCheck:
      SetChecked(row.control, IsTrue(text));
      break;
    case SettingForm::kChoice:
      if (number && static_cast<std::size_t>(*number) < row.limit) SetChoice(row.control, *number);
      break;
    case SettingForm::kText:
      if (fits) SetText(row.control, text);
      break;
    case SettingForm::kFilledText:
      if (fits && !text.empty()) SetText(row.control, text);
      break;
    case SettingForm::kDigits:
      if (fits && number) SetText(row.control, text);
      break;
  }
}

std::wstring PageSettings::FileText(const SettingRow& row, const FatalEnd& end) const {
  if (row.form == SettingForm::kCheck) return std::wstring(CheckText(Checked(row.control)));
  if (row.form != SettingForm::kChoice) return Text(row.control);
  std::wstring index = std::to_wstring(Choice(row.control));
  if (index.size() > kLongestChoice) end(std::wstring(facts_.choice_not_converted));
  return index;
}

void PageSettings::Save(ConfigDocument& document, const FatalEnd& end) const {
  const std::wstring section(facts_.section);
  try {
    for (const SettingRow& row : rows_) {
      document.SetValue(section, std::wstring(row.key), FileText(row, end));
    }
  } catch (const std::bad_alloc&) {
    end(std::wstring(facts_.edit_not_converted));
  }
  document.Save();
}

}  // namespace qlx
