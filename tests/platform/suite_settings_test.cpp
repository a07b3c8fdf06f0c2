#include "platform/suite_settings.h"

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

}  // namespace
}  // namespace qlx::platform
