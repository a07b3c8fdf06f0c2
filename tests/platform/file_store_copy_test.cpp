#include "tests/platform/FileStoreTest.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, ACopyHasTheBytesOfTheOriginal) {
  Put(Path(), "bytes");
  Put(Path("copy"), "an older copy");
  EXPECT_FALSE(Copy(Path(), Path("copy")));
  EXPECT_EQ(Bytes(Path("copy")), "bytes");
  EXPECT_EQ(Names(), (std::set<std::string>{"copy", "file"}));
}

TEST_F(FileStoreTest, AFileOfManyBlocksIsCopiedWhole) {
  std::string bytes(300'001, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 31 >> 8);
  Put(Path(), bytes);
  EXPECT_FALSE(Copy(Path(), Path("copy")));
  EXPECT_TRUE(Bytes(Path("copy")) == bytes);
}

TEST_F(FileStoreTest, OnlyAFileIsCopied) {
  EXPECT_TRUE(Copy(Path(), Path("copy")));
  fs::create_directory(Path());
  EXPECT_TRUE(Copy(Path(), Path("copy")));
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

}  // namespace
}  // namespace qlx::platform
