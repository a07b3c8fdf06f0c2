// The walk over a list of interfaces as a test says it is: this program has its own SetupAPI in front of the
// system's.
#include "platform/windows/present_interfaces.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <gmock/gmock.h>
#include <setupapi.h>

#include "platform/windows/virtual_port_class.h"

namespace qlx::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

enum class Detail { kGiven, kSizeGivenAtOnce, kSizeRefused, kTooShort, kPathRefused };

struct Listed {
  std::wstring path;
  Detail detail = Detail::kGiven;
};

/// What the list holds, how its walk ends and how often it was let go.
struct List {
  bool opens = true;
  std::vector<Listed> interfaces{};
  DWORD end = ERROR_NO_MORE_ITEMS;
  int destroyed = 0;
};
List list;

const HDEVINFO kSet = &list;

HDEVINFO GetClassDevs(const GUID* of_class, PCWSTR enumerator, HWND, DWORD flags) {
  EXPECT_TRUE(IsEqualGUID(*of_class, kVirtualPortClass));
  EXPECT_EQ(enumerator, nullptr);
  EXPECT_EQ(flags, static_cast<DWORD>(DIGCF_PRESENT | DIGCF_DEVICEINTERFACE));
  return list.opens ? kSet : INVALID_HANDLE_VALUE;
}

BOOL EnumInterfaces(HDEVINFO set, PSP_DEVINFO_DATA, const GUID*, DWORD index,
                    PSP_DEVICE_INTERFACE_DATA entry) {
  EXPECT_EQ(set, kSet);
  EXPECT_EQ(entry->cbSize, sizeof *entry);
  SetLastError(list.end);
  if (index >= list.interfaces.size()) return FALSE;
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
  const Listed& asked = list.interfaces[entry->Reserved];
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
  ++list.destroyed;
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

namespace {

class ListedInterfaces : public ::testing::Test {
 protected:
  ListedInterfaces() { list = {}; }

  bool Walk() {
    paths_.clear();
    return WalkPresentInterfaces(kVirtualPortClass,
                                 [this](const std::wstring& path) { paths_.push_back(path); });
  }

  std::vector<std::wstring> paths_;
};

TEST_F(ListedInterfaces, AreToldInTheirOrderAndSpelling) {
  list.interfaces = {{L"\\\\?\\b\\MZP_COM10"}, {L"\\\\?\\A\\mzp_com9"}, {L""}};
  EXPECT_TRUE(Walk());
  EXPECT_THAT(paths_, ElementsAre(L"\\\\?\\b\\MZP_COM10", L"\\\\?\\A\\mzp_com9", L""));
  EXPECT_EQ(list.destroyed, 1);
}

TEST_F(ListedInterfaces, AreLeftOutWhosePathCannotBeLearned) {
  list.interfaces = {{L"one"},
                     {L"two", Detail::kSizeGivenAtOnce},
                     {L"three", Detail::kSizeRefused},
                     {L"four", Detail::kTooShort},
                     {L"five", Detail::kPathRefused},
                     {L"six"}};
  EXPECT_TRUE(Walk());
  EXPECT_THAT(paths_, ElementsAre(L"one", L"six"));
}

TEST_F(ListedInterfaces, MayEndBadlyWithWhatWasFoundUntilThen) {
  list.interfaces = {{L"one"}};
  list.end = ERROR_INVALID_HANDLE;
  EXPECT_FALSE(Walk());
  EXPECT_THAT(paths_, ElementsAre(L"one"));
  EXPECT_EQ(list.destroyed, 1);
}

TEST_F(ListedInterfaces, AreNoneWhenTheClassCannotBeOpened) {
  list.opens = false;
  list.interfaces = {{L"one"}};
  EXPECT_FALSE(Walk());
  EXPECT_THAT(paths_, IsEmpty());
  EXPECT_EQ(list.destroyed, 0);
}

}  // namespace
}  // namespace qlx::platform
