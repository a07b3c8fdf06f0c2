// hidapi as it is on a bad day: UNWELL_HIDAPI names the function that fails, "nothing" that there is no
// device.
#include <cstdlib>
#include <string_view>

#include <hidapi/hidapi.h>

namespace {

bool Fails(std::string_view function) {
  const char* const failing = std::getenv("UNWELL_HIDAPI");
  return failing != nullptr && failing == function;
}

}  // namespace

int hid_init() {
  return Fails("init") ? -1 : 0;
}

int hid_exit() {
  return 0;
}

hid_device_info* hid_enumerate(unsigned short, unsigned short) {
  return nullptr;
}

void hid_free_enumeration(hid_device_info*) {}

const wchar_t* hid_error(hid_device*) {
  if (Fails("message")) return nullptr;
  return Fails("enumerate") ? L"Couldn't create udev context" : L"No HID devices found in the system.";
}
