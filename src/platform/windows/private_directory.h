// Directories that no other user may change.
#pragma once

#include <string>

namespace qlx::platform {

/// Makes the directory `path` so that only this user, the machine's administrators and the system have
/// access. False with the system's error set.
bool CreatePrivateDirectory(const std::wstring& path);

/// True when `path` is a directory of this user (or, for an administrator, of the administrators), no link,
/// and no one else may change what is in it.
bool IsPrivateDirectory(const std::wstring& path);

}  // namespace qlx::platform
