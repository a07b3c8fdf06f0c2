#include <thread>

#include <windows.h>

#include "platform/windows/Handle.h"
#include "platform/windows/TemporaryFile.h"
#include "tests/platform/FileStoreTest.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, ATemporaryNameThatStaysTakenIsAFailureAndNoHang) {
  Put(Path(), "old");
  {
    const TemporaryFile other(Path().wstring());
    ASSERT_FALSE(other.failure());
    EXPECT_TRUE(Replace(Path()));
    EXPECT_EQ(Bytes(Path()), "old");
  }
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, NobodySeesATemporaryFileBeforeItIsWhole) {
  TemporaryFile temporary(Path().wstring());
  ASSERT_FALSE(temporary.Append("half"));
  EXPECT_EQ(ReadStatusOf(Path("file.new")), ReadStatus::kUnreadable);
  ASSERT_FALSE(temporary.PutInPlace());
}

TEST_F(FileStoreTest, ATemporaryFileThatIsNotPutInPlaceIsGone) {
  {
    TemporaryFile temporary(Path().wstring());
    ASSERT_FALSE(temporary.Append("half"));
    EXPECT_EQ(Names(), std::set<std::string>{"file.new"});
  }
  EXPECT_TRUE(Names().empty());
}

TEST_F(FileStoreTest, AReadOnlyLeftoverIsRemoved) {
  Put(Path("file.new"), "half");
  ASSERT_TRUE(SetFileAttributesW(Path("file.new").c_str(), FILE_ATTRIBUTE_READONLY));
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, ThreadsThatReplaceTheSameFileLeaveOneOfTheirsWhole) {
  const auto replace_often = [&](char letter) {
    for (int i = 0; i < 20; ++i) EXPECT_FALSE(Replace(Path(), std::string(100'000, letter)));
  };
  {
    const std::jthread other(replace_often, 'a');
    replace_often('b');
  }
  const std::string now = Bytes(Path());
  EXPECT_EQ(now, std::string(100'000, now.at(0)));
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

}  // namespace
}  // namespace qlx::platform
