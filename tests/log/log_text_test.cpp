#include <string>

#include <gtest/gtest.h>

#include "log/LogText.h"

namespace qlx {
namespace {

LogText Text(const char* format, ...) QLX_PRINTF(1, 2);

LogText Text(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const LogText text(format, arguments);
  va_end(arguments);
  return text;
}

TEST(LogText, IsFormattedAsPrintfDoes) {
  EXPECT_EQ(Text("%s::%s - %03d of 0x%04X", "A", "B", 7, 0xBEEFU).view(), "A::B - 007 of 0xBEEF");
  EXPECT_EQ(Text("%s", "").view(), "");
}

TEST(LogText, IsCutTo1023Bytes) {
  const std::string longest(1023, 'x');
  EXPECT_EQ(Text("%s", longest.c_str()).view(), longest);
  EXPECT_EQ(Text("%s", (longest + "y").c_str()).view(), longest);
  EXPECT_EQ(Text("%s", std::string(100000, 'x').c_str()).view(), longest);
}

TEST(LogText, EndsAtAZeroByte) {
  EXPECT_EQ(Text("a%cb", 0).view(), "a");
}

TEST(LogText, KeepsWhatTheRuntimeLeftOfATextThatCannotBeFormatted) {
  EXPECT_EQ(Text("before %ls after", L"\u4E2D").view(), "before ");  // no such character in the "C" locale
}

TEST(LogText, AppendsWhatFits) {
  LogText text = Text("%s", std::string(1020, 'x').c_str());
  text.Append(" (20 bytes)");
  EXPECT_EQ(text.view(), std::string(1020, 'x') + " (2");
}

}  // namespace
}  // namespace qlx
