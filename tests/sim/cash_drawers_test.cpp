#include <gmock/gmock.h>

#include "config/DeviceKind.h"
#include "demo/demo_commands.h"
#include "sim/CashDrawers.h"

namespace qlx::sim {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct State {
  Drawer one;
  Drawer two;
  unsigned char status;
};

constexpr Drawer kAbsent = {.present = false, .open = false};
constexpr Drawer kAbsentOpen = {.present = false, .open = true};
constexpr Drawer kClosed = {.present = true, .open = false};
constexpr Drawer kOpen = {.present = true, .open = true};

class DrawerState : public testing::TestWithParam<State> {};

TEST_P(DrawerState, IsAnsweredInOneByte) {
  CashDrawers drawers("drawers", {GetParam().one, GetParam().two});
  EXPECT_EQ(drawers.Receive("\x06").answer, std::string(1, static_cast<char>(GetParam().status)));
}

INSTANTIATE_TEST_SUITE_P(All, DrawerState,
                         testing::Values(State{kAbsent, kAbsent, 0x00}, State{kAbsentOpen, kAbsentOpen, 0x00},
                                         State{kClosed, kAbsent, 0x10}, State{kOpen, kAbsent, 0x50},
                                         State{kAbsent, kClosed, 0x08}, State{kAbsent, kOpen, 0x28},
                                         State{kClosed, kClosed, 0x18}, State{kOpen, kClosed, 0x58},
                                         State{kClosed, kOpen, 0x38}, State{kOpen, kOpen, 0x78}));

class CashDrawersTest : public testing::Test {
 protected:
  CashDrawers drawers_{"drawers", {}};
};

TEST_F(CashDrawersTest, TheDemosCommandOpensBothWithoutAnAnswer) {
  const Reaction reaction = drawers_.Receive(FirstDemoCommand(kCashDrawer1).chunks.front());
  EXPECT_EQ(reaction.answer, "");
  EXPECT_THAT(reaction.lines, ElementsAre("drawers: drawer 1 and drawer 2 opened"));
  EXPECT_EQ(drawers_.Status(), 0x78);
}

TEST_F(CashDrawersTest, TheDemosQueryIsAnswered) {
  const Reaction reaction = drawers_.Receive(SecondDemoCommand(kCashDrawer1).chunks.front());
  EXPECT_EQ(reaction.answer, "\x18");
  EXPECT_THAT(reaction.lines, ElementsAre("drawers: status 0x18"));
}

TEST_F(CashDrawersTest, AnAbsentDrawerDoesNotOpen) {
  drawers_.drawer(2).present = false;
  EXPECT_THAT(drawers_.Receive("\x07\x1B\x07").lines, ElementsAre("drawers: drawer 1 opened"));
  drawers_.drawer(2).present = true;
  EXPECT_EQ(drawers_.Status(), 0x58);
}

TEST_F(CashDrawersTest, WithoutAnyDrawerThereIsNothingToOpen) {
  CashDrawers none("pci", {kAbsent, kAbsent});
  EXPECT_THAT(none.Receive("\x07\x1B\x07").lines, ElementsAre("pci: no drawer to open"));
}

TEST_F(CashDrawersTest, ACommandMayComeByteByByte) {
  drawers_.Receive("\x07");
  drawers_.Receive("\x1B");
  drawers_.Receive("\x07");
  EXPECT_EQ(drawers_.Status(), 0x78);
}

TEST_F(CashDrawersTest, ABrokenCommandOpensNothingAndTheNextOneCounts) {
  EXPECT_THAT(drawers_.Receive("\x07\x1B\x06").answer, "\x18");
  EXPECT_THAT(drawers_.Receive("\x1B\x07").lines, IsEmpty());
  drawers_.Receive("\x1B\x07");
  EXPECT_EQ(drawers_.Status(), 0x78);
}

TEST_F(CashDrawersTest, TwoQueriesInOneWriteAreAnsweredTwice) {
  EXPECT_EQ(drawers_.Receive("\x06\x06").answer, "\x18\x18");
}

TEST_F(CashDrawersTest, OtherBytesAreSwallowed) {
  const Reaction reaction = drawers_.Receive(std::string("\0\xFFz", 3));
  EXPECT_EQ(reaction.answer, "");
  EXPECT_THAT(reaction.lines, IsEmpty());
}

}  // namespace
}  // namespace qlx::sim
