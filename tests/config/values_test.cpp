#include "config/values.h"

#include <gtest/gtest.h>

namespace qlx {
namespace {

TEST(Values, ANumberIsANonEmptyRunOfAsciiDigits) {
  EXPECT_EQ(ParseNumber(L"0"), 0);
  EXPECT_EQ(ParseNumber(L"00080"), 80);
  for (const wchar_t* text : {L"", L"-1", L"+1", L" 1", L"1 ", L"2x", L"0x10", L"\u0661"}) {
    EXPECT_EQ(ParseNumber(text), std::nullopt) << text;
  }
}

TEST(Values, ANumberSaturatesAtTheLargestSigned32BitValue) {
  EXPECT_EQ(ParseNumber(L"2147483647"), 2147483647);
  EXPECT_EQ(ParseNumber(L"2147483648"), 2147483647);
  EXPECT_EQ(ParseNumber(std::wstring(5000, L'9')), 2147483647);
}

TEST(Values, OnlyTrueInAnyLetterCaseIsTrue) {
  EXPECT_TRUE(IsTrue(L"true"));
  EXPECT_TRUE(IsTrue(L"TRUE"));
  EXPECT_TRUE(IsTrue(L"True"));
  for (const wchar_t* text : {L"", L"false", L"1", L"true ", L"tru", L"trues"})
    EXPECT_FALSE(IsTrue(text)) << text;
}

TEST(Values, AnUncheckedBoxIsStoredAsTheEmptyText) {
  EXPECT_EQ(CheckText(true), L"true");
  EXPECT_EQ(CheckText(false), L"");
}

}  // namespace
}  // namespace qlx
