// What this system's runtime leaves of a text that it cannot format.
#include <gtest/gtest.h>

#include "tests/log/text_of.h"

namespace qlx {
namespace {

// It stops at a character that the "C" locale does not have.
TEST(LogText, KeepsWhatTheRuntimeLeftOfATextThatCannotBeFormatted) {
  EXPECT_EQ(test::TextOf("before %ls after", L"\u4E2D").view(), "before ");
}

}  // namespace
}  // namespace qlx
