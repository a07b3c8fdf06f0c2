#include <windows.h>

#include "platform/windows/Handle.h"
#include "tests/platform/FileStoreTest.h"

namespace qlx::platform {
namespace {

/// Opens a file so that others may read and write it, but not take it away: as in a directory that is not
/// ours.
Handle HoldInPlace(const fs::path& path) {
  return Handle(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, 0, nullptr));
}

TEST_F(FileStoreTest, AFileThatCannotBeRenamedOverIsWrittenInPlace) {
  Put(Path(), "older and longer");
  const Handle other = HoldInPlace(Path());
  ASSERT_TRUE(other);
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(Bytes(Path()), "new");
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
  char seen[8] = {};
  DWORD got = 0;
  EXPECT_TRUE(ReadFile(other.get(), seen, sizeof seen, &got, nullptr));
  EXPECT_STREQ(seen, "new");  // the same file
}

}  // namespace
}  // namespace qlx::platform
