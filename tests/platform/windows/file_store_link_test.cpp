#include "platform/windows/final_path.h"
#include "tests/platform/FileStoreTest.h"
#include "tests/support/windows/FileLink.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, ASymbolicLinkIsFollowedAndStays) {
  fs::create_directory(Path("elsewhere"));
  Put(Path("elsewhere") / "file", "old");
  const test::FileLink link(Path("elsewhere") / "file", Path("link"));
  EXPECT_FALSE(Replace(Path("link")));
  EXPECT_EQ(Bytes(Path("elsewhere") / "file"), "new");
  EXPECT_EQ(FinalPath(Path("link").wstring()), FinalPath((Path("elsewhere") / "file").wstring()));
}

TEST_F(FileStoreTest, TheFinalPathOfAFileIsOneThatPeopleWrite) {
  Put(Path(), "");
  const auto path = FinalPath(Path().wstring());
  ASSERT_TRUE(path);
  EXPECT_EQ(path->substr(1, 2), L":\\");
  EXPECT_FALSE(FinalPath(Path("missing").wstring()));
}

}  // namespace
}  // namespace qlx::platform
