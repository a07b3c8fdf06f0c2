#include "tests/config/StoredValues.h"

namespace qlx {
namespace {

TEST_F(StoredValues, CodesAboveTheLastCharacterAreDropped) {
  EXPECT_EQ(Stored({L'a', static_cast<wchar_t>(0x110000), static_cast<wchar_t>(0x7FFFFFFF), L'b'}).text,
            L"ab");
}

TEST_F(StoredValues, HalvesOfACharacterSideBySideAreStillHalves) {
  EXPECT_EQ(Stored({L'a', static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0xDC00), L'b'}).text, L"ab");
}

}  // namespace
}  // namespace qlx
