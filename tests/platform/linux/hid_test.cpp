#include "platform/hid.h"

#include <algorithm>
#include <clocale>
#include <filesystem>
#include <vector>

#include <gmock/gmock.h>
#include <stdlib.h>
#include <unistd.h>

#include "platform/linux/hidapi_library.h"
#include "tests/support/linux/HidTestbed.h"

namespace qlx::platform {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

class MockedDevices : public ::testing::Test {
 protected:
  std::vector<HidDevice> Walk() {
    std::vector<HidDevice> found;
    EXPECT_TRUE(library_->Walk([&](const HidDevice& device) { found.push_back(device); }));
    return found;
  }
  /// The usages that a walk finds, in ascending order.
  std::vector<int> Usages() {
    std::vector<int> usages;
    for (const HidDevice& device : Walk()) usages.push_back(device.usage);
    std::ranges::sort(usages);
    return usages;
  }

  testing::HidTestbed bed_;
  std::unique_ptr<HidLibrary> library_ = BindHidLibrary();
};

TEST_F(MockedDevices, ADeviceIsFoundWithAllThatItSays) {
  bed_.Plug("1209 0001 FF45:5400 CD0001 'Cash Drawer'\n");
  const auto found = Walk();
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].vendor, 0x1209);
  EXPECT_EQ(found[0].product, 0x0001);
  EXPECT_EQ(found[0].usage_page, 0xFF45);
  EXPECT_EQ(found[0].usage, 0x5400);
  EXPECT_EQ(found[0].serial, L"CD0001");
  EXPECT_EQ(found[0].name, L"Cash Drawer");
}

TEST_F(MockedDevices, WithoutDevicesTheWalkEndsWell) {
  EXPECT_THAT(Walk(), IsEmpty());
}

TEST_F(MockedDevices, EveryWalkLooksAnew) {
  bed_.Plug("1209 0001 FF45:5400 CD0001 'Cash Drawer'\n");
  EXPECT_THAT(Walk(), SizeIs(1));
  bed_.UnplugAll();
  EXPECT_THAT(Walk(), IsEmpty());
  bed_.Plug("1209 0001 FF45:5400 CD0001 'Cash Drawer'\n1209 0002 FF45:5400 CD0002 'Cash Drawer'\n");
  EXPECT_THAT(Walk(), SizeIs(2));
}

TEST_F(MockedDevices, OneProductWithTwoUsagesIsTwoRecords) {
  bed_.Plug("F055 0008 FF45:2600,FF45:1600 LDM001 'Display and Card Reader'\n");
  EXPECT_EQ(Usages(), (std::vector<int>{0x1600, 0x2600}));
}

TEST_F(MockedDevices, ANestedCollectionIsNoRecord) {
  bed_.Plug("F055 000B FF45:2400+ LD0001 'Display'\n");
  EXPECT_EQ(Usages(), std::vector<int>{0x2400});
}

TEST_F(MockedDevices, AMissingSerialNumberIsEmptyAndNotTheOneBefore) {
  bed_.Plug("1209 0001 FF45:5400 CD0001 Drawer\n1209 0002 FF45:5400 - -\n");
  auto found = Walk();
  ASSERT_THAT(found, SizeIs(2));
  std::ranges::sort(found, {}, &HidDevice::product);
  EXPECT_EQ(found[1].serial, L"");
  EXPECT_EQ(found[1].name, L"");
}

TEST_F(MockedDevices, TextsEndWhereABufferOf256BytesDoes) {
  const std::string text(255, 'x');
  bed_.Plug("1209 0001 FF45:5400 " + text + " " + text + "\n");
  const auto found = Walk();
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].serial, std::wstring(127, 'x'));
  EXPECT_EQ(found[0].name, std::wstring(127, 'x'));
}

TEST_F(MockedDevices, TextsAreCutByUtf16CodeUnitsAndSplitNoCharacter) {
  std::setlocale(LC_CTYPE, "C.UTF-8");  // hidapi converts by the locale, which the tool has from its toolkit
  std::string till;
  for (int i = 0; i < 100; ++i) till += "\xF0\x9F\x92\xB6";  // two code units each
  bed_.Plug("1209 0001 FF45:5400 CD0001 " + till + "\n");
  const auto found = Walk();
  std::setlocale(LC_CTYPE, "C");
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].name, std::wstring(63, L'\U0001F4B6'));
}

