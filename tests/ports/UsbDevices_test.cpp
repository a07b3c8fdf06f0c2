#include "ports/UsbDevices.h"

#include <gmock/gmock.h>

namespace qlx {
namespace {

using platform::HidDevice;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// What is plugged in, as the test says.
struct Plugged {
  std::vector<HidDevice> devices;
  bool ends = true;
};

class PluggedLibrary : public platform::HidLibrary {
 public:
  explicit PluggedLibrary(const Plugged& plugged) : plugged_(plugged) {}
  bool Walk(const std::function<void(const HidDevice&)>& found) override {
    for (const HidDevice& device : plugged_.devices) found(device);
    return plugged_.ends;
  }

 private:
  const Plugged& plugged_;
};

class UsbDevicesTest : public ::testing::Test {
 protected:
  void Plug(std::uint16_t vendor, std::uint16_t product, std::uint16_t usage, std::uint16_t page = 0xFF45) {
    plugged_.devices.push_back({vendor, product, page, usage, L"S1", L"A device"});
  }
  /// The kinds that may choose from any device, in order.
  std::vector<int> KindsWithDevices() {
    std::vector<int> kinds;
    for (int kind = 0; kind < kDeviceKinds; ++kind) {
      if (!devices_.ForKind(static_cast<DeviceKind>(kind)).empty()) kinds.push_back(kind);
    }
    return kinds;
  }

