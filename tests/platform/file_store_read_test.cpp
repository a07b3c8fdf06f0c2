#include "tests/platform/FileStoreTest.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, ReadsAFileUpToTheLimit) {
  Put(Path(), std::string(kLimit, 'x'));
  const ReadResult result = store_.Read(Path().wstring(), kLimit);
  EXPECT_EQ(result.status, ReadStatus::kRead);
  EXPECT_EQ(result.bytes, std::string(kLimit, 'x'));
}

TEST_F(FileStoreTest, AFileAboveTheLimitIsTooLarge) {
  Put(Path(), std::string(kLimit + 1, 'x'));
  EXPECT_EQ(ReadStatusOf(Path()), ReadStatus::kTooLarge);
}

TEST_F(FileStoreTest, NothingUnderTheNameIsMissing) {
  EXPECT_EQ(ReadStatusOf(Path()), ReadStatus::kMissing);
  Put(Path(), "");
  EXPECT_EQ(ReadStatusOf(Path() / "below"), ReadStatus::kMissing);
}

TEST_F(FileStoreTest, ADirectoryIsRefused) {
  EXPECT_EQ(ReadStatusOf(directory_), ReadStatus::kNotRegular);
}

}  // namespace
}  // namespace qlx::platform
