#include "platform/device_interfaces.h"

#include <filesystem>

#include <gtest/gtest.h>
#include <stdlib.h>

namespace qlx::platform {
namespace {

using Paths = std::vector<std::wstring>;

/// A directory of links to ttys, as the udev rule makes it.
class PortDirectoryTest : public ::testing::Test {
 protected:
  PortDirectoryTest() {
    std::string name = (std::filesystem::temp_directory_path() / "qlx-ports-XXXXXX").native();
    directory_ = mkdtemp(name.data());
    setenv("QUILLON_PORT_DIR", directory_.c_str(), 1);
  }
  ~PortDirectoryTest() override {
    unsetenv("QUILLON_PORT_DIR");
    std::filesystem::remove_all(directory_);
  }

  void AddPort(const char* name) { std::filesystem::create_symlink("/dev/null", directory_ / name); }

  static Paths Present() { return VirtualPortInterfaces()->PresentPaths(); }

  std::filesystem::path directory_;
};

TEST_F(PortDirectoryTest, PortsAreListedByNumber) {
  for (const char* name : {"MZP_COM10", "MZP_COM9", "MZP_COM1"}) AddPort(name);
  EXPECT_EQ(Present(),
            (Paths{L"\\\\?\\quillon\\MZP_COM1", L"\\\\?\\quillon\\MZP_COM9", L"\\\\?\\quillon\\MZP_COM10"}));
}

TEST_F(PortDirectoryTest, AnInterfaceOfAnotherKindIsListedToo) {
  AddPort("MZP_COM5");
  AddPort("other");
  EXPECT_EQ(Present(), (Paths{L"\\\\?\\quillon\\other", L"\\\\?\\quillon\\MZP_COM5"}));
}

TEST_F(PortDirectoryTest, ALinkWhoseTtyIsGoneIsNoPort) {
  std::filesystem::create_symlink(directory_ / "unplugged", directory_ / "MZP_COM5");
  EXPECT_EQ(Present(), Paths{});
}

TEST_F(PortDirectoryTest, WithoutADirectoryThereAreNoPorts) {
  std::filesystem::remove_all(directory_);
  EXPECT_EQ(Present(), Paths{});
}

}  // namespace
}  // namespace qlx::platform
