#include "platform/windows/present_interfaces.h"

#include <cstddef>
#include <new>
#include <optional>
#include <vector>

#include <windows.h>
#include <setupapi.h>

namespace qlx::platform {
namespace {

/// Owns one device information set.
class InterfaceSet {
 public:
  explicit InterfaceSet(const GUID& interface_class)
      : set_(SetupDiGetClassDevsW(&interface_class, nullptr, nullptr,
                                  DIGCF_PRESENT | DIGCF_DEVICEINTERFACE)) {}
  InterfaceSet(const InterfaceSet&) = delete;
  InterfaceSet& operator=(const InterfaceSet&) = delete;
  ~InterfaceSet() {
    if (open()) SetupDiDestroyDeviceInfoList(set_);
  }

  bool open() const { return set_ != INVALID_HANDLE_VALUE; }
  HDEVINFO get() const { return set_; }

 private:
  HDEVINFO set_;
};

std::optional<std::wstring> PathOf(const InterfaceSet& set, SP_DEVICE_INTERFACE_DATA& entry) {
  DWORD size = 0;
  if (SetupDiGetDeviceInterfaceDetailW(set.get(), &entry, nullptr, 0, &size, nullptr) != FALSE ||
      GetLastError() != ERROR_INSUFFICIENT_BUFFER || size < sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W)) {
    return std::nullopt;
  }
  // Zeroed, and one unit more than the system fills, so that the path always ends.
  std::vector<std::byte> block(size + sizeof(wchar_t));
  auto* const detail = new (block.data()) SP_DEVICE_INTERFACE_DETAIL_DATA_W{};
  detail->cbSize = sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W);
  if (SetupDiGetDeviceInterfaceDetailW(set.get(), &entry, detail, size, nullptr, nullptr) == FALSE)
    return std::nullopt;
  return detail->DevicePath;
}

}  // namespace

bool WalkPresentInterfaces(const GUID& interface_class,
                           const std::function<void(const std::wstring& path)>& found) {
  const InterfaceSet set(interface_class);
  if (!set.open()) return false;
  SP_DEVICE_INTERFACE_DATA entry{};
  entry.cbSize = sizeof entry;
  for (DWORD index = 0;
       SetupDiEnumDeviceInterfaces(set.get(), nullptr, &interface_class, index, &entry) != FALSE; ++index) {
    if (const auto path = PathOf(set, entry)) found(*path);
  }
  return GetLastError() == ERROR_NO_MORE_ITEMS;
}

}  // namespace qlx::platform
