#include "config/start_up.h"

#include "tests/config/Installation.h"

namespace qlx {
namespace {

using StartUp = Installation;

TEST_F(StartUp, TheDefaultPathNamesNoFixedPlaceHereAndIsNeverCreated) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(directory_);
  const auto document = Document();
  EXPECT_THROW(StartUpLoad(*document, ProgramBeside(std::nullopt), debug_output_,
                           [](const std::wstring& message) { throw Ended(message); }),
               Ended);
  std::filesystem::current_path(before);
  EXPECT_TRUE(FileNames().empty());
  EXPECT_FALSE(document->loaded());
  EXPECT_EQ(debug_output_.lines.size(), 1U);
}

}  // namespace
}  // namespace qlx
