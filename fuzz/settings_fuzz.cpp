// Any stored values and any clicks: the pages' settings stay within their bounds and survive a save and the
// next start.
#include <algorithm>
#include <stdexcept>

#include <fuzzer/FuzzedDataProvider.h>

#include "config/schema.h"
#include "fuzz/MemoryFiles.h"
#include "log/LogSettings.h"
#include "log/levels.h"
#include "pages/HexText.h"
#include "pages/IBSettings.h"
#include "pages/LOGSettings.h"
#include "pages/MSRSettings.h"
#include "pages/PRINTERSettings.h"
#include "platform/text.h"
#include "ports/PORTSSettings.h"
#include "ports/UsbSelection.h"

namespace {

using namespace qlx;

constexpr wchar_t kCharacters[] = L"0123456789abcdefABCDEF truefals<&>\"'\t\r\n%;?\u00e9\U0001F5A8";
constexpr const wchar_t* kSpecialTexts[] = {L"true", L"COM1", L"COM9", L"99999999999"};
constexpr std::size_t kNumbers = 40;  // more than a list has items
constexpr const wchar_t* kAttributes[] = {L"VID",   L"PID",   L"Serial_Number",
                                          L"VID_2", L"PID_2", L"Serial_Number_2"};
const std::vector<std::wstring> kPorts = {L"COM1", L"COM9", L"COM10"};

std::size_t TakeIndex(FuzzedDataProvider& input, std::size_t count) {
  return input.ConsumeIntegralInRange<std::size_t>(0, count - 1);
}

std::wstring TakeText(FuzzedDataProvider& input) {
  if (input.ConsumeBool()) return std::to_wstring(TakeIndex(input, kNumbers));
  if (input.ConsumeBool()) return input.PickValueInArray(kSpecialTexts);
  std::wstring text;
  for (std::size_t left = TakeIndex(input, 41); left > 0; --left)
    text += kCharacters[TakeIndex(input, std::size(kCharacters) - 1)];
  return text;
}

/// Some elements of a section, in any order, some of them twice, some of them unknown.
std::vector<ConfigNode> TakeElements(FuzzedDataProvider& input, std::wstring_view name) {
  const auto& keys = std::ranges::find(Sections(), name, &SectionDefault::name)->settings;
  std::vector<ConfigNode> elements;
  for (std::size_t left = TakeIndex(input, 21); left > 0; --left) {
    const std::size_t key = TakeIndex(input, keys.size() + 1);
    ConfigNode& element = elements.emplace_back();
    element.name = key < keys.size() ? keys[key].key : L"Unknown";
    element.text = TakeText(input);
    if (input.ConsumeBool()) element.attributes[input.PickValueInArray(kAttributes)] = TakeText(input);
  }
  return elements;
}

/// One configuration file and the runs of the tool on it.
class File {
 public:
  std::unique_ptr<ConfigDocument> NextRun() {
    auto document = std::make_unique<ConfigDocument>(DocumentOver(files_));
    document->Open(kFuzzedPath, true);
    return document;
  }
  const std::string& bytes() { return files_.files[kFuzzedPath]; }

