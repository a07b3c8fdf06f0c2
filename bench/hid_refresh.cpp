// Looking for the USB devices of the selection dialog, 20 mocked ones plugged in, against a bare walk through
// what hidapi lists.
// usage: hid_refresh (in a mocked /sys: umockdev-wrapper build/linux-release/bin/hid_refresh)
#include <cstdio>
#include <stdexcept>
#include <string>

#include <hidapi/hidapi.h>

#include "bench/rounds.h"
#include "ports/UsbDevices.h"
#include "tests/support/linux/HidTestbed.h"

namespace {

constexpr int kDevices = 20;
constexpr int kWalks = 10;

std::string Devices() {
  std::string lines;
  for (int i = 0; i < kDevices; ++i) {
    lines += "1209 0001 FF45:5400 CD" + std::to_string(1000 + i) + " 'Cash Drawer'\n";
  }
  return lines;
}

double BareWalk() {
  return 1e3 * qlx::bench::Seconds([] {
           for (int walk = 0; walk < kWalks; ++walk) {
             hid_device_info* all = hid_enumerate(0, 0);
             int found = 0;
             for (const hid_device_info* device = all; device != nullptr; device = device->next) ++found;
             hid_free_enumeration(all);
             if (found != kDevices) throw std::runtime_error("the walk missed devices");
           }
         }) /
         kWalks;
}

double Refresh(qlx::UsbDevices& devices) {
  return 1e3 * qlx::bench::Seconds([&] {
           for (int walk = 0; walk < kWalks; ++walk) {
             if (!devices.Refresh() || devices.ForKind(qlx::kCashDrawer1).size() != kDevices) {
               throw std::runtime_error("the refresh missed devices");
             }
           }
         }) /
         kWalks;
}

}  // namespace

int main() {
  qlx::testing::HidTestbed bed;
  bed.Plug(Devices());
  qlx::UsbDevices devices(qlx::platform::BindHidLibrary(), qlx::kSupportedDevices);
  qlx::bench::Rounds rounds("20 HID devices", "ms");
  rounds.Add("hid_enumerate", BareWalk);
  rounds.Add("refresh", [&] { return Refresh(devices); });
  rounds.Run(15);
  return rounds.AtMost(1.15, "refresh", "hid_enumerate") ? 0 : 1;
}
