// The printer's bitmap files.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "config/FatalEnd.h"
#include "pages/LogoSystem.h"
#include "pages/logo_entries.h"
#include "pages/logo_failures.h"

namespace qlx {

/// The bitmap file of `slot` in `directory`, which ends with a separator.
std::wstring LogoFile(const std::wstring& directory, int slot);

/// Logs `failure`, then the file that it is about, if any, and hands the message to `end`.
void EndFor(const LogoFailure& failure, const std::wstring& file, const LogoSystem& system,
            const FatalEnd& end);

/// Puts `image` in the place of the bitmap file `path`, so that a crash leaves the old one or the new one.
/// False when it could not be written; the old one stands.
bool SaveBitmap(const platform::RgbImage& image, const std::wstring& path, const LogoSystem& system);

/// Makes the printer's bitmap file of `record` and makes it the record's picture. Nothing when it is that
/// already. Failures go to `end`. True unless one did.
bool ConvertLogo(LogoRecord& record, const std::wstring& file, const LogoSystem& system, const FatalEnd& end);

/// Deletes every regular file "*.bmp" directly in `directory` that is the file of none of `records`: the
/// services take each bitmap there for a logo. Never in a root of the file system or the empty text. A file
/// that cannot be deleted stays.
void RemoveStaleLogos(const std::wstring& directory, const std::vector<LogoRecord>& records,
                      const LogoSystem& system);

}  // namespace qlx
