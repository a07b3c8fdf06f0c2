// What may stand in the file's place.
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "tests/config/HostileFile.h"

namespace qlx {
namespace {

TEST_F(HostileFile, APipeInItsPlaceIsASaveErrorAndNeverWaitedFor) {
  ASSERT_EQ(mkfifo(Path().c_str(), 0666), 0);
  ExpectSaveError();
  EXPECT_TRUE(std::filesystem::is_fifo(Path()));
}

TEST_F(HostileFile, ASocketInItsPlaceIsASaveError) {
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  Path().native().copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ExpectSaveError();
  EXPECT_TRUE(std::filesystem::is_socket(Path()));
  close(socket);
}

TEST_F(HostileFile, ADeviceInItsPlaceIsASaveError) {
  std::filesystem::create_symlink("/dev/zero", Path());
  ExpectSaveError();
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/zero"));
}

TEST_F(HostileFile, ALinkToItselfIsASaveErrorAndStays) {
  std::filesystem::create_symlink("QLXConfig.xml", Path());
  ExpectSaveError();
  EXPECT_TRUE(std::filesystem::is_symlink(Path()));
}

TEST_F(HostileFile, AFileThatMayNotBeReadIsASaveErrorAndStays) {
  Write("<MZP><!-- mine --></MZP>");
  ASSERT_EQ(chmod(Path().c_str(), 0), 0);
  ASSERT_EQ(chmod(directory_.c_str(), 0755), 0);
  const uid_t user = geteuid();
  ASSERT_EQ(seteuid(user == 0 ? 65534 : user), 0);
  ExpectSaveError();
  ASSERT_EQ(seteuid(user), 0);
  ASSERT_EQ(chmod(Path().c_str(), 0600), 0);
  EXPECT_EQ(Bytes(), "<MZP><!-- mine --></MZP>");
}

}  // namespace
}  // namespace qlx
