#include "sim/receipt/code_tables.h"

#include <gtest/gtest.h>

namespace qlx::receipt {
namespace {

TEST(CodeTables, AsciiIsTheSameInEveryTable) {
  for (int table = 0; table < 256; ++table) {
    EXPECT_EQ(DecodeText("Total 1.00 ~", static_cast<std::uint8_t>(table)), "Total 1.00 ~");
  }
}

TEST(CodeTables, TheUpperHalfIsThatOfTheTable) {
  EXPECT_EQ(DecodeText("\x80\x9C\xC9", 0), "Ç£╔");
  EXPECT_EQ(DecodeText("\xD5", 19), "€");
  EXPECT_EQ(DecodeText("\x80\x81", 17), "АБ");
}

TEST(CodeTables, ATableThatIsNotKnownCountsAsTheFirst) {
  EXPECT_EQ(DecodeText("\x80", 200), "Ç");
}

TEST(CodeTables, WhatHasNoCharacterIsReplaced) {
  EXPECT_EQ(DecodeText("a\x81z", 16), "a\uFFFDz");
}

}  // namespace
}  // namespace qlx::receipt
