// The files of logos where links and rights are those of Linux.
#include "pages/LogoStore.h"
#include "pages/WorkingCopies.h"
#include "tests/pages/LogoTestbed.h"

namespace qlx {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LogoFiles : public LogoTestbed {};

TEST_F(LogoFiles, ALinkInTheDataDirectoryStaysAndSoDoesWhatItLeadsTo) {
  Put("kept.bmp");
  std::filesystem::create_symlink(root_ / "kept.bmp", root_ / "data/link.bmp");
  LogoStore store{System()};
  store.Add(0, Picture(L"a.jpg", {64, 64}), 0, ThrowEnded);
  store.Write(*document_, {}, ThrowEnded);
  EXPECT_THAT(Names("data"), ElementsAre("1.bmp", "link.bmp"));
  EXPECT_EQ(Content("kept.bmp"), "old");
}

TEST_F(LogoFiles, NoWorkingCopyIsMadeInAFolderThatOthersMayChange) {
  std::filesystem::create_directory(root_ / "tmp/logos");
  std::filesystem::permissions(root_ / "tmp/logos", std::filesystem::perms::all);
  LogoSystem system = System();
  WorkingCopies copies{system};
  EXPECT_THROW(copies.Make(Picture(L"a.jpg", {9, 9}), Station::kCustomerReceipt, ThrowEnded), Ended);
  ASSERT_FALSE(log_.empty());
  EXPECT_EQ(log_.front(), "PRINTERDialog::AddLogo - Error saving image");
  EXPECT_THAT(Names("tmp/logos"), IsEmpty());
}

}  // namespace
}  // namespace qlx
