#include "pages/PageSettings.h"

#include <algorithm>
#include <new>

#include "config/schema.h"
#include "config/values.h"
#include "pages/HexText.h"
#include "platform/text.h"

namespace qlx {
namespace {

constexpr int kNoChoice = -1;

/// The services read the index into a field of this many characters.
constexpr std::size_t kLongestChoice = 2;

}  // namespace

PageSettings::PageSettings(const PageFacts& facts, std::span<const SettingRow> rows)
    : facts_(facts), rows_(rows) {
  PageSettings::SetDefaults();
  MarkStored();
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
      case SettingForm::kOrdinal:
        values_[row.control] = ParseNumber(text).value_or(1) - 1;
        break;
      case SettingForm::kHex:
        values_[row.control] = LoadedHex(text);
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
    case SettingForm::kOrdinal:
      if (number) LoadOrdinal(row, *number);
      break;
    case SettingForm::kHex:
      if (fits) SetText(row.control, LoadedHex(text));
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

void PageSettings::LoadOrdinal(const SettingRow& row, int number) {
  const auto items = static_cast<int>(row.limit);
  // Zero and one more than there are items are let through on purpose: they leave the list without a choice.
  if (number > items + 1) return;
  const int index = number - 1;
  SetChoice(row.control, index < items ? index : kNoChoice);
}

std::wstring PageSettings::FileText(const SettingRow& row, const FatalEnd& end) const {
  switch (row.form) {
    case SettingForm::kCheck:
      return std::wstring(CheckText(Checked(row.control)));
    case SettingForm::kChoice:
      return ChoiceText(Choice(row.control), end);
    case SettingForm::kOrdinal:
      return ChoiceText(Choice(row.control) + 1, end);
    case SettingForm::kHex:
      return WithoutBlanks(Text(row.control));
    case SettingForm::kText:
    case SettingForm::kFilledText:
    case SettingForm::kDigits:
      break;
  }
  return Text(row.control);
}

std::wstring PageSettings::ChoiceText(int number, const FatalEnd& end) const {
  std::wstring text = std::to_wstring(number);
  if (text.size() > kLongestChoice) end(std::wstring(facts_.choice_not_converted));
  return text;
}

void PageSettings::Save(ConfigDocument& document, const FatalEnd& end) {
  const std::wstring section(facts_.section);
  try {
    for (const SettingRow& row : rows_) {
      document.SetValue(section, std::wstring(row.key), FileText(row, end));
    }
  } catch (const std::bad_alloc&) {
    end(std::wstring(facts_.edit_not_converted));
  }
  if (document.Save()) MarkStored();
}

}  // namespace qlx
