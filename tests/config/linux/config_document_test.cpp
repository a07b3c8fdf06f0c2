#include <sstream>

#include "config/ConfigDocument.h"
#include "tests/config/Installation.h"

namespace qlx {
namespace {

using OneDocument = Installation;

TEST_F(OneDocument, ASaveFollowsASymbolicLink) {
  const auto real = directory_ / "real.xml";
  std::ofstream(real) << "<MZP/>";
  std::filesystem::create_symlink("real.xml", Path());
  const auto document = Reopened();
  document->SetValue(L"S", L"k", L"v");
  document->Save();
  EXPECT_TRUE(std::filesystem::is_symlink(Path()));
  EXPECT_NE((std::stringstream() << std::ifstream(real).rdbuf()).str().find("<k>v</k>"), std::string::npos);
  EXPECT_EQ(Bytes(".bak"), "<MZP/>");
}

}  // namespace
}  // namespace qlx
