// The HID back end on stand-ins for hid.dll and the list of interfaces.
#include "platform/windows/hid_library.h"

#include <algorithm>
#include <bit>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/platform/windows/own_setupapi.h"
#include "tests/platform/windows/stand_in_hid.h"
#include "tests/support/windows/handle_growth.h"

namespace qlx::platform {
namespace {

using testing::interface_list;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// One interface that can be opened: the system's device that takes everything.
class AStandInDevice : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(library_, nullptr);
    interface_list = {};
    interface_list.interfaces = {{L"\\\\.\\NUL"}};
    const HMODULE module = GetModuleHandleW(L"stand_in_hid.dll");
    state_ = std::bit_cast<decltype(&StandInHidState)>(GetProcAddress(module, "StandInHidState"))();
    *state_ = {};
  }

  std::vector<HidDevice> Walk() {
    std::vector<HidDevice> found;
    walked_ = library_->Walk([&](const HidDevice& device) { found.push_back(device); });
    return found;
  }
  HidDevice Only() {
    const auto found = Walk();
    EXPECT_THAT(found, SizeIs(1));
    return found.empty() ? HidDevice{} : found[0];
  }

  std::unique_ptr<HidLibrary> library_ = BindHidDll(L"stand_in_hid.dll");
  testing::StandInHid* state_ = nullptr;
  bool walked_ = false;
};

TEST_F(AStandInDevice, IsFoundInTheClassOfTheLibraryWithAllThatItSays) {
  const HidDevice device = Only();
  EXPECT_EQ(interface_list.of_class.Data1, 0x11U);
  EXPECT_EQ(device.vendor, 0x1209);
  EXPECT_EQ(device.product, 0x0001);
  EXPECT_EQ(device.usage_page, 0xFF45);
  EXPECT_EQ(device.usage, 0x5400);
  EXPECT_EQ(device.serial, L"text");
  EXPECT_EQ(device.name, L"text");
}

TEST_F(AStandInDevice, HasNoNumbersWithoutAttributes) {
  state_->gives_attributes = false;
  const HidDevice device = Only();
  EXPECT_EQ(device.vendor, 0);
  EXPECT_EQ(device.product, 0);
  EXPECT_EQ(device.usage, 0x5400);
}

TEST_F(AStandInDevice, HasNoUsageWithoutPreparsedData) {
  state_->gives_preparsed_data = false;
  EXPECT_EQ(Only().usage_page, 0);
  EXPECT_EQ(Only().usage, 0);
  EXPECT_EQ(state_->preparsed_data, 0);
}

TEST_F(AStandInDevice, HasNoUsageWithoutCapabilities) {
  state_->gives_caps = false;
  EXPECT_EQ(Only().usage_page, 0);
  EXPECT_EQ(Only().usage, 0);
}

TEST_F(AStandInDevice, HasItsPreparsedDataGivenBack) {
  Walk();
  EXPECT_EQ(state_->preparsed_data, 0);
}

TEST_F(AStandInDevice, HasAnEmptyTextForOneThatCannotBeRead) {
  state_->gives_serial_number = false;
  EXPECT_EQ(Only().serial, L"");
  EXPECT_EQ(Only().name, L"text");
  state_->gives_serial_number = true;
  state_->gives_product = false;
  EXPECT_EQ(Only().serial, L"text");
  EXPECT_EQ(Only().name, L"");
}

TEST_F(AStandInDevice, HasTextsThatEndWhereABufferOf256BytesDoes) {
  std::fill_n(state_->text, 160, L'x');
  EXPECT_EQ(Only().serial, std::wstring(127, L'x'));
  EXPECT_EQ(Only().name, std::wstring(127, L'x'));
  EXPECT_FALSE(state_->short_buffer);
}

TEST_F(AStandInDevice, HasNoCharacterSplitAtTheEndOfAText) {
  for (int i = 0; i < 80; ++i) {
    state_->text[2 * i] = L'\xD83D';
    state_->text[2 * i + 1] = L'\xDCB6';
  }
  EXPECT_THAT(Only().name, SizeIs(126));
}

TEST_F(AStandInDevice, IsLeftOutWhenItCannotBeOpened) {
  interface_list.interfaces = {{L"\\\\.\\no such device"}, {L"\\\\.\\NUL"}};
  EXPECT_THAT(Walk(), SizeIs(1));
  EXPECT_TRUE(walked_);
}

TEST_F(AStandInDevice, IsFoundThoughAnotherProgramHoldsItForReadingAndWriting) {
  const auto file = std::filesystem::temp_directory_path() / "held";
  const HANDLE holder = CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  ASSERT_NE(holder, INVALID_HANDLE_VALUE);
  interface_list.interfaces = {{file.wstring()}};
  EXPECT_THAT(Walk(), SizeIs(1));
  CloseHandle(holder);
}

TEST_F(AStandInDevice, IsNotReachedWhenTheClassCannotBeOpened) {
  interface_list.opens = false;
  EXPECT_THAT(Walk(), IsEmpty());
  EXPECT_FALSE(walked_);
}

TEST_F(AStandInDevice, LeavesNoHandleBehind) {
  Walk();
  EXPECT_LT(testing::HandleGrowth([this] {
              for (int i = 0; i < 100; ++i) Walk();
            }),
            50);
}

TEST(HidDllBinding, WithoutTheLibraryThereIsNothingToBind) {
  EXPECT_EQ(BindHidDll(L"no_such_hid.dll"), nullptr);
}

TEST(HidDllBinding, ALibraryThatLacksOneOfItsTwelveFunctionsIsNotBoundAndNotKept) {
  for (const std::wstring lacking :
       {L"HidD_GetHidGuid", L"HidD_GetPreparsedData", L"HidD_FreePreparsedData", L"HidD_GetAttributes",
        L"HidD_FlushQueue", L"HidD_SetNumInputBuffers", L"HidD_GetProductString",
        L"HidD_GetSerialNumberString", L"HidD_GetFeature", L"HidD_SetOutputReport", L"HidP_GetCaps",
        L"HidP_GetValueCaps"}) {
    const std::wstring library = L"hid_without_" + lacking + L".dll";
    EXPECT_EQ(BindHidDll(library.c_str()), nullptr) << library;
    EXPECT_EQ(GetModuleHandleW(library.c_str()), nullptr) << library;
    const HMODULE loaded = LoadLibraryW(library.c_str());
    EXPECT_NE(loaded, nullptr) << library << " is not there";
    FreeLibrary(loaded);
  }
}

TEST(HidDllBinding, TheSystemsOwnLibraryHasThemAll) {
  for (int i = 0; i < 20; ++i) EXPECT_NE(BindHidLibrary(), nullptr);
}

TEST(HidDllBinding, TheLibraryIsLetGoWithTheLastUser) {
  EXPECT_NE(BindHidDll(L"stand_in_hid.dll"), nullptr);
  EXPECT_EQ(GetModuleHandleW(L"stand_in_hid.dll"), nullptr);
}

}  // namespace
}  // namespace qlx::platform
