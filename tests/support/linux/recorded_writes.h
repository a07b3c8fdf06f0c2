// What the program hands to the system call write, chunk by chunk: the program that links this has its own
// write in front of the C library's.
#pragma once

#include <string>
#include <vector>

namespace qlx::testing {

/// Records every write of the program for the life of the object; one at a time.
class RecordedWrites {
 public:
  RecordedWrites();
  RecordedWrites(const RecordedWrites&) = delete;
  RecordedWrites& operator=(const RecordedWrites&) = delete;
  ~RecordedWrites();

  /// What each call was given so far.
  std::vector<std::string> Taken() const;
};

}  // namespace qlx::testing
