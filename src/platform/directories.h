// Directories and what lies in them. All functions may be called from any thread.
#pragma once

#include <string>
#include <vector>

namespace qlx::platform {

/// The user's directory for temporary files, with the separator at its end.
std::wstring TemporaryDirectory();

/// Makes the directory `path` (no separator at its end) for this user alone. True too when it is there
/// already and is this user's own: in a directory that others may change, a name could lead anywhere.
bool MakePrivateDirectory(const std::wstring& path);

/// Names of the regular files directly in `directory`, in no particular order; links are none. Empty when it
/// cannot be read.
std::vector<std::wstring> RegularFilesIn(const std::wstring& directory);

/// True for a root of the file system, however it is spelled, and for the empty text.
bool IsRootDirectory(const std::wstring& directory);

/// Removes a file or link, never a directory. True when nothing of the name is left, as for one that was not
/// there.
bool RemoveFile(const std::wstring& path);

}  // namespace qlx::platform