 private:
  MemoryFiles files_;
};

void RequireNoEnd(const std::wstring&) {
  Require(false);
}

void RequireWithinBounds(const PageSettings& page) {
  for (const SettingRow& row : page.rows()) {
    const auto items = static_cast<int>(row.limit);
    if (row.form == SettingForm::kCheck) continue;
    if (row.form == SettingForm::kChoice || row.form == SettingForm::kOrdinal) {
      Require(page.Choice(row.control) >= -1 && page.Choice(row.control) < items);
    } else if (row.form == SettingForm::kHex) {
      Require(platform::Utf16Length(page.Text(row.control)) <= kHexLength);
    } else {
      Require(platform::Utf16Length(page.Text(row.control)) <= row.limit);
    }
  }
}

/// The boxes and lists that a user can set without a rule of the page.
void ClickRow(PageSettings& page, FuzzedDataProvider& input) {
  const SettingRow& row = page.rows()[TakeIndex(input, page.rows().size())];
  if (row.form == SettingForm::kCheck) page.SetChecked(row.control, input.ConsumeBool());
  if (row.form == SettingForm::kChoice || row.form == SettingForm::kOrdinal)
    page.SetChoice(row.control, static_cast<int>(TakeIndex(input, row.limit)));
}

void ClickMsr(MSRSettings& page, FuzzedDataProvider& input) {
  const WrapperSide side = input.ConsumeBool() ? WrapperSide::kHead : WrapperSide::kTail;
  const int control = side == WrapperSide::kHead ? MSRSettings::kHeadText : MSRSettings::kTailText;
  if (input.ConsumeBool()) return page.ClickCarriageReturn(input.ConsumeBool());
  page.ClickWrapper(side, input.ConsumeBool());
  if (!page.wrapper(side).enabled) return;
  const std::wstring text = TakeText(input);
  page.SetText(control, std::wstring(platform::Utf16Prefix(text, page.wrapper(side).limit)));
}

template <typename Page>
void Click(Page& page, FuzzedDataProvider& input) {
  if constexpr (std::is_same_v<Page, MSRSettings>) {
    ClickMsr(page, input);
  } else {
    ClickRow(page, input);
  }
}

/// What a page saves, the next run's page loads: its own save leaves the file as it is.
template <typename Page>
void TryPage(FuzzedDataProvider& input) {
  File file;
  Page page;
  const std::wstring section(page.facts().section);
  page.Load(TakeElements(input, section));
  RequireWithinBounds(page);
  for (std::size_t clicks = TakeIndex(input, 9); clicks > 0; --clicks) Click(page, input);
  RequireWithinBounds(page);
  Require(!page.FindRefusal());
  page.Save(*file.NextRun(), RequireNoEnd);
  const std::string saved = file.bytes();
  const auto document = file.NextRun();
  Page reloaded;
  reloaded.Load(document->ReadSection(section));
  reloaded.Save(*document, RequireNoEnd);
  Require(file.bytes() == saved);
}

std::vector<UsbDevice> TakeDevices(FuzzedDataProvider& input) {
  std::vector<UsbDevice> devices(TakeIndex(input, 31));
  for (UsbDevice& device : devices) {
    device.vendor = kSupportedDevices.vendors[TakeIndex(input, 2)];
    device.product = kSupportedDevices.products[TakeIndex(input, 5)];
    device.serial = TakeText(input);
  }
  return devices;
}

void RequireSound(const UsbSelection& selection) {
  const std::size_t items = selection.DeviceItems().size();
  Require(selection.first_item() < items && selection.second_item() < items);
  Require(selection.first_item() == 0 || selection.first_item() != selection.second_item());
  Require(selection.second_enabled() || selection.second() == UsbIdentity());
}

/// The selection's dialog for a USB cash drawer, from the file's identities to a choice.
UsbChoice TakeChoice(FuzzedDataProvider& input, const PORTSSettings& page) {
  UsbSelection selection(kCashDrawer1, kPorts, TakeDevices(input), kSupportedDevices,
                         {page.PortOf(kCashDrawer1), page.row(kCashDrawer1).usb, page.row(kCashDrawer2).usb});
  for (std::size_t clicks = TakeIndex(input, 5); clicks > 0; --clicks) {
    const std::size_t item = TakeIndex(input, selection.DeviceItems().size());
    if (selection.second_enabled() && input.ConsumeBool()) {
      selection.ChooseSecond(item);
    } else {
      selection.ChooseFirst(item);
    }
    RequireSound(selection);
  }
  if (input.ConsumeBool()) selection.ChoosePort(TakeIndex(input, kPorts.size()));
  return selection.Result();
}

void RequireKnownPorts(const PORTSSettings& page) {
  for (int kind = 0; kind < kDeviceKinds; ++kind) {
    const std::wstring& port = page.row(static_cast<DeviceKind>(kind)).port;
    Require(port.empty() || std::ranges::find(kPorts, port) != kPorts.end());
  }
}

void RequireSame(const PORTSSettings& page, const PORTSSettings& other) {
  for (int number = 0; number < kDeviceKinds; ++number) {
    const auto kind = static_cast<DeviceKind>(number);
    Require(page.row(kind).port == other.row(kind).port);
    const bool drawer = kind == kCashDrawer1 || kind == kCashDrawer2;
    Require(!drawer || page.row(kind).usb == other.row(kind).usb);
  }
}

void TryPorts(FuzzedDataProvider& input) {
  constexpr wchar_t kSection[] = L"Ports_Configuration";
  File file;
  PORTSSettings page(kPorts);
  page.Load(TakeElements(input, kSection));
  RequireKnownPorts(page);
  for (std::size_t choices = TakeIndex(input, 5); choices > 0; --choices) {
    const auto kind = static_cast<DeviceKind>(TakeIndex(input, kDeviceKinds));
    const UsbChoice choice = TakeChoice(input, page);
    page.Configure(kind, {choice.port, choice.first}, choice.second);
    RequireKnownPorts(page);
  }
  page.Save(*file.NextRun());
  PORTSSettings reloaded(kPorts);
  reloaded.Load(file.NextRun()->ReadSection(kSection));
  RequireSame(page, reloaded);
}

void Show(PRINTERSettings& page, FuzzedDataProvider& input) {
  const std::vector<std::wstring> code_pages(TakeIndex(input, 200), L"437");
  switch (TakeIndex(input, 3)) {
    case 0:
      return page.ShowStandardCodePages();
    case 1:
      return page.ShowPrinterCodePages(code_pages);
    default:
      return page.ShowWithoutAsking();
  }
}

void RequireSound(const ItemList& list) {
  Require(list.chosen >= ItemList::kNoItem && list.chosen < static_cast<int>(list.items.size()));
}

/// A number of more than two characters is the one way in which a save may end.
void TryPrinter(FuzzedDataProvider& input) {
  PRINTERSettings page;
  page.Load(TakeElements(input, L"Ports_Configuration"), TakeElements(input, PRINTERSettings::kSection));
  if (input.ConsumeBool()) Show(page, input);
  for (std::size_t clicks = TakeIndex(input, 5); clicks > 0; --clicks) {
    page.ChooseEmulation(input.ConsumeIntegralInRange(-1, 3));
    page.ChooseCodePage(input.ConsumeIntegralInRange(-1, 200));
  }
  RequireSound(page.code_page());
  RequireSound(page.emulation());
  try {
    File file;
    const auto document = file.NextRun();
    PRINTERSettings::Save(page.Values([](const std::wstring&) { throw std::range_error("too long"); }),
                          *document);
    Require(document->ReadSection(std::wstring(PRINTERSettings::kSection)).size() == 3);
  } catch (const std::range_error&) {
    Require(page.code_page().chosen >= 99);
  }
}

void TryLog(FuzzedDataProvider& input) {
  const auto elements = TakeElements(input, L"Logging_Configuration");
  LogSettings settings;
  ReadFilterKeys(elements, settings);
  ReadFileKeys(elements, settings);
  Require(settings.port <= 65535 && settings.level <= LEVEL_TRACE);
}

constexpr void (*kTries[])(FuzzedDataProvider&) = {
    TryPage<MSRSettings>, TryPage<IBSettings>, TryPage<LOGSettings>, TryPorts, TryPrinter, TryLog,
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  input.PickValueInArray(kTries)(input);
  return 0;
}
