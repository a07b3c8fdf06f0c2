#include "config/Message.h"

#include <gtest/gtest.h>

#include "config/save_error.h"
#include "platform/text.h"

namespace qlx {
namespace {

TEST(Message, AMarkedTextStaysWhatItIs) {
  EXPECT_STREQ(Translatable(L"COM Port"), L"COM Port");
  EXPECT_STREQ(Translatable("COM Port"), "COM Port");
}

TEST(Message, TheValueStandsWhereTheSentenceHasItsPlace) {
  EXPECT_EQ(InEnglish({L"%s Byte(s) Received:", L"3"}), L"3 Byte(s) Received:");
  EXPECT_EQ(Filled(L"GetLastError (%s)", L"5"), L"GetLastError (5)");
}

TEST(Message, ASentenceWithoutAPlaceStaysWhole) {
  EXPECT_EQ(InEnglish({L"100 % done", L"3"}), L"100 % done");
}

TEST(Message, AValueThatLooksLikeAPlaceIsNotFilledAgain) {
  EXPECT_EQ(Filled(L"file \"%s\"", L"/tmp/%s/%s"), L"file \"/tmp/%s/%s\"");
}

TEST(Message, WithoutASentenceTheValueIsShownAsItIs) {
  EXPECT_EQ(InEnglish({{}, L"41 0D %s"}), L"41 0D %s");
}

TEST(SaveError, ATranslatedTextIsCutTo260UnitsToo) {
  const std::wstring text = SaveErrorText(L"Nicht gespeichert: %s", std::wstring(300, L'x'));
  EXPECT_TRUE(text.starts_with(L"Nicht gespeichert: xx"));
  EXPECT_EQ(platform::Utf16Length(text), 260U);
}

}  // namespace
}  // namespace qlx
