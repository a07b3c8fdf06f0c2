// The HID functions of a library in the form of hidapi.
#pragma once

#include <memory>

#include "platform/hid.h"

namespace qlx::platform {

/// Binds the shared library `name`; null when it or one of its functions is missing.
std::unique_ptr<HidLibrary> BindHidApi(const char* name);

}  // namespace qlx::platform
