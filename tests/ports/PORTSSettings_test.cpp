#include "ports/PORTSSettings.h"

#include <gtest/gtest.h>

#include "tests/support/ConfigFile.h"

namespace qlx {
namespace {

constexpr wchar_t kSection[] = L"Ports_Configuration";

/// A page on a file whose section holds `elements`; COM1 to COM3 are present.
class PORTSSettingsTest : public testing::Test {
 protected:
  PORTSSettings Loaded(const std::wstring& elements) {
    file_ = std::make_unique<ConfigFile>(L"<MZP><Ports_Configuration>" + elements +
                                         L"</Ports_Configuration></MZP>");
    PORTSSettings settings({L"COM1", L"", L"COM2", L"COM3"});
    settings.Load(file_->document().ReadSection(kSection));
    return settings;
  }

  ConfigFile::Pairs SavedBy(PORTSSettings settings) {
    settings.Save(file_->document());
    return file_->Saved(kSection);
  }

  AttributeMap SavedAttributes(const std::wstring& name) {
    for (const ConfigNode& node : file_->document().ReadSection(kSection)) {
      if (node.name == name) return node.attributes;
    }
    return {};
  }

  std::unique_ptr<ConfigFile> file_;
};

TEST_F(PORTSSettingsTest, APortThatIsNotPresentIsNotShownAndTheNextSaveDropsIt) {
  const PORTSSettings settings = Loaded(L"<MSR_USB>COM12</MSR_USB><LD_USB>COM2</LD_USB>");
  EXPECT_EQ(settings.row(kMsr).port, L"");
  EXPECT_EQ(settings.row(kLineDisplay).port, L"COM2");
  EXPECT_EQ(SavedBy(settings)[0], (std::pair<std::wstring, std::wstring>{L"MSR_USB", L""}));
}

TEST_F(PORTSSettingsTest, PortsMatchWholeAndInTheirLetterCase) {
  const PORTSSettings settings = Loaded(L"<MSR_USB>com1</MSR_USB><LD_USB>COM</LD_USB>");
  EXPECT_EQ(settings.row(kMsr).port, L"");
  EXPECT_EQ(settings.row(kLineDisplay).port, L"");
}

TEST_F(PORTSSettingsTest, OnlyTheUsbDrawersReadTheirIdentities) {
  const PORTSSettings settings = Loaded(
      L"<MSR_USB VID='0x1' PID='0x2' Serial_Number='m'>COM1</MSR_USB>"
      L"<PRINTER_USB VID='0x1' PID='0x2' Serial_Number='p'/>"
      L"<CD_USB VID='0x3' PID='0x4' Serial_Number='c' VID_2='0x5' PID_2='0x6'>COM9</CD_USB>");
  EXPECT_EQ(settings.row(kMsr).usb, UsbIdentity{});
  EXPECT_EQ(settings.row(kPrinter).usb, UsbIdentity{});
  EXPECT_EQ(settings.row(kCashDrawer1).usb, (UsbIdentity{L"0x3", L"0x4", L"c"}));
  EXPECT_EQ(settings.row(kCashDrawer2).usb, (UsbIdentity{L"0x5", L"0x6", L""}));
}

TEST_F(PORTSSettingsTest, SavesTheSixElementsInOrderInThePlaceOfTheOldOnes) {
  const PORTSSettings settings =
      Loaded(L"<PRINTER_USB>COM1</PRINTER_USB><Other>x</Other><MSR_USB>COM2</MSR_USB>");
  EXPECT_EQ(SavedBy(settings), (ConfigFile::Pairs{{L"Other", L"x"},
                                                  {L"MSR_USB", L"COM2"},
                                                  {L"LD_USB", L""},
                                                  {L"IB_USB", L""},
                                                  {L"CD_USB", L""},
                                                  {L"CD_PCI", L""},
                                                  {L"PRINTER_USB", L"COM1"}}));
}

TEST_F(PORTSSettingsTest, WritesTwoIdentitiesForTheUsbDrawersAndNoneForThePciDrawer) {
  PORTSSettings settings = Loaded(L"");
  settings.Configure(kCashDrawer2, {L"COM1", {L"0x1", L"0x2", L"a"}}, {L"0x3", L"0x4", L"b"});
  SavedBy(settings);
  EXPECT_EQ(SavedAttributes(L"CD_USB"), (AttributeMap{{L"PID", L"0x2"},
                                                      {L"PID_2", L"0x4"},
                                                      {L"Serial_Number", L"a"},
                                                      {L"Serial_Number_2", L"b"},
                                                      {L"VID", L"0x1"},
                                                      {L"VID_2", L"0x3"}}));
  EXPECT_EQ(SavedAttributes(L"CD_PCI"), AttributeMap{});
  EXPECT_EQ(SavedAttributes(L"MSR_USB"),
            (AttributeMap{{L"PID", L""}, {L"Serial_Number", L""}, {L"VID", L""}}));
}

TEST_F(PORTSSettingsTest, ConfiguringThePrinterOnTheMsrsPortEmptiesTheMsrsPort) {
  PORTSSettings settings = Loaded(L"<MSR_USB>COM1</MSR_USB><LD_USB>COM2</LD_USB>");
  settings.Configure(kPrinter, {L"COM1", {}}, {});
  EXPECT_EQ(settings.row(kPrinter).port, L"COM1");
  EXPECT_EQ(settings.row(kMsr).port, L"");
  EXPECT_EQ(settings.row(kLineDisplay).port, L"COM2");
}

TEST_F(PORTSSettingsTest, WithTwoRowsOfTheSamePortOnlyTheOneNotConfiguredLosesIt) {
  PORTSSettings settings = Loaded(L"<MSR_USB>COM1</MSR_USB><LD_USB>COM1</LD_USB>");
  settings.Configure(kLineDisplay, {L"COM1", {}}, {});
  EXPECT_EQ(settings.row(kLineDisplay).port, L"COM1");
  EXPECT_EQ(settings.row(kMsr).port, L"");
}

TEST_F(PORTSSettingsTest, ASecondIdentityCountsForTheUsbDrawersOnly) {
  PORTSSettings settings = Loaded(L"");
  settings.Configure(kMsr, {L"COM1", {L"0x1", L"0x2", L"a"}}, {L"0x3", L"0x4", L"b"});
  EXPECT_EQ(settings.row(kMsr).usb, (UsbIdentity{L"0x1", L"0x2", L"a"}));
  EXPECT_EQ(settings.row(kCashDrawer2).usb, UsbIdentity{});
}

TEST_F(PORTSSettingsTest, TheSecondDrawerIsServedByTheFirstOnesPort) {
  const PORTSSettings settings = Loaded(L"<CD_USB>COM3</CD_USB><CD_PCI>COM2</CD_PCI>");
  EXPECT_EQ(settings.PortOf(kCashDrawer2), L"COM3");
  EXPECT_EQ(settings.row(kCashDrawer2).port, L"");
  EXPECT_EQ(settings.PortOf(kCashDrawerPci), L"COM2");
}

TEST_F(PORTSSettingsTest, ClearAllEmptiesEveryRowAndLeavesTheFile) {
  PORTSSettings settings = Loaded(L"<CD_USB VID='0x3'>COM3</CD_USB>");
  settings.Clear();
  for (int kind = 0; kind < kDeviceKinds; ++kind)
    EXPECT_EQ(settings.row(static_cast<DeviceKind>(kind)), PortRow{});
  EXPECT_FALSE(file_->document().changed());
  EXPECT_EQ(file_->Value(kSection, L"CD_USB"), L"COM3");
}

TEST_F(PORTSSettingsTest, ElementsOfTheSameNamesElsewhereInTheFileStay) {
  file_ = std::make_unique<ConfigFile>(
      L"<MZP><Ports_Configuration/><Other><MSR_USB>mine</MSR_USB></Other></MZP>");
  PORTSSettings({}).Save(file_->document());
  EXPECT_EQ(file_->document().ReadSection(L"Other")[0].text, L"mine");
}

TEST_F(PORTSSettingsTest, AreChangedUntilTheyAreSaved) {
  PORTSSettings settings = Loaded(L"<MSR_USB>COM1</MSR_USB>");
  EXPECT_FALSE(settings.changed());
  settings.Clear();
  EXPECT_TRUE(settings.changed());
  settings.Configure(kMsr, {L"COM1", {}}, {});
  EXPECT_FALSE(settings.changed());
  settings.Configure(kMsr, {L"COM2", {}}, {});
  settings.Save(file_->document());
  EXPECT_FALSE(settings.changed());
}

TEST_F(PORTSSettingsTest, APortThatHasBeenPluggedInSinceTheStartIsOfferedOnceItWasChosen) {
  PORTSSettings settings = Loaded(L"");
  settings.Configure(kMsr, {L"COM9", {}}, {});
  settings.Configure(kMsr, {L"", {}}, {});
  EXPECT_EQ(settings.ports(), (std::vector<std::wstring>{L"COM1", L"", L"COM2", L"COM3", L"COM9"}));
}

class AbsentPorts : public PORTSSettingsTest {};

TEST_F(AbsentPorts, AStoredPortThatWasNotThereAtTheStartIsNotKept) {
  PORTSSettings settings = Loaded(L"<MSR_USB>COM12</MSR_USB><CD_USB>COM2</CD_USB><CD_PCI/>");
  EXPECT_EQ(settings.AbsentPorts({L"COM2"}), (std::vector<AbsentPort>{{kMsr, L"COM12", false}}));
  EXPECT_EQ(settings.AbsentPorts({L"COM2", L"COM12"}).size(), 1U) << "it is still lost";
  settings.Save(file_->document());
  EXPECT_EQ(settings.AbsentPorts({L"COM2"}).size(), 0U);
}

TEST_F(AbsentPorts, OfTwoStoredPortsTheOneThatIsThereCounts) {
  const PORTSSettings settings = Loaded(L"<MSR_USB>COM12</MSR_USB><MSR_USB>COM2</MSR_USB>");
  EXPECT_EQ(settings.AbsentPorts({L"COM1", L"COM2"}).size(), 0U);
}

TEST_F(AbsentPorts, ABoundPortThatHasGoneSinceIsKept) {
  const PORTSSettings settings = Loaded(L"<PRINTER_USB>COM1</PRINTER_USB><CD_USB>COM2</CD_USB>");
  EXPECT_EQ(settings.AbsentPorts({L"COM1", L"COM2"}).size(), 0U);
  EXPECT_EQ(settings.AbsentPorts({}),
            (std::vector<AbsentPort>{{kCashDrawer1, L"COM2", true}, {kPrinter, L"COM1", true}}));
  EXPECT_EQ(SavedBy(settings)[5], (std::pair<std::wstring, std::wstring>{L"PRINTER_USB", L"COM1"}));
}

TEST_F(AbsentPorts, AClearedRowIsMissingNothing) {
  PORTSSettings settings = Loaded(L"<PRINTER_USB>COM1</PRINTER_USB>");
  settings.Clear();
  EXPECT_EQ(settings.AbsentPorts({}).size(), 0U);
}

}  // namespace
}  // namespace qlx
