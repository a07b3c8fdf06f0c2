#include "controls/text_insertion.h"

#include <gtest/gtest.h>

namespace qlx {
namespace {

TEST(TextInsertion, IsCutAtTheLimit) {
  EXPECT_EQ(AcceptedInsertion({5, false}, 3, L"abc"), L"ab");
  EXPECT_EQ(AcceptedInsertion({5, false}, 5, L"abc"), L"");
}

TEST(TextInsertion, TakesNothingWhereTheTextIsAlreadyLongerThanTheLimit) {
  EXPECT_EQ(AcceptedInsertion({4, false}, 10, L"a"), L"");
}

TEST(TextInsertion, CountsUtf16UnitsAndSplitsNoCharacter) {
  EXPECT_EQ(AcceptedInsertion({1, false}, 0, L"\U0001F5A8"), L"");
  EXPECT_EQ(AcceptedInsertion({3, false}, 0, L"\U0001F5A8\U0001F5A8"), L"\U0001F5A8");
}

TEST(TextInsertion, ADigitFieldTakesAsciiDigitsOnly) {
  EXPECT_EQ(AcceptedInsertion({5, true}, 0, L" 8\u0661 080x"), L"8080");
}

TEST(TextInsertion, StopsAtTheFirstLineBreak) {
  EXPECT_EQ(AcceptedInsertion({}, 0, L"one\r\ntwo"), L"one");
  EXPECT_EQ(AcceptedInsertion({}, 0, L"one\ntwo"), L"one");
}

TEST(TextInsertion, DropsCharactersThatTheFileCannotHold) {
  EXPECT_EQ(AcceptedInsertion({}, 0,
                              std::wstring(L"a\0b\x01"
                                           L"c\x1B\uFFFE\uFFFF\td",
                                           10)),
            L"abc\td");
}

}  // namespace
}  // namespace qlx
