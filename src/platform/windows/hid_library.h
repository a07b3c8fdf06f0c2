// The HID functions of a library in the form of hid.dll.
#pragma once

#include <memory>

#include "platform/hid.h"

namespace qlx::platform {

/// Binds the library `name`; null when it or one of its functions is missing.
std::unique_ptr<HidLibrary> BindHidDll(const wchar_t* name);

}  // namespace qlx::platform
