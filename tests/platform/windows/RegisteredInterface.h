// An interface that a test registers for the class of the virtual ports, as a driver would.
#pragma once

#include <string>

#include <windows.h>
#include <setupapi.h>

namespace qlx::testing {

enum class Presence { kPresent, kAbsent };

/// Gone with the object. The class is one for the whole system.
class RegisteredInterface {
 public:
  /// Its path ends in "\" and `reference`. Throws std::runtime_error.
  explicit RegisteredInterface(const std::wstring& reference, Presence presence = Presence::kPresent);
  RegisteredInterface(const RegisteredInterface&) = delete;
  RegisteredInterface& operator=(const RegisteredInterface&) = delete;
  ~RegisteredInterface();

 private:
  HDEVINFO set_;
  SP_DEVINFO_DATA device_{};
};

}  // namespace qlx::testing
