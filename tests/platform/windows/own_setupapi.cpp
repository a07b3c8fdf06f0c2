#include "tests/platform/windows/own_setupapi.h"

#include <algorithm>
#include <cstring>

#include <gtest/gtest.h>
#include <setupapi.h>

namespace qlx::testing {

InterfaceList interface_list;

namespace {

const HDEVINFO kSet = &interface_list;

HDEVINFO GetClassDevs(const GUID* of_class, PCWSTR enumerator, HWND, DWORD flags) {
  interface_list.of_class = *of_class;
  EXPECT_EQ(enumerator, nullptr);
  EXPECT_EQ(flags, static_cast<DWORD>(DIGCF_PRESENT | DIGCF_DEVICEINTERFACE));
  return interface_list.opens ? kSet : INVALID_HANDLE_VALUE;
}

BOOL EnumInterfaces(HDEVINFO set, PSP_DEVINFO_DATA, const GUID*, DWORD index,
                    PSP_DEVICE_INTERFACE_DATA entry) {
  EXPECT_EQ(set, kSet);
  EXPECT_EQ(entry->cbSize, sizeof *entry);
  SetLastError(interface_list.end);
  if (index >= interface_list.interfaces.size()) return FALSE;
  entry->Reserved = index;
  return TRUE;
}

BOOL SizeOf(const Listed& interface_, DWORD needed, DWORD* size) {
  *size = interface_.detail == Detail::kTooShort ? 4 : needed;
  SetLastError(interface_.detail == Detail::kSizeRefused ? ERROR_INVALID_USER_BUFFER
                                                         : ERROR_INSUFFICIENT_BUFFER);
  return interface_.detail == Detail::kSizeGivenAtOnce;
}

BOOL GetDetail(HDEVINFO, PSP_DEVICE_INTERFACE_DATA entry, PSP_DEVICE_INTERFACE_DETAIL_DATA_W detail,
               DWORD size, DWORD* needed_size, PSP_DEVINFO_DATA) {
  const Listed& asked = interface_list.interfaces[entry->Reserved];
  const std::size_t text = (asked.path.size() + 1) * sizeof(wchar_t);
  const auto needed = static_cast<DWORD>(offsetof(SP_DEVICE_INTERFACE_DETAIL_DATA_W, DevicePath) + text);
  if (detail == nullptr) return SizeOf(asked, std::max<DWORD>(needed, sizeof *detail), needed_size);
  EXPECT_EQ(detail->cbSize, 8U);
  EXPECT_GE(size, needed);
  std::memcpy(detail->DevicePath, asked.path.c_str(), text);
  return asked.detail != Detail::kPathRefused;
}

BOOL DestroyList(HDEVINFO set) {
  EXPECT_EQ(set, kSet);
  ++interface_list.destroyed;
  return TRUE;
}

}  // namespace

// Through these the calls go that the linker would resolve by the system's library.
extern decltype(&GetClassDevs) own_get_class_devs asm("__imp_SetupDiGetClassDevsW");
decltype(&GetClassDevs) own_get_class_devs = GetClassDevs;
extern decltype(&EnumInterfaces) own_enum_interfaces asm("__imp_SetupDiEnumDeviceInterfaces");
decltype(&EnumInterfaces) own_enum_interfaces = EnumInterfaces;
extern decltype(&GetDetail) own_get_detail asm("__imp_SetupDiGetDeviceInterfaceDetailW");
decltype(&GetDetail) own_get_detail = GetDetail;
extern decltype(&DestroyList) own_destroy_list asm("__imp_SetupDiDestroyDeviceInfoList");
decltype(&DestroyList) own_destroy_list = DestroyList;

}  // namespace qlx::testing