  Plugged plugged_;
  UsbDevices devices_{std::make_unique<PluggedLibrary>(plugged_), kSupportedDevices};
};

TEST(UsbDeviceIds, AreFourLowerCaseDigits) {
  EXPECT_EQ(FormatId(6699), L"0x1a2b");
  EXPECT_EQ(FormatId(0), L"0x0000");
  EXPECT_EQ(FormatId(0x0404), L"0x0404");
  EXPECT_EQ(FormatId(0xFFFF), L"0xffff");
}

struct Row {
  std::uint16_t vendor;
  std::uint16_t product;
  std::uint16_t usage;
  std::vector<int> kinds;
};

TEST_F(UsbDevicesTest, EveryRowOfTheTablesServesItsKinds) {
  const std::vector<int> drawers = {3, 4}, ibutton = {2}, display = {1}, msr = {0};
  const Row rows[] = {
      {0x1209, 1, 0x5400, drawers},  {0x1209, 2, 0x5400, drawers},  {0x1209, 3, 0x5400, drawers},
      {0xF055, 4, 0x5400, drawers},  {0xF055, 5, 0x5400, drawers},  {0xF055, 6, 0x5400, drawers},
      {0xF055, 7, 0x1440, ibutton},  {0xF055, 8, 0x2600, display},  {0xF055, 9, 0x2400, display},
      {0xF055, 10, 0x2400, display}, {0xF055, 11, 0x2400, display}, {0xF055, 11, 0x2500, display},
      {0xF055, 12, 0x2A00, display}, {0xF055, 13, 0x2A00, display}, {0xF055, 8, 0x1600, msr},
      {0xF055, 14, 0x1600, msr},     {0xF055, 15, 0x1600, msr},     {0xF055, 16, 0x1600, msr},
  };
  for (const Row& row : rows) {
    plugged_.devices.clear();
    Plug(row.vendor, row.product, row.usage);
    EXPECT_TRUE(devices_.Refresh());
    EXPECT_EQ(KindsWithDevices(), row.kinds) << row.product << ' ' << row.usage;
  }
}

TEST_F(UsbDevicesTest, ADeviceIsKeptWithAllThatItSays) {
  plugged_.devices = {{0xF055, 7, 0xFF45, 0x1440, L"IB7", L"Reader"}};
  devices_.Refresh();
  ASSERT_THAT(devices_.ForKind(kIButton), SizeIs(1));
  const UsbDevice& reader = devices_.ForKind(kIButton).front();
  EXPECT_EQ(reader.vendor, 0xF055);
  EXPECT_EQ(reader.product, 7);
  EXPECT_EQ(reader.serial, L"IB7");
  EXPECT_EQ(reader.name, L"Reader");
}

TEST_F(UsbDevicesTest, AnotherUsagePageIsAnotherDevice) {
  Plug(0x1209, 1, 0x5400, 0xFF44);
  Plug(0x1209, 1, 0x5400, 0x0001);
  EXPECT_TRUE(devices_.Refresh());
  EXPECT_THAT(KindsWithDevices(), IsEmpty());
}

TEST_F(UsbDevicesTest, TheUsageTellsADisplayFromACardReader) {
  Plug(0xF055, 8, 0x1600);
  devices_.Refresh();
  EXPECT_EQ(KindsWithDevices(), std::vector<int>{0});
  plugged_.devices.clear();
  Plug(0xF055, 8, 0x2600);
  devices_.Refresh();
  EXPECT_EQ(KindsWithDevices(), std::vector<int>{1});
  plugged_.devices.clear();
  Plug(0xF055, 8, 0x2400);
  devices_.Refresh();
  EXPECT_THAT(KindsWithDevices(), IsEmpty());
}

TEST_F(UsbDevicesTest, AProductOfTheOtherVendorIsNoneOfOurs) {
  Plug(0xF055, 1, 0x5400);
  Plug(0x1209, 7, 0x1440);
  devices_.Refresh();
  EXPECT_THAT(KindsWithDevices(), IsEmpty());
}

TEST_F(UsbDevicesTest, DevicesStayInTheSystemsOrder) {
  Plug(0xF055, 5, 0x5400);
  Plug(0x1209, 1, 0x5400);
  devices_.Refresh();
  ASSERT_THAT(devices_.ForKind(kCashDrawer1), SizeIs(2));
  EXPECT_EQ(devices_.ForKind(kCashDrawer1)[0].product, 5);
}

TEST_F(UsbDevicesTest, ARefreshForgetsWhatWasThere) {
  Plug(0x1209, 1, 0x5400);
  devices_.Refresh();
  plugged_.devices.clear();
  EXPECT_TRUE(devices_.Refresh());
  EXPECT_THAT(KindsWithDevices(), IsEmpty());
}

TEST_F(UsbDevicesTest, ThePciDrawerAndThePrinterNeverHaveDevices) {
  for (std::uint16_t product = 1; product <= 16; ++product) {
    for (const unsigned usage : {0x5400U, 0x1440U, 0x2600U, 0x2400U, 0x2500U, 0x2A00U, 0x1600U}) {
      Plug(0x1209, product, static_cast<std::uint16_t>(usage));
      Plug(0xF055, product, static_cast<std::uint16_t>(usage));
    }
  }
  devices_.Refresh();
  EXPECT_THAT(devices_.ForKind(kCashDrawerPci), IsEmpty());
  EXPECT_THAT(devices_.ForKind(kPrinter), IsEmpty());
  EXPECT_THAT(devices_.ForKind(kLineDisplay), SizeIs(7));
}

TEST_F(UsbDevicesTest, AWalkThatBreaksOffKeepsWhatItFound) {
  Plug(0x1209, 1, 0x5400);
  plugged_.ends = false;
  EXPECT_FALSE(devices_.Refresh());
  EXPECT_THAT(devices_.ForKind(kCashDrawer1), SizeIs(1));
}

TEST(UsbDevicesUnbound, WithoutALibraryARefreshFailsAndFindsNothing) {
  UsbDevices devices(nullptr, kSupportedDevices);
  EXPECT_FALSE(devices.Refresh());
  for (int kind = 0; kind < kDeviceKinds; ++kind) {
    EXPECT_THAT(devices.ForKind(static_cast<DeviceKind>(kind)), IsEmpty());
  }
}

}  // namespace
}  // namespace qlx
