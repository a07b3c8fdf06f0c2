#include "platform/text.h"

#include <gtest/gtest.h>

namespace qlx::platform {
namespace {

TEST(Text, SurvivesTheWayToUtf8AndBack) {
  const std::wstring text = L"Bon \u20AC \u4E2D\u6587 \U0001F5A8 \"<&>\"";
  EXPECT_EQ(FromUtf8(ToUtf8(text)), text);
}

TEST(Text, BytesThatAreNoUtf8BecomeReplacementCharacters) {
  EXPECT_EQ(FromUtf8("a\xFFz"), L"a\uFFFDz");
}

TEST(Text, LoneSurrogateBecomesReplacementCharacter) {
  EXPECT_EQ(ToUtf8(std::wstring{L'a', static_cast<wchar_t>(0xD801), L'b'}),
            "a\xEF\xBF\xBD"
            "b");
}

TEST(Text, LengthCountsUtf16UnitsOnEveryPlatform) {
  EXPECT_EQ(Utf16Length(L"abc"), 3U);
  EXPECT_EQ(Utf16Length(L"\u20AC"), 1U);
  EXPECT_EQ(Utf16Length(L"\U0001F5A8"), 2U);
}

TEST(Text, PrefixNeverSplitsACharacter) {
  EXPECT_EQ(Utf16Prefix(L"ab\U0001F5A8z", 3), L"ab");
  EXPECT_EQ(Utf16Prefix(L"ab\U0001F5A8z", 4), L"ab\U0001F5A8");
  EXPECT_EQ(Utf16Prefix(L"ab", 260), L"ab");
}

}  // namespace
}  // namespace qlx::platform
