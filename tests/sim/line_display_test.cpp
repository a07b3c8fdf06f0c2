#include <gmock/gmock.h>

#include "config/DeviceKind.h"
#include "demo/demo_commands.h"
#include "sim/LineDisplay.h"

namespace qlx::sim {
namespace {

using testing::ElementsAre;

constexpr const char* kDemoText = "line display: [HARLUNE TEST        ] [0123456789          ]";

class LineDisplayTest : public testing::Test {
 protected:
  std::string Write(std::string_view bytes) { return display_.Receive(bytes).lines.back(); }

  LineDisplay display_;
};

TEST_F(LineDisplayTest, ShowsTheDemosTextOnBothLines) {
  const auto chunks = FirstDemoCommand(kLineDisplay).chunks;
  const Reaction reaction = display_.Receive(chunks.front());
  EXPECT_THAT(reaction.lines, ElementsAre(kDemoText));
  EXPECT_EQ(reaction.answer, "");
}

TEST_F(LineDisplayTest, ShowsTheDemosTextTheSameASecondTime) {
  const auto chunks = FirstDemoCommand(kLineDisplay).chunks;
  Write(chunks.front());
  EXPECT_EQ(Write(chunks.front()), kDemoText);
}

TEST_F(LineDisplayTest, TakesACommandByteByByte) {
  Write("old");
  Write("\x1F");
  Write("\x10");
  EXPECT_EQ(Write("\x04"), "line display: [                    ] [                    ]");
}

TEST_F(LineDisplayTest, GoesOnWhereTheLastWriteEnded) {
  Write("12");
  EXPECT_EQ(Write("34"), "line display: [1234                ] [                    ]");
}

TEST_F(LineDisplayTest, LosesWhatGoesPastTheEndOfALine) {
  EXPECT_EQ(Write("1234567890123456789012345"),
            "line display: [12345678901234567890] [                    ]");
}

TEST_F(LineDisplayTest, ACarriageReturnOverwritesTheLine) {
  EXPECT_EQ(Write("123\rA"), "line display: [A23                 ] [                    ]");
}

TEST_F(LineDisplayTest, ALineFeedOnTheLowerLineMovesBothUp) {
  EXPECT_EQ(Write("one\n\rtwo\n\rthree"), "line display: [two                 ] [three               ]");
}

TEST_F(LineDisplayTest, IgnoresOtherControlBytesAndUnknownCommands) {
  const std::string bytes(
      "\0A\x1F\x10"
      "B\x1F\x1F\x10\x04"
      "C\xFF\x80",
      12);
  EXPECT_EQ(Write(bytes), "line display: [C                   ] [                    ]");
}

}  // namespace
}  // namespace qlx::sim
