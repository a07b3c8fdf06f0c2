#include "pages/PRINTERSettings.h"

#include "config/values.h"
#include "pages/code_pages.h"

namespace qlx {
namespace {

constexpr int kStandardChoice = 1;  // "858"
constexpr int kNoCodePage = -1;
constexpr int kFirstBehindGeneric = 6;
constexpr int kStandardLimit = 26;
constexpr int kPrinterLimit = 32;
/// The services read the number into a field of this many characters.
constexpr std::size_t kLongestNumber = 2;

constexpr std::wstring_view kEmulations[] = {Translatable(L"Mirel Printer (Native)"),
                                             Translatable(L"Mirel Printer (Compatibility)"),
                                             Translatable(L"Epson Emulation")};

std::wstring NumberText(int number, const FatalEnd& end) {
  std::wstring text = std::to_wstring(number);
  if (text.size() > kLongestNumber) end(std::wstring(PRINTERSettings::kNotConverted));
  return text;
}

}  // namespace

void ItemList::Choose(int index) {
  chosen = index >= 0 && static_cast<std::size_t>(index) < items.size() ? index : kNoItem;
}

PRINTERSettings::PRINTERSettings() {
  emulation_.items.assign(std::begin(kEmulations), std::end(kEmulations));
  emulation_.Choose(kNative);
  FillStandard(kStandardChoice);
  MarkStored();
}

void PRINTERSettings::Load(const std::vector<ConfigNode>& ports, const std::vector<ConfigNode>& printer) {
  for (const ConfigNode& port : ports) {
    if (port.name == L"PRINTER_USB") port_ = port.text;
  }
  for (const ConfigNode& pair : printer) LoadValue(pair);
  MarkStored();
}

void PRINTERSettings::LoadValue(const ConfigNode& pair) {
  const auto number = ParseNumber(pair.text);
  if (pair.name == L"Code_Page") {
    stored_code_page_ = number.value_or(kNoCodePage);
  } else if (pair.name == L"Emulation_Mode") {
    stored_emulation_mode_ = number.value_or(kNative);
    // The native numbers leave out the place of "Generic". Only for a code page that stands before the mode
    // in the file: wanted, files of the suite hold them in this order.
    if (number == kNative && stored_code_page_ >= kFirstBehindGeneric) --stored_code_page_;
  } else if (pair.name == L"Unsolicited_Status") {
    unsolicited_status_ = IsTrue(pair.text);
  }
}

void PRINTERSettings::FillStandard(int chosen) {
  const auto standard = StandardCodePages();
  code_page_.items.assign(standard.begin(), standard.end());
  code_page_.Choose(chosen);
}

void PRINTERSettings::ShowStoredEmulation() {
  emulation_.Choose(stored_emulation_mode_);
  shows_stored_ = true;
  // The box may have been switched before the printer's answer.
  stored_ = {CodePageValue(), emulation_.chosen, stored_.unsolicited_status};
}

void PRINTERSettings::ChooseEmulation(int index) {
  emulation_.Choose(index);
  if (index == kNative && !printer_code_pages_.empty()) {
    code_page_.items = printer_code_pages_;
    code_page_.Choose(kStandardChoice);
  } else {
    FillStandard(kStandardChoice);
  }
}

void PRINTERSettings::SetDefaults() {
  emulation_.Choose(kNative);
  unsolicited_status_ = false;
}

void PRINTERSettings::ShowStandardCodePages() {
  FillStandard(stored_code_page_ >= kStandardLimit ? kStandardChoice : stored_code_page_);
  ShowStoredEmulation();
}

void PRINTERSettings::ShowPrinterCodePages(std::span<const std::wstring> code_pages) {
  printer_code_pages_.assign(code_pages.begin(), code_pages.end());
  code_page_.items = printer_code_pages_;
  if (stored_code_page_ == kNoCodePage) {
    code_page_.Choose(static_cast<int>(code_page_.items.size()) - 1);
  } else {
    code_page_.Choose(stored_code_page_ >= kPrinterLimit ? kStandardChoice : stored_code_page_);
  }
  ShowStoredEmulation();
}

void PRINTERSettings::ShowWithoutAsking() {
  FillStandard(stored_code_page_);
  ShowStoredEmulation();
}

int PRINTERSettings::CodePageValue() const {
  const int chosen = code_page_.chosen;
  if (emulation_.chosen != kNative) return chosen;
  const auto number = chosen == ItemList::kNoItem
                          ? std::nullopt
                          : CodePageNumber(code_page_.items[static_cast<std::size_t>(chosen)]);
  if (number) return *number;
  const bool last = chosen == static_cast<int>(code_page_.items.size()) - 1;
  return last ? kNoCodePage : chosen + 1;
}

PrinterValues PRINTERSettings::Values(const FatalEnd& end) const {
  return {NumberText(CodePageValue(), end), NumberText(emulation_.chosen, end),
          std::wstring(CheckText(unsolicited_status_))};
}

bool PRINTERSettings::Save(const PrinterValues& values, ConfigDocument& document) {
  const std::wstring section(kSection);
  document.SetValue(section, L"Code_Page", values.code_page);
  document.SetValue(section, L"Emulation_Mode", values.emulation_mode);
  document.SetValue(section, L"Unsolicited_Status", values.unsolicited_status);
  return document.Save();
}

}  // namespace qlx
