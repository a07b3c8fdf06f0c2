// The demo's session on a real tty, as far as the system call that takes a chunk.
#include "tests/demo/Conversation.h"
#include "tests/support/linux/recorded_writes.h"

namespace qlx {
namespace {

using ::testing::ElementsAre;
using TtyConversation = Conversation;

TEST_F(TtyConversation, TheReceiptReachesTheTtyInSeventeenWrites) {
  ASSERT_TRUE(session_.Open(L"COM5"));
  const testing::RecordedWrites writes;
  session_.Send(FirstDemoCommand(kPrinter));
  const auto chunks = FirstDemoCommand(kPrinter).chunks;
  EXPECT_EQ(writes.Taken(), std::vector<std::string>(chunks.begin(), chunks.end()));
  EXPECT_EQ(device_.Receive(564), Whole(FirstDemoCommand(kPrinter)));
}

TEST_F(TtyConversation, AnUnpluggedDeviceIsOneReadErrorLine) {
  ASSERT_TRUE(session_.Open(L"COM5"));
  device_.Unplug();
  AwaitLine(L"<Error Reading Port>");
  session_.Close();
  Collect();
  EXPECT_THAT(lines_, ElementsAre(L"<COM Port Opened>", L"<Error Reading Port>"));
}

}  // namespace
}  // namespace qlx
