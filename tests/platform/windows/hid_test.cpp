// The HID back end on the system's own hid.dll, with the devices of hid_devices.txt plugged in.
#include "platform/hid.h"

#include <chrono>
#include <optional>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

namespace qlx::platform {
namespace {

class PluggedDevices : public ::testing::Test {
 protected:
  /// The system's drivers find the devices one by one, some time after its start.
  void SetUp() override {
    ASSERT_NE(library_, nullptr);
    constexpr int kTries = 2000;
    for (int i = 0; i < kTries && !AllAreThere(); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    ASSERT_TRUE(AllAreThere());
  }

  bool AllAreThere() { return Find(0x1209, 0x0001) && Find(0x1209, 0x0002) && Find(0xF055, 0x0008); }

  std::vector<HidDevice> Walk() {
    std::vector<HidDevice> found;
    EXPECT_TRUE(library_->Walk([&](const HidDevice& device) { found.push_back(device); }));
    return found;
  }
  std::optional<HidDevice> Find(std::uint16_t vendor, std::uint16_t product) {
    for (const HidDevice& device : Walk()) {
      if (device.vendor == vendor && device.product == product) return device;
    }
    return std::nullopt;
  }

  std::unique_ptr<HidLibrary> library_ = BindHidLibrary();
};

TEST_F(PluggedDevices, AreFoundWithAllThatTheySay) {
  const auto drawer = Find(0x1209, 0x0001);
  ASSERT_TRUE(drawer);
  EXPECT_EQ(drawer->usage_page, 0xFF45);
  EXPECT_EQ(drawer->usage, 0x5400);
  EXPECT_EQ(drawer->serial, L"CD0001");
  EXPECT_EQ(drawer->name, L"Cash Drawer");
  const auto display = Find(0xF055, 0x0008);
  ASSERT_TRUE(display);
  EXPECT_EQ(display->usage_page, 0xFF45);
  EXPECT_EQ(display->usage, 0x2600);
  EXPECT_EQ(display->serial, L"LDM001");
  EXPECT_EQ(display->name, L"Display");
}

TEST_F(PluggedDevices, MayBeNamelessAndHaveNotTheNameOfTheOneBefore) {
  const auto nameless = Find(0x1209, 0x0002);
  ASSERT_TRUE(nameless);
  EXPECT_EQ(nameless->usage, 0x5400);
  EXPECT_EQ(nameless->name, L"");
}

TEST_F(PluggedDevices, AreTheSameInEveryWalk) {
  const std::size_t count = Walk().size();
  EXPECT_GE(count, 3U);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(Walk().size(), count);
}

}  // namespace
}  // namespace qlx::platform
