#include "ports/UsbSelection.h"

#include <stdexcept>
#include <utility>

#include <gmock/gmock.h>

namespace qlx {
namespace {

using ::testing::ElementsAre;

const UsbDevice kDrawer1 = {0x1209, 0x0001, L"CD0001", L"Drawer"};
const UsbDevice kDrawer2 = {0xF055, 0x0005, L"CD0002", L"Drawer"};
const UsbDevice kDual = {0x1209, 0x0002, L"CDD001", L"Two drawers"};
const UsbDevice kDual2 = {0xF055, 0x0004, L"CDD002", L"Two drawers"};

const UsbIdentity kNone;
const UsbIdentity kId1 = {L"0x1209", L"0x0001", L"CD0001"};
const UsbIdentity kId2 = {L"0xf055", L"0x0005", L"CD0002"};
const UsbIdentity kIdDual = {L"0x1209", L"0x0002", L"CDD001"};

UsbSelection Drawers(UsbChoice current = {}) {
  return {kCashDrawer1,
          {L"COM3", L"COM7"},
          {kDrawer1, kDrawer2, kDual, kDual2},
          kSupportedDevices,
          std::move(current)};
}

TEST(UsbSelectionPorts, ThePortThatEqualsTheRowsIsChosen) {
  EXPECT_EQ(Drawers({.port = L"COM7"}).port_item(), 1U);
  EXPECT_EQ(Drawers({.port = L"COM7"}).Result().port, L"COM7");
}

TEST(UsbSelectionPorts, APortThatIsNotThereLeavesNoneChosenAndNoneReturned) {
  for (const wchar_t* port : {L"", L"COM9", L"com7", L"COM70"}) {
    EXPECT_EQ(Drawers({.port = port}).port_item(), std::nullopt) << port;
    EXPECT_EQ(Drawers({.port = port}).Result().port, L"") << port;
  }
}

TEST(UsbSelectionPorts, ThePortThatTheUserChoosesIsReturned) {
  UsbSelection selection = Drawers({.port = L"COM7"});
  selection.ChoosePort(0);
  EXPECT_EQ(selection.Result().port, L"COM3");
}

TEST(UsbSelectionDevices, DevicesBearLettersAfterAuto) {
  EXPECT_THAT(Drawers().DeviceItems(), ElementsAre(L"Auto", L"a", L"b", L"c", L"d"));
}

TEST(UsbSelectionDevices, WithoutDevicesThereIsOnlyAuto) {
  EXPECT_THAT(UsbSelection(kCashDrawer1, {}, {}, kSupportedDevices, {}).DeviceItems(), ElementsAre(L"Auto"));
}

TEST(UsbSelectionDevices, AfterZTheLettersGoOnByTheirCodes) {
  const UsbSelection many(kCashDrawer1, {}, std::vector<UsbDevice>(28), kSupportedDevices, {});
  EXPECT_EQ(many.DeviceItems()[26], L"z");
  EXPECT_EQ(many.DeviceItems()[27], L"{");
  EXPECT_EQ(many.DeviceItems()[28], L"|");
}

TEST(UsbSelectionDevices, StoredIdentitiesSelectTheirDevices) {
  const UsbSelection selection = Drawers({.first = kId2, .second = kId1});
  EXPECT_EQ(selection.first_item(), 2U);
  EXPECT_EQ(selection.second_item(), 1U);
}

TEST(UsbSelectionDevices, AMatchIsExactInEveryField) {
  for (const UsbIdentity& other :
       {UsbIdentity{L"0x1209", L"0x0001", L"cd0001"}, UsbIdentity{L"0x1209", L"0x0001", L""},
        UsbIdentity{L"0x1209", L"0x1", L"CD0001"}, UsbIdentity{L"0X1209", L"0x0001", L"CD0001"}, kNone}) {
    EXPECT_EQ(Drawers({.first = other}).first_item(), 0U) << other.serial;
    EXPECT_EQ(Drawers({.second = other}).second_item(), 0U) << other.serial;
  }
}

TEST(UsbSelectionDevices, TheFirstOfEqualDevicesIsSelected) {
  const UsbSelection twins(kCashDrawer1, {}, {kDrawer2, kDrawer1, kDrawer1}, kSupportedDevices,
                           {.first = kId1});
  EXPECT_EQ(twins.first_item(), 2U);
}

TEST(UsbSelectionDevices, AnUnpluggedStoredDeviceIsReturnedUntouched) {
  const UsbIdentity away = {L"0x1209", L"0x0003", L"AWAY"};
  const UsbSelection selection = Drawers({.first = away, .second = away});
  EXPECT_EQ(selection.first_item(), 0U);
  EXPECT_EQ(selection.Result().first, away);
  EXPECT_EQ(selection.Result().second, away);
}

TEST(UsbSelectionDevices, ChoosingAutoReturnsNoDevice) {
  UsbSelection selection = Drawers({.first = kId1, .second = kId2});
  selection.ChooseFirst(0);
  selection.ChooseSecond(0);
  EXPECT_EQ(selection.Result().first, kNone);
  EXPECT_EQ(selection.Result().second, kNone);
}

TEST(UsbSelectionDevices, ChosenDevicesShowTheirIdentity) {
  UsbSelection selection = Drawers();
  selection.ChooseFirst(1);
  selection.ChooseSecond(2);
  EXPECT_EQ(selection.first(), kId1);
  EXPECT_EQ(selection.second(), kId2);
}

TEST(UsbSelectionDevices, OneDeviceIsNeverBothDrawersAndTheLastChoiceHoldsIt) {
  UsbSelection selection = Drawers({.first = kId1});
  selection.ChooseSecond(1);
  EXPECT_EQ(selection.first_item(), 0U);
  EXPECT_EQ(selection.first(), kNone);
  EXPECT_EQ(selection.second(), kId1);
  selection.ChooseFirst(1);
  EXPECT_EQ(selection.second_item(), 0U);
  EXPECT_EQ(selection.second(), kNone);
  EXPECT_EQ(selection.first(), kId1);
}

TEST(UsbSelectionDevices, BothDrawersMayBeAuto) {
  UsbSelection selection = Drawers({.first = kId1, .second = kId2});
  selection.ChooseFirst(0);
  EXPECT_EQ(selection.second(), kId2);
  selection.ChooseSecond(0);
  EXPECT_EQ(selection.first_item(), 0U);
}

TEST(UsbSelectionDual, AStoredDualDrawerDisablesAndEmptiesTheSecond) {
  const UsbSelection selection = Drawers({.first = kIdDual, .second = kId2});
  EXPECT_EQ(selection.first_item(), 3U);
  EXPECT_FALSE(selection.second_enabled());
  EXPECT_EQ(selection.second(), kNone);
  EXPECT_EQ(selection.second_item(), 0U);
}

TEST(UsbSelectionDual, AnUnpluggedStoredDualDrawerDisablesNothing) {
  const UsbSelection selection(kCashDrawer2, {}, {kDrawer2}, kSupportedDevices,
                               {.first = kIdDual, .second = kId2});
  EXPECT_TRUE(selection.second_enabled());
  EXPECT_EQ(selection.second_item(), 1U);
}

TEST(UsbSelectionDual, ChoosingADualDrawerFirstDisablesAndEmptiesTheSecond) {
  for (const std::size_t dual : {3U, 4U}) {
    UsbSelection selection = Drawers({.second = kId2});
    selection.ChooseFirst(dual);
    EXPECT_FALSE(selection.second_enabled());
    EXPECT_EQ(selection.second_item(), 0U);
    EXPECT_EQ(selection.second(), kNone);
  }
}

TEST(UsbSelectionDual, ChoosingADualDrawerSecondMovesItToTheFirst) {
  UsbSelection selection = Drawers({.first = kId1});
  selection.ChooseSecond(3);
  EXPECT_EQ(selection.first_item(), 3U);
  EXPECT_EQ(selection.first(), kIdDual);
  EXPECT_EQ(selection.second_item(), 0U);
  EXPECT_EQ(selection.second(), kNone);
  EXPECT_FALSE(selection.second_enabled());
}

TEST(UsbSelectionDual, AnotherFirstDeviceOrAutoEnablesTheSecondAgain) {
  for (const std::size_t item : {0U, 1U}) {
    UsbSelection selection = Drawers({.first = kIdDual});
    selection.ChooseFirst(item);
    EXPECT_TRUE(selection.second_enabled());
  }
}

TEST(UsbSelectionDual, TheProductAloneTellsADualDrawer) {
  const UsbDevice other_vendor = {0xF055, 0x0002, L"X", L""};
  UsbSelection selection(kCashDrawer1, {}, {other_vendor}, kSupportedDevices, {});
  selection.ChooseFirst(1);
  EXPECT_FALSE(selection.second_enabled());
}

TEST(UsbSelectionKinds, OnlyTheUsbDrawersHaveAChoiceOfDevices) {
  for (const DeviceKind kind : {kMsr, kLineDisplay, kIButton, kCashDrawerPci, kPrinter}) {
    const UsbSelection selection(kind, {}, {}, kSupportedDevices, {.first = kId1});
    EXPECT_FALSE(LookOf(kind).devices_enabled) << kind;
    EXPECT_FALSE(selection.second_enabled()) << kind;
    EXPECT_EQ(selection.Result().first, kId1) << kind << " keeps what came in";
  }
  EXPECT_TRUE(LookOf(kCashDrawer1).devices_enabled);
  EXPECT_TRUE(LookOf(kCashDrawer2).devices_enabled);
}

TEST(UsbSelectionKinds, AnotherKindsStoredDeviceIsSelectedInItsGreyList) {
  const UsbDevice reader = {0xF055, 0x0008, L"M1", L""};
  const UsbSelection selection(kMsr, {}, {reader}, kSupportedDevices,
                               {.first = {L"0xf055", L"0x0008", L"M1"}});
  EXPECT_EQ(selection.first_item(), 1U);
}

TEST(UsbSelectionKinds, EveryKindHasItsTitleAndLabels) {
  const wchar_t* titles[] = {L"MSR Configuration",
                             L"Line Display Configuration",
                             L"iButton Configuration",
                             L"Cash Drawer (USB) Configuration",
                             L"Cash Drawer (USB) Configuration",
                             L"Cash Drawer (PCI) Configuration",
                             L"Printer Configuration"};
  const wchar_t* labels[] = {L"&MSR:",           L"&Line Display:",  L"i&Button:", L"Cash Drawer &1:",
                             L"Cash Drawer &1:", L"Cash Drawer &1:", L"P&rinter:"};
  for (int kind = 0; kind < kDeviceKinds; ++kind) {
    const UsbSelectionLook& look = LookOf(static_cast<DeviceKind>(kind));
    EXPECT_EQ(look.title, titles[kind]);
    EXPECT_EQ(look.first_label, labels[kind]);
    EXPECT_EQ(look.second_label, kind >= 3 && kind <= 5 ? L"Cash Drawer &2:" : L"");
  }
}

TEST(UsbSelectionLive, PortsComeAndGoAndTheChosenOneStaysChosen) {
  UsbSelection selection = Drawers({.port = L"COM7"});
  selection.TakePresent({L"COM5", L"COM7", L"COM9"}, {});
  EXPECT_THAT(selection.ports(), ElementsAre(L"COM5", L"COM7", L"COM9"));
  EXPECT_EQ(selection.Result().port, L"COM7");
  EXPECT_TRUE(selection.port_present());
}

TEST(UsbSelectionLive, AChosenPortThatHasGoneIsOfferedInItsPlaceAndReturned) {
  UsbSelection selection = Drawers({.port = L"COM3"});
  selection.TakePresent({L"COM7"}, {});
  EXPECT_THAT(selection.ports(), ElementsAre(L"COM3", L"COM7"));
  EXPECT_EQ(selection.Result().port, L"COM3");
  EXPECT_FALSE(selection.port_present());
  selection.TakePresent({L"COM3", L"COM7"}, {});
  EXPECT_THAT(selection.ports(), ElementsAre(L"COM3", L"COM7"));
  EXPECT_TRUE(selection.port_present());
}

TEST(UsbSelectionLive, APortThatHasGoneIsNoLongerOfferedOnceAnotherIsChosen) {
  UsbSelection selection = Drawers({.port = L"COM3"});
  selection.TakePresent({L"COM7"}, {});
  selection.ChoosePort(1);
  EXPECT_THAT(selection.ports(), ElementsAre(L"COM7"));
  EXPECT_EQ(selection.Result().port, L"COM7");
  EXPECT_TRUE(selection.port_present());
}

TEST(UsbSelectionLive, WithNoPortChosenNoneIsMissing) {
  UsbSelection selection = Drawers();
  selection.TakePresent({}, {});
  EXPECT_TRUE(selection.port_present());
  EXPECT_EQ(selection.port_item(), std::nullopt);
}

TEST(UsbSelectionLive, OtherDevicesKeepTheirLettersWhenOneGoes) {
  UsbSelection selection = Drawers();
  selection.ChooseFirst(2);
  selection.TakePresent({}, {kDrawer2, kDual});
  EXPECT_THAT(selection.DeviceItems(), ElementsAre(L"Auto", L"b", L"c"));
  EXPECT_EQ(selection.first_item(), 1U);
  EXPECT_EQ(selection.first(), kId2);
}

TEST(UsbSelectionLive, ADeviceThatComesBackHasItsLetterAndANewOneTheNext) {
  UsbSelection selection(kCashDrawer1, {}, {kDrawer1, kDrawer2}, kSupportedDevices, {});
  selection.TakePresent({}, {kDrawer2});
  selection.TakePresent({}, {kDual, kDrawer2});
  EXPECT_THAT(selection.DeviceItems(), ElementsAre(L"Auto", L"b", L"c"));
  selection.TakePresent({}, {kDual, kDrawer2, kDrawer1});
  EXPECT_THAT(selection.DeviceItems(), ElementsAre(L"Auto", L"a", L"b", L"c"));
  selection.ChooseFirst(3);
  EXPECT_EQ(selection.first(), kIdDual);
}

TEST(UsbSelectionLive, AChosenDeviceThatHasGoneStaysChosenAndIsMissing) {
  UsbSelection selection = Drawers({.first = kId1, .second = kId2});
  selection.TakePresent({}, {});
  EXPECT_THAT(selection.DeviceItems(), ElementsAre(L"Auto", L"a", L"b"));
  EXPECT_EQ(selection.Result(), (UsbChoice{.first = kId1, .second = kId2}));
  EXPECT_FALSE(selection.first_present() || selection.second_present());
  selection.ChooseFirst(0);
  EXPECT_TRUE(selection.first_present());
  EXPECT_THAT(selection.DeviceItems(), ElementsAre(L"Auto", L"b"));
  EXPECT_EQ(selection.second_item(), 1U);
}

TEST(UsbSelectionLive, AStoredDeviceIsMissingUntilItComesAndIsThenSelected) {
  UsbSelection selection(kCashDrawer1, {}, {kDrawer1}, kSupportedDevices, {.first = kId2});
  EXPECT_FALSE(selection.first_present());
  selection.TakePresent({}, {kDrawer1, kDrawer2});
  EXPECT_TRUE(selection.first_present());
  EXPECT_EQ(selection.first_item(), 2U);
}

TEST(UsbSelectionLive, AStoredDualDrawerThatComesTakesTheSecondsPlace) {
  UsbSelection selection(kCashDrawer1, {}, {kDrawer2}, kSupportedDevices, {.first = kIdDual, .second = kId2});
  selection.TakePresent({}, {kDrawer2, kDual});
  EXPECT_FALSE(selection.second_enabled());
  EXPECT_EQ(selection.second(), kNone);
  EXPECT_TRUE(selection.second_present());
}

TEST(UsbSelectionLive, ADualDrawerThatHasGoneStillHoldsBoth) {
  UsbSelection selection = Drawers({.first = kIdDual});
  selection.TakePresent({}, {kDrawer1});
  EXPECT_FALSE(selection.second_enabled());
  EXPECT_FALSE(selection.first_present());
}

TEST(UsbSelectionLive, EqualDevicesAreCounted) {
  UsbSelection selection(kCashDrawer1, {}, {kDrawer1}, kSupportedDevices, {.first = kId1});
  selection.TakePresent({}, {kDrawer1, kDrawer1});
  EXPECT_THAT(selection.DeviceItems(), ElementsAre(L"Auto", L"a", L"b"));
  selection.TakePresent({}, {kDrawer1});
  EXPECT_THAT(selection.DeviceItems(), ElementsAre(L"Auto", L"a"));
}

TEST(UsbSelectionErrors, AnItemBeyondTheListIsOutOfRange) {
  EXPECT_THROW(Drawers().ChooseFirst(5), std::out_of_range);
  EXPECT_THROW(Drawers().ChooseSecond(5), std::out_of_range);
}

}  // namespace
}  // namespace qlx
