#include "platform/linux/path_text.h"

#include <gtest/gtest.h>

namespace qlx::platform {
namespace {

TEST(PathText, GivesEveryFileNameBackToTheByte) {
  for (const std::string name : {"/opt/plain", "/opt/\xC3\xA4", "/opt/\xFF\xFE-\xC3", "\x80"}) {
    EXPECT_EQ(PathBytes(PathText(name)), name);
  }
}

}  // namespace
}  // namespace qlx::platform
