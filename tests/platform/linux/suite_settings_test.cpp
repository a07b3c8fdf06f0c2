#include "platform/suite_settings.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <stdlib.h>

namespace qlx::platform {
namespace {

class SettingsDirectoryTest : public testing::Test {
 protected:
  ~SettingsDirectoryTest() override { unsetenv("QUILLON_SETTINGS"); }
};

TEST_F(SettingsDirectoryTest, IsTheSystemsUnlessTheEnvironmentNamesAFile) {
  unsetenv("QUILLON_SETTINGS");
  EXPECT_EQ(SettingsDirectory(), L"/etc/harlune/");
  setenv("QUILLON_SETTINGS", "", 1);
  EXPECT_EQ(SettingsDirectory(), L"/etc/harlune/");
}

TEST_F(SettingsDirectoryTest, IsWhereTheNamedFileIs) {
  setenv("QUILLON_SETTINGS", "/srv/till/quillon.conf", 1);
  EXPECT_EQ(SettingsDirectory(), L"/srv/till/");
  setenv("QUILLON_SETTINGS", "/quillon.conf", 1);
  EXPECT_EQ(SettingsDirectory(), L"/");
}

TEST_F(SettingsDirectoryTest, IsTheCurrentOneForABareFileName) {
  setenv("QUILLON_SETTINGS", "quillon.conf", 1);
  EXPECT_EQ(SettingsDirectory(), L"./");
}

// --- the data directory ---

class DataDirectoryTest : public testing::Test {
 protected:
  static constexpr wchar_t kDefault[] = L"/var/lib/quillon/";

  DataDirectoryTest() {
    std::string name = (std::filesystem::temp_directory_path() / "qlx-settings-XXXXXX").native();
    root_ = mkdtemp(name.data());
    setenv("QUILLON_SETTINGS", File().c_str(), 1);
  }
  ~DataDirectoryTest() override {
    unsetenv("QUILLON_SETTINGS");
    std::filesystem::remove_all(root_);
  }

  std::filesystem::path File() const { return root_ / "quillon.conf"; }

  std::optional<std::wstring> With(const std::string& content) const {
    std::ofstream(File()) << content;
    return DataDirectory();
  }

  std::filesystem::path root_;
};

TEST_F(DataDirectoryTest, IsTheSystemsWithoutASettingsFile) {
  EXPECT_EQ(DataDirectory(), kDefault);
}

TEST_F(DataDirectoryTest, IsTheFolderDatOfTheDirectoryThatIsSet) {
  EXPECT_EQ(With("Directory=/srv/till/\n"), L"/srv/till/DAT/");
  EXPECT_EQ(With("Directory=/srv/till"), L"/srv/till/DAT/");
}

TEST_F(DataDirectoryTest, IsFoundAmongCommentsBlanksAndOtherKeys) {
  EXPECT_EQ(With("# Quillon\r\n\r\nOwner=us\r\n  Directory = /srv/till \r\n"), L"/srv/till/DAT/");
  EXPECT_EQ(With("Directory=/srv/till # the second disk\n"), L"/srv/till/DAT/");
  EXPECT_EQ(With("#Directory=/srv/till\n"), kDefault);
}

TEST_F(DataDirectoryTest, MayBeQuotedAndThenHoldAnything) {
  EXPECT_EQ(With("Directory=\"/srv/first till #1\"\n"), L"/srv/first till #1/DAT/");
  EXPECT_EQ(With("Directory='/srv/\xC3\xA4 \"x\"'\n"), L"/srv/\u00E4 \"x\"/DAT/");
  EXPECT_EQ(With("Directory=/srv/first\\ till\n"), L"/srv/first till/DAT/");
}

TEST_F(DataDirectoryTest, KeepsBytesThatAreNoText) {
  EXPECT_EQ(With("Directory=/srv/\xFF\n"), std::wstring(L"/srv/") + wchar_t{0xDCFF} + L"/DAT/");
}

TEST_F(DataDirectoryTest, TheLastOfTwoCounts) {
  EXPECT_EQ(With("Directory=/a\nDirectory=/b\n"), L"/b/DAT/");
}

TEST_F(DataDirectoryTest, IsTheSystemsWhenTheFileSetsNone) {
  for (const char* content : {"", "Directory=\n", "directory=/srv\n", "[paths]\nDirectory=/srv\n"}) {
    EXPECT_EQ(With(content), kDefault) << content;
  }
}

TEST_F(DataDirectoryTest, IsTheSystemsWhenTheFileIsNoneOfSettings) {
  EXPECT_EQ(With("Directory=/srv\nwhat is this\n"), kDefault);
  EXPECT_EQ(With("Directory=/srv\n" + std::string(70'000, '#')), kDefault);
}

TEST_F(DataDirectoryTest, IsTheSystemsWhenTheFileCannotBeRead) {
  std::filesystem::create_directory(File());
  EXPECT_EQ(DataDirectory(), kDefault);
}

TEST_F(DataDirectoryTest, IsNoneWhenTheOneSetCannotBeUsed) {
  for (const std::string& content :
       {std::string("Directory=till\n"), std::string("Directory=/srv/first till\n"),
        std::string("Directory=\"/srv\n"), "Directory=/" + std::string(5'000, 'x') + "\n"}) {
    EXPECT_EQ(With(content), std::nullopt) << content.substr(0, 40);
  }
}

}  // namespace
}  // namespace qlx::platform
