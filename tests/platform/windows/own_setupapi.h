// A program that links this has its own SetupAPI in front of the system's: one list of present interfaces, as
// a test says it is.
#pragma once

#include <string>
#include <vector>

#include <windows.h>

namespace qlx::testing {

/// How an interface answers when it is asked for its path.
enum class Detail { kGiven, kSizeGivenAtOnce, kSizeRefused, kTooShort, kPathRefused };

struct Listed {
  std::wstring path;
  Detail detail = Detail::kGiven;
};

/// What the list holds, how its walk ends and how often it was let go.
struct InterfaceList {
  bool opens = true;
  std::vector<Listed> interfaces{};
  GUID of_class{};  ///< that the program asked for last
  DWORD end = ERROR_NO_MORE_ITEMS;
  int destroyed = 0;
};

extern InterfaceList interface_list;

}  // namespace qlx::testing
