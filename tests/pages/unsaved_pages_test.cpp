#include "pages/unsaved_pages.h"

#include <gtest/gtest.h>

namespace qlx {
namespace {

TEST(UnsavedMessage, TellsThatThereIsNothingToSave) {
  EXPECT_EQ(InEnglish(UnsavedMessage({})), L"No unsaved changes");
}

TEST(UnsavedMessage, NamesThePagesInTheirOrder) {
  EXPECT_EQ(InEnglish(UnsavedMessage({L"MSR"})), L"Unsaved changes: MSR");
  EXPECT_EQ(InEnglish(UnsavedMessage({L"Logging", L"MSR"})), L"Unsaved changes: Logging, MSR");
}

}  // namespace
}  // namespace qlx
