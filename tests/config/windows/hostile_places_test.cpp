// What may stand in the file's place.
#include <windows.h>

#include "platform/windows/Handle.h"
#include "tests/config/HostileFile.h"

namespace qlx {
namespace {

TEST_F(HostileFile, AFileThatSomebodyHoldsForHimselfIsASaveErrorAndStays) {
  Write("<MZP><!-- mine --></MZP>");
  {
    const platform::Handle other(
        CreateFileW(Path().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(other);
    ExpectSaveError();
  }
  EXPECT_EQ(Bytes(), "<MZP><!-- mine --></MZP>");
}

TEST_F(HostileFile, AReadOnlyFileThatIsNotWellFormedStays) {
  Write("<MZP>");
  ASSERT_TRUE(SetFileAttributesW(Path().c_str(), FILE_ATTRIBUTE_READONLY));
  Started();
  EXPECT_EQ(boxes_.size(), 1U);
  EXPECT_EQ(Bytes(), "<MZP>");
  SetFileAttributesW(Path().c_str(), FILE_ATTRIBUTE_NORMAL);
}

}  // namespace
}  // namespace qlx
