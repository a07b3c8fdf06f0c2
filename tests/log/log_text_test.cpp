#include <string>

#include <gtest/gtest.h>

#include "tests/log/text_of.h"

namespace qlx {
namespace {

using test::TextOf;

TEST(LogText, IsFormattedAsPrintfDoes) {
  EXPECT_EQ(TextOf("%s::%s - %03d of 0x%04X", "A", "B", 7, 0xBEEFU).view(), "A::B - 007 of 0xBEEF");
  EXPECT_EQ(TextOf("%s", "").view(), "");
}

TEST(LogText, IsCutTo1023Bytes) {
  const std::string longest(1023, 'x');
  EXPECT_EQ(TextOf("%s", longest.c_str()).view(), longest);
  EXPECT_EQ(TextOf("%s", (longest + "y").c_str()).view(), longest);
  EXPECT_EQ(TextOf("%s", std::string(100000, 'x').c_str()).view(), longest);
}

TEST(LogText, EndsAtAZeroByte) {
  EXPECT_EQ(TextOf("a%cb", 0).view(), "a");
}

TEST(LogText, AppendsWhatFits) {
  LogText text = TextOf("%s", std::string(1020, 'x').c_str());
  text.Append(" (20 bytes)");
  EXPECT_EQ(text.view(), std::string(1020, 'x') + " (2");
}

}  // namespace
}  // namespace qlx
