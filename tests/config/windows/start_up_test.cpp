#include "config/start_up.h"

#include "tests/config/Installation.h"

namespace qlx {
namespace {

using StartUp = Installation;

TEST_F(StartUp, WithoutTheProgramsNameTheFileStandsAtTheDefaultPath) {
  const std::filesystem::path maker = "C:\\Program Files\\Harlune";
  const std::filesystem::path file = maker / "MZP" / "BIN" / "QLXConfig.xml";
  ASSERT_FALSE(std::filesystem::exists(maker));
  std::filesystem::create_directories(file.parent_path());
  StartUpLoad(*Document(), ProgramBeside(std::nullopt), debug_output_,
              [](const std::wstring& message) { throw Ended(message); });
  EXPECT_TRUE(std::filesystem::exists(file));
  EXPECT_TRUE(boxes_.empty());
  std::filesystem::remove_all(maker);
}

}  // namespace
}  // namespace qlx