TEST_F(MockedDevices, ADeviceWithoutANodeIsFoundAllTheSame) {
  bed_.Plug("1209 0001 FF45:5400 CD0001 'Cash Drawer'\n");
  ASSERT_TRUE(std::filesystem::remove(bed_.RootPath("dev/hidraw0")));
  EXPECT_THAT(Walk(), SizeIs(1));
}

TEST_F(MockedDevices, ADeviceThatThisUserMayNotOpenIsFoundAllTheSame) {
  bed_.Plug("1209 0001 FF45:5400 CD0001 'Cash Drawer'\n");
  const std::string node = bed_.RootPath("dev/hidraw0");
  std::filesystem::permissions(bed_.RootPath(""), std::filesystem::perms(0755));
  std::filesystem::permissions(node, std::filesystem::perms::none);
  const uid_t user = geteuid();
  if (user == 0) {
    ASSERT_EQ(seteuid(65534), 0);
  }
  const bool refused = eaccess(node.c_str(), R_OK) != 0;
  const auto found = Walk();
  ASSERT_EQ(seteuid(user), 0);
  EXPECT_TRUE(refused);
  EXPECT_THAT(found, SizeIs(1));
}

TEST_F(MockedDevices, ADeviceThatVanishesWhileTheLibraryLooksIsLeftOut) {
  bed_.Plug("1209 0001 FF45:5400 CD0001 Drawer\n1209 0002 FF45:5400 CD0002 Drawer\n");
  // Its link in the class outlives it for a moment.
  std::filesystem::remove_all(bed_.RootPath("sys/devices/pci0000:00/0000:00:14.0/usb1/1-1"));
  const auto found = Walk();
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].serial, L"CD0002");
}

TEST_F(MockedDevices, DevicesThatVanishDuringTheWalkAreLeftOut) {
  bed_.Plug("1209 0001 FF45:5400 CD0001 Drawer\n1209 0002 FF45:5400 CD0002 Drawer\n");
  int found = 0;
  EXPECT_TRUE(library_->Walk([&](const HidDevice&) {
    ++found;
    bed_.UnplugAll();
  }));
  EXPECT_EQ(found, 1);
}

TEST(HidBinding, WithoutTheLibraryThereIsNothingToBind) {
  EXPECT_EQ(BindHidApi("libqlx-no-such-library.so.0"), nullptr);
}

TEST(HidBinding, ALibraryThatLacksOneFunctionIsNotBound) {
  for (const std::string lacking :
       {"hid_init", "hid_exit", "hid_enumerate", "hid_free_enumeration", "hid_error"}) {
    const std::string library = QLX_MODULES "/libhidapi_without_" + lacking + ".so";
    ASSERT_TRUE(std::filesystem::exists(library)) << library;
    EXPECT_EQ(BindHidApi(library.c_str()), nullptr) << lacking;
  }
}

/// A library in the form of hidapi that fails at what the environment names.
class AnUnwellLibrary : public ::testing::Test {
 protected:
  AnUnwellLibrary() { EXPECT_NE(library_, nullptr); }
  ~AnUnwellLibrary() override { unsetenv("UNWELL_HIDAPI"); }

  bool WalkEndsWell(const char* failing) {
    setenv("UNWELL_HIDAPI", failing, 1);
    return library_->Walk([](const HidDevice&) { ADD_FAILURE() << "there is no device"; });
  }

  std::unique_ptr<HidLibrary> library_ = BindHidApi(QLX_MODULES "/libunwell_hidapi.so");
};

TEST_F(AnUnwellLibrary, EndsTheWalkAbnormallyWhenItCannotStart) {
  EXPECT_FALSE(WalkEndsWell("init"));
}

TEST_F(AnUnwellLibrary, EndsTheWalkAbnormallyWhenItCannotList) {
  EXPECT_FALSE(WalkEndsWell("enumerate"));
}

TEST_F(AnUnwellLibrary, EndsTheWalkAbnormallyWhenItDoesNotSayWhyItListsNone) {
  EXPECT_FALSE(WalkEndsWell("message"));
}

TEST_F(AnUnwellLibrary, EndsTheWalkWellWhenThereIsNoDevice) {
  EXPECT_TRUE(WalkEndsWell("nothing"));
}

TEST(HidBinding, BindingAndLettingGoManyTimesWorks) {
  for (int i = 0; i < 20; ++i) EXPECT_NE(BindHidLibrary(), nullptr);
}

}  // namespace
}  // namespace qlx::platform
