// Any bytes are a receipt: nothing may crash, hang or grow without bound.
#include <random>

#include <gtest/gtest.h>

#include "sim/receipt/receipt_picture.h"
#include "tests/sim/PlayedServices.h"
#include "tests/sim/receipt/ReadPicture.h"

namespace qlx::receipt {
namespace {

using sim::ScratchDirectory;

class ReceiptRobustness : public testing::Test {
 protected:
  void ExpectAPicture(std::string_view bytes) const {
    const Paper paper = SetReceipt(bytes);
    ASSERT_LE(paper.height, Paper::kMostDots + 24);
    ASSERT_LE(paper.items(), Paper::kMostItems + 1);
    ASSERT_TRUE(DrawPaper(paper, path_));
    ASSERT_EQ(ReadPicture(path_).width(), 640);
  }

  std::mt19937 random_{20};
  ScratchDirectory directory_;
  std::filesystem::path path_ = directory_.path() / "receipt.png";
};

TEST_F(ReceiptRobustness, RandomBytesAreDrawn) {
  for (int i = 0; i < 60; ++i) {
    std::string bytes(random_() % 4097, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random_());
    ExpectAPicture(bytes);
  }
}

/// Bytes that begin commands, and small numbers, so that most of what is read is a command.
TEST_F(ReceiptRobustness, RandomCommandsAreDrawn) {
  constexpr std::string_view kLikely =
      "\033\033\034\035\035\035\035!*$(&3DJLVWadkmpqv08\x01\x02\x03\x10\x21\n\t\fLkX";
  for (int i = 0; i < 60; ++i) {
    std::string bytes(random_() % 4097, '\0');
    for (char& byte : bytes) {
      byte = random_() % 8 == 0 ? static_cast<char>(random_()) : kLikely[random_() % kLikely.size()];
    }
    ExpectAPicture(bytes);
  }
}

TEST_F(ReceiptRobustness, EveryByteBehindEveryLeadIsRead) {
  for (const char lead : {'\x10', '\033', '\034', '\035', '\037'}) {
    for (int name = 0; name < 256; ++name) {
      std::string bytes = {lead, static_cast<char>(name)};
      for (int i = 0; i < 12; ++i) {
        SetReceipt(bytes);
        bytes += static_cast<char>(random_());
      }
    }
  }
}

/// Each repeats a few bytes up to the size at which a receipt ends by itself.
TEST_F(ReceiptRobustness, AMegabyteOfAnythingIsDrawn) {
  for (const std::string& piece : {std::string("\xB0"), std::string("A\033$\0\0", 5),
                                   std::string("\033\0", 2), std::string("\035v0\0\0\0\xFF\xFF", 8),
                                   std::string("\035k\x04"
                                               "A\0",
                                               5),
                                   std::string("\035(k\x03\0"
                                               "1Q0",
                                               8),
                                   std::string("\033*\x21\x10\0", 5)}) {
    std::string bytes;
    while (bytes.size() < std::size_t{1} << 20) bytes += piece;
    ExpectAPicture(bytes);
  }
}

}  // namespace
}  // namespace qlx::receipt
