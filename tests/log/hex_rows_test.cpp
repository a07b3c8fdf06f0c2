#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "log/HexRows.h"

namespace qlx {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes Counting(std::size_t length, unsigned char first = 0) {
  Bytes bytes;
  for (std::size_t i = 0; i < length; ++i) bytes.push_back(static_cast<unsigned char>(first + i));
  return bytes;
}

std::vector<std::string> Rows(const Bytes& bytes) {
  std::vector<std::string> result;
  for (HexRows rows(bytes); !rows.done();) result.emplace_back(rows.Next());
  return result;
}

std::string Hex(unsigned char byte) {
  char text[8];
  std::snprintf(text, sizeof text, "%02x ", unsigned{byte});
  return text;
}

std::string Label(unsigned row) {
  char text[16];
  std::snprintf(text, sizeof text, "%03u) ", row);
  return text;
}

/// The rows as their rule says it, byte by byte and part by part.
std::vector<std::string> ByTheRule(const Bytes& bytes) {
  std::vector<std::string> rows;
  std::string hex = "001) ";
  std::string characters;
  unsigned row = 1;
  for (std::size_t c = 1; c <= bytes.size(); ++c) {
    const unsigned char byte = bytes[c - 1];
    hex += Hex(byte);
    characters += byte >= 0x21 ? static_cast<char>(byte) : '.';
    if (c % 4 == 0) hex += "  ";
    if (c % 16 != 0) continue;
    rows.push_back(hex + characters);
    hex = Label(++row);
    characters.clear();
  }
  const std::size_t r = bytes.size() % 16;
  if (r == 0) return rows;
  const std::size_t groups = r < 4 ? 4 : r < 8 ? 3 : r < 12 ? 2 : 1;
  rows.push_back(hex + std::string((16 - r) * 3 + groups * 2, ' ') + characters);
  return rows;
}

TEST(HexRows, ARowIsLabelFourGroupsOfFourAndTheCharacters) {
  EXPECT_EQ(Rows(Counting(16, 'A')),
            std::vector<std::string>{
                "001) 41 42 43 44   45 46 47 48   49 4a 4b 4c   4d 4e 4f 50   ABCDEFGHIJKLMNOP"});
}

TEST(HexRows, AShortRowsCharactersStartInTheColumnOfAFullRows) {
  const auto rows = Rows(Counting(20));
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0], "001) 00 01 02 03   04 05 06 07   08 09 0a 0b   0c 0d 0e 0f   ................");
  EXPECT_EQ(rows[1], "002) 10 11 12 13                                             ....");
}

TEST(HexRows, SixteenBytesAreExactlyOneRowAndNoBytesNone) {
  EXPECT_EQ(Rows(Counting(16)).size(), 1U);
  EXPECT_TRUE(Rows({}).empty());
}

TEST(HexRows, EveryLengthUpToTwoRowsAndOneFollowsTheRule) {
  for (std::size_t length = 1; length <= 33; ++length)
    EXPECT_EQ(Rows(Counting(length, 'a')), ByTheRule(Counting(length, 'a'))) << length;
}

TEST(HexRows, EveryByteFollowsTheRule) {
  EXPECT_EQ(Rows(Counting(256)), ByTheRule(Counting(256)));
}

TEST(HexRows, ABlankAndControlsShowAsPointsAndBytesFrom7FAreKept) {
  EXPECT_EQ(Rows({0x00, 0x1F, 0x20, 0x21, 0x7E, 0x7F, 0x80, 0xFF}).front().substr(61), "...!~\x7F\x80\xFF");
}

TEST(HexRows, RowNumbersGrowBeyondThreeDigits) {
  const auto rows = Rows(Counting(1001 * 16 + 1));
  EXPECT_EQ(rows[8].substr(0, 5), "009) ");
  EXPECT_EQ(rows[9].substr(0, 5), "010) ");
  EXPECT_EQ(rows[99].substr(0, 5), "100) ");
  EXPECT_EQ(rows[999].substr(0, 6), "1000) ");
  EXPECT_EQ(rows, ByTheRule(Counting(1001 * 16 + 1)));
}

}  // namespace
}  // namespace qlx
