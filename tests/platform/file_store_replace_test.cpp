#include "tests/platform/FileStoreTest.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, AFileIsReplacedAndAMissingOneMade) {
  EXPECT_FALSE(Replace(Path(), "first"));
  EXPECT_EQ(Bytes(Path()), "first");
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(Bytes(Path()), "new");
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, ADirectoryInTheFilesPlaceIsAFailure) {
  fs::create_directory(Path());
  EXPECT_TRUE(Replace(Path()));
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, AMissingDirectoryIsAFailureToOpen) {
  const auto failure = Replace(Path("missing") / "file");
  ASSERT_TRUE(failure);
  EXPECT_STREQ(failure->step, "open");
  EXPECT_TRUE(Names().empty());
}

TEST_F(FileStoreTest, AFileNameOfAnyScriptIsReadAndReplaced) {
  const std::wstring path = directory_.wstring() + L"/\u8a2d\u5b9a \U0001F5A8.xml";
  EXPECT_FALSE(store_.Replace(path, "new"));
  EXPECT_EQ(store_.Read(path, kLimit).bytes, "new");
}

TEST_F(FileStoreTest, NoBytesAtAllAreAnEmptyFile) {
  Put(Path(), "old");
  EXPECT_FALSE(Replace(Path(), ""));
  const ReadResult result = store_.Read(Path().wstring(), kLimit);
  EXPECT_EQ(result.status, ReadStatus::kRead);
  EXPECT_EQ(result.bytes, "");
}

TEST_F(FileStoreTest, TenMegabytesAreReplacedAndReadBack) {
  std::string bytes(10 << 20, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 31 >> 8);
  EXPECT_FALSE(Replace(Path(), bytes));
  EXPECT_TRUE(store_.Read(Path().wstring(), bytes.size()).bytes == bytes);
}

}  // namespace
}  // namespace qlx::platform
