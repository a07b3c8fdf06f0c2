#include "ports/port_discovery.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <stdlib.h>

namespace qlx {
namespace {

using Names = std::vector<std::wstring>;

TEST(PortName, IsComAndTheNumberUpperCased) {
  EXPECT_EQ(PortName(L"\\\\?\\root#ports#0000#{guid}\\mzp_com7"), L"COM7");
  EXPECT_EQ(PortName(L"\\\\?\\quillon\\MZP_COM12"), L"COM12");
}

TEST(PortName, KeepsWhatFollowsTheNumber) {
  EXPECT_EQ(PortName(L"x\\MZP_COM3#a"), L"COM3#A");
}

TEST(PortName, IsTakenFromTheFirstOccurrence) {
  EXPECT_EQ(PortName(L"\\mzp_com1\\mzp_com2"), L"COM1\\MZP_COM2");
}

TEST(PortName, IsEmptyWithoutTheMarkOrWithoutACharacterBehindIt) {
  EXPECT_EQ(PortName(L"\\\\?\\quillon\\other"), L"");
  EXPECT_EQ(PortName(L"MZP_COM7"), L"");
  EXPECT_EQ(PortName(L"\\MZP_COM"), L"");
  EXPECT_EQ(PortName(L""), L"");
}

/// A directory of links to ttys, as the udev rule makes it.
class PortDirectoryTest : public testing::Test {
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

  static Names Discovered() { return DiscoverPorts(*platform::VirtualPortInterfaces()); }

  std::filesystem::path directory_;
};

TEST_F(PortDirectoryTest, PortsAreListedByNumber) {
  for (const char* name : {"MZP_COM10", "MZP_COM9", "MZP_COM1"}) AddPort(name);
  EXPECT_EQ(Discovered(), (Names{L"COM1", L"COM9", L"COM10"}));
}

TEST_F(PortDirectoryTest, AnInterfaceOfAnotherKindStaysInTheListWithAnEmptyName) {
  AddPort("MZP_COM5");
  AddPort("other");
  EXPECT_EQ(Discovered(), (Names{L"", L"COM5"}));
}

TEST_F(PortDirectoryTest, ALinkWhoseTtyIsGoneIsNoPort) {
  std::filesystem::create_symlink(directory_ / "unplugged", directory_ / "MZP_COM5");
  EXPECT_EQ(Discovered(), Names{});
}

TEST_F(PortDirectoryTest, WithoutADirectoryThereAreNoPorts) {
  std::filesystem::remove_all(directory_);
  EXPECT_EQ(Discovered(), Names{});
}

}  // namespace
}  // namespace qlx
