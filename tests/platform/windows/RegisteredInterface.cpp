#include "tests/platform/windows/RegisteredInterface.h"

#include <stdexcept>

#include <windows.h>
#include <objbase.h>

#include "platform/windows/virtual_port_class.h"

namespace qlx::testing {
namespace {

using platform::kVirtualPortClass;

void Check(bool done, const char* step) {
  if (!done) throw std::runtime_error(std::string(step) + " " + std::to_string(GetLastError()));
}

std::wstring ClassText() {
  wchar_t text[40];
  Check(StringFromGUID2(kVirtualPortClass, text, 40) != 0, "class");
  return text;
}

/// What the plug-and-play manager writes down once the device of an interface has started.
void SetLinked(const std::wstring& reference, Presence presence) {
  const std::wstring key = L"SYSTEM\\CurrentControlSet\\Control\\DeviceClasses\\" + ClassText() +
                           L"\\##?#ROOT#" + reference + L"#0000#" + ClassText() + L"\\#" + reference +
                           L"\\Control";
  const DWORD linked = presence == Presence::kPresent ? 1 : 0;
  Check(RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"Linked", REG_DWORD, &linked, sizeof linked) ==
            ERROR_SUCCESS,
        "link");
}

}  // namespace

RegisteredInterface::RegisteredInterface(const std::wstring& reference, Presence presence)
    : set_(SetupDiCreateDeviceInfoList(nullptr, nullptr)) {
  Check(set_ != INVALID_HANDLE_VALUE, "set");
  device_.cbSize = sizeof device_;
  const std::wstring instance = L"Root\\" + reference + L"\\0000";
  Check(SetupDiCreateDeviceInfoW(set_, instance.c_str(), &kVirtualPortClass, nullptr, nullptr, 0, &device_) !=
            FALSE,
        "device");
  Check(SetupDiRegisterDeviceInfo(set_, &device_, 0, nullptr, nullptr, nullptr) != FALSE, "registration");
  Check(SetupDiCreateDeviceInterfaceW(set_, &device_, &kVirtualPortClass, reference.c_str(), 0, nullptr) !=
            FALSE,
        "interface");
  SetLinked(reference, presence);
}

RegisteredInterface::~RegisteredInterface() {
  SetupDiRemoveDevice(set_, &device_);
  SetupDiDestroyDeviceInfoList(set_);
}

}  // namespace qlx::testing
