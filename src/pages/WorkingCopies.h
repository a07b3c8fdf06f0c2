// Cut copies of the pictures that the user picked, until the program ends.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "config/FatalEnd.h"
#include "pages/LogoSystem.h"
#include "pages/logo_station.h"

namespace qlx {

/// The copies made in this run, bitmap files in the folder "logos" of the user's temporary directory. Used
/// from one thread at a time.
class WorkingCopies {
 public:
  explicit WorkingCopies(const LogoSystem& system) : system_(system) {}

  /// Makes the copy of the picture `source` that holds its top left part, as much as `station` prints. The
  /// path of the copy, which bears the name of the picture. When the picture cannot be read or the copy not
  /// be written, that goes to `end`.
  std::wstring Make(const std::wstring& source, Station station, const FatalEnd& end);

  /// Deletes the copy at `path`, compared without regard to case; nothing when there is none.
  void Delete(const std::wstring& path);

  /// Deletes every copy, the newest first. One that cannot be deleted goes to `end`.
  void DeleteAll(const FatalEnd& end);

 private:
  std::vector<std::wstring>::iterator Find(const std::wstring& path);
  std::wstring FreePath(const std::wstring& source);

  const LogoSystem& system_;
  std::vector<std::wstring> paths_;
};

}  // namespace qlx
