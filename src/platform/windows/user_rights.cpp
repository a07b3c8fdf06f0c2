#include "platform/user_rights.h"

#include <windows.h>
#include <versionhelpers.h>

#include "platform/windows/Handle.h"

namespace qlx::platform {
namespace {

/// Major version 6 brought user account control.
bool KnowsElevation() {
  return IsWindowsVistaOrGreater();
}

bool IsElevated() {
  HANDLE opened = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened)) return false;
  const Handle token(opened);
  TOKEN_ELEVATION elevation{};
  DWORD size = sizeof elevation;
  return GetTokenInformation(token.get(), TokenElevation, &elevation, size, &size) &&
         elevation.TokenIsElevated != 0;
}

}  // namespace

bool MayChangeSettings() {
  return !KnowsElevation() || IsElevated();
}

}  // namespace qlx::platform
