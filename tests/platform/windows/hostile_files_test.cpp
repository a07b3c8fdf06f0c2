// Files that no picture decoder may open or follow.
#include <windows.h>

#include "platform/windows/Handle.h"
#include "tests/platform/PictureTest.h"

namespace qlx::platform {
namespace {

class FileInPlaceOfAPicture : public PictureTest {};

TEST_F(FileInPlaceOfAPicture, APipeIsRefusedUnopened) {
  const wchar_t* name = L"\\\\.\\pipe\\qlx-picture";
  const Handle pipe(CreateNamedPipeW(name, PIPE_ACCESS_OUTBOUND | FILE_FLAG_FIRST_PIPE_INSTANCE, PIPE_NOWAIT,
                                     1, 4096, 4096, 0, nullptr));
  ASSERT_TRUE(pipe);
  EXPECT_FALSE(DecodeImageFile(name));
  EXPECT_FALSE(ConnectNamedPipe(pipe.get(), nullptr));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_PIPE_LISTENING});  // nobody has been here
}

TEST_F(FileInPlaceOfAPicture, ADeviceIsRefused) {
  for (const wchar_t* device : {L"NUL", L"CON", L"COM1", L"\\\\.\\NUL"})
    EXPECT_FALSE(DecodeImageFile(device));
}

TEST_F(FileInPlaceOfAPicture, AFileThatMayNotBeReadIsRefused) {
  Write(test::Bmp{}.Bytes());
  ASSERT_TRUE(DecodeImageFile(Path().wstring()));
  const Handle alone(CreateFileW(Path().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(alone);
  EXPECT_FALSE(DecodeImageFile(Path().wstring()));
}

TEST_F(FileInPlaceOfAPicture, APictureThatIsBeingWrittenByAnotherProgramIsRead) {
  Write(test::Bmp{}.Bytes());
  const Handle writer(
      CreateFileW(Path().c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(writer);
  EXPECT_TRUE(DecodeImageFile(Path().wstring()));
}

TEST_F(FileInPlaceOfAPicture, ALongPathIsFollowed) {
  std::filesystem::path directory = directory_.path();
  for (int i = 0; i < 3; ++i) directory /= std::string(60, 'd');
  std::filesystem::create_directories(directory);
  const auto path = directory / "picture";
  std::ofstream(path, std::ios::binary) << test::Bmp{}.Bytes();
  EXPECT_TRUE(DecodeImageFile(path.wstring()));
}

}  // namespace
}  // namespace qlx::platform
