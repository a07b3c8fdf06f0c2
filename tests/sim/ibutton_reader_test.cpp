#include <gtest/gtest.h>

#include "sim/IButtonReader.h"

namespace qlx::sim {
namespace {

class IButtonReaderTest : public testing::Test {
 protected:
  std::string Touch(const IButtonSettings& settings, const std::string& id = "1122334455667788") {
    reader_.Configure(settings);
    return reader_.Touch(id);
  }

  IButtonReader reader_;
};

TEST_F(IButtonReaderTest, SendsTheWholeIdentifier) {
  EXPECT_EQ(Touch({}), "1122334455667788");
}

TEST_F(IButtonReaderTest, SendsTheConfiguredDigits) {
  EXPECT_EQ(Touch({.start = 3, .length = 4}), "2233");
}

TEST_F(IButtonReaderTest, SendsAsManyDigitsAsThereAre) {
  EXPECT_EQ(Touch({.start = 15, .length = 16}), "88");
  EXPECT_EQ(Touch({.start = 16, .length = 1}), "8");
}

TEST_F(IButtonReaderTest, SendsPrefixDigitsSuffixDelimiterInThisOrder) {
  EXPECT_EQ(Touch({.length = 2, .prefix = "<", .suffix = ">", .delimiter = "\r\n"}), "<11>\r\n");
}

TEST_F(IButtonReaderTest, SendsLettersInUpperCase) {
  EXPECT_EQ(Touch({}, "abcdefABCDEF0099"), "ABCDEFABCDEF0099");
}

TEST_F(IButtonReaderTest, SendsOnlyTheRemovalBytesOnARemoval) {
  Touch({.prefix = "<", .delimiter = "\t", .on_remove = std::string("\0\1", 2)});
  EXPECT_EQ(reader_.Remove(), std::string("\0\1", 2));
}

}  // namespace
}  // namespace qlx::sim
