// The device interface class under which the suite's port driver registers its ports.
#pragma once

#include <windows.h>

namespace qlx::platform {

/// A neutral value of our own making: the maker's to fill in.
inline constexpr GUID kVirtualPortClass = {
    0x98a46ee6, 0xfcf3, 0x43f8, {0xb2, 0x7b, 0x71, 0x59, 0x16, 0xc2, 0x37, 0x82}};

}  // namespace qlx::platform
