// Files that no picture decoder may open or follow.
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/platform/PictureTest.h"

namespace qlx::platform {
namespace {

class FileInPlaceOfAPicture : public PictureTest {};

TEST_F(FileInPlaceOfAPicture, APipeIsRefusedUnopened) {
  ASSERT_EQ(mkfifo(Path().c_str(), 0666), 0);
  const int opens = inotify_init1(IN_NONBLOCK);
  ASSERT_GE(inotify_add_watch(opens, Path().c_str(), IN_OPEN), 0);
  EXPECT_FALSE(DecodeImageFile(Path().wstring()));
  inotify_event event{};
  EXPECT_EQ(read(opens, &event, sizeof event), -1);
  EXPECT_EQ(errno, EAGAIN);
  close(opens);
}

TEST_F(FileInPlaceOfAPicture, ADeviceIsRefused) {
  std::filesystem::create_symlink("/dev/zero", Path());
  EXPECT_FALSE(DecodeImageFile(Path().wstring()));
}

TEST_F(FileInPlaceOfAPicture, ALinkToItselfIsRefused) {
  std::filesystem::create_symlink("picture", Path());
  EXPECT_FALSE(DecodeImageFile(Path().wstring()));
}

TEST_F(FileInPlaceOfAPicture, AFileThatMayNotBeReadIsRefused) {
  Write(test::Bmp{}.Bytes());
  ASSERT_EQ(chmod(Path().c_str(), 0), 0);
  ASSERT_EQ(chmod(directory_.path().c_str(), 0755), 0);
  const uid_t user = geteuid();
  ASSERT_EQ(seteuid(user == 0 ? 65534 : user), 0);
  EXPECT_FALSE(DecodeImageFile(Path().wstring()));
  ASSERT_EQ(seteuid(user), 0);
}

TEST_F(PictureTest, IsFoundThroughASymbolicLink) {
  Write(test::Gif{}.Bytes());
  std::filesystem::create_symlink("picture", Path("link"));
  EXPECT_TRUE(DecodeImageFile(Path("link").wstring()));
}

}  // namespace
}  // namespace qlx::platform
