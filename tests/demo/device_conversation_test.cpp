#include <atomic>
#include <random>
#include <thread>

#include "demo/received_text.h"
#include "tests/demo/Conversation.h"
#include "thread_count.h"

namespace qlx {
namespace {

using testing::ThreadCount;
using testing::VirtualPort;
using testing::Wakes;

TEST_F(Conversation, EveryCommandReachesTheDeviceAsItStands) {
  ASSERT_TRUE(session_.Open(L"COM5"));
  for (int kind = 0; kind < kDeviceKinds; ++kind) {
    for (const DemoCommand& command : {FirstDemoCommand(static_cast<DeviceKind>(kind)),
                                       SecondDemoCommand(static_cast<DeviceKind>(kind))}) {
      session_.Send(command);
      EXPECT_EQ(device_.Receive(Whole(command).size()), Whole(command));
    }
  }
}

TEST_F(Conversation, AnUnpluggedDeviceEndsTheReaderWithItsLine) {
  ASSERT_TRUE(session_.Open(L"COM5"));
  device_.Unplug();
  AwaitLine(L"<Error Reading Port>");
  session_.Close();
  Collect();
  EXPECT_LE(lines_.size(), 3U) << "not again and again";
}

TEST_F(Conversation, APrinterThatTakesNothingGivesALineForTheChunk) {
  ASSERT_TRUE(session_.Open(L"COM5"));
  const std::string much(1 << 16, 'x');
  const std::string_view chunks[] = {much};
  session_.Send({L"", chunks});
  AwaitLine(L"<Error Writing to Port>");
}

TEST_F(Conversation, ACommandToAnUnpluggedDeviceIsAWriteErrorLine) {
  ASSERT_TRUE(session_.Open(L"COM5"));
  device_.Unplug();
  session_.Send(SecondDemoCommand(kCashDrawer1));
  AwaitLine(L"<Error Writing to Port>");
}

TEST_F(Conversation, ABurstArrivesWhole) {
  ASSERT_TRUE(session_.Open(L"COM5"));
  std::string burst(1 << 20, '\0');
  std::minstd_rand random(1);
  for (char& byte : burst) byte = static_cast<char>(random());
  std::thread sends([&] { device_.Send(burst); });
  AwaitBytes(burst.size());
  sends.join();
  EXPECT_EQ(received_, burst);
}

TEST_F(Conversation, RandomBlocksOfEverySizeAreShownWhole) {
  ASSERT_TRUE(session_.Open(L"COM5"));
  std::minstd_rand random(2);
  std::string sent;
  for (int i = 0; i < 1000; ++i) {
    std::string block(random() % 4097, '\0');
    for (char& byte : block) byte = static_cast<char>(random());
    sent += block;
    std::thread sends([&] { device_.Send(block); });
    AwaitBytes(sent.size());
    sends.join();
  }
  EXPECT_EQ(received_, sent);
  const std::vector<std::uint8_t> bytes(sent.begin(), sent.begin() + 2048);
  for (int kind = 0; kind < kDeviceKinds; ++kind) {
    EXPECT_GE(DescribeReceived(static_cast<DeviceKind>(kind), bytes, kind % 2 == 0).size(), 2U);
  }
}

TEST_F(Conversation, ASlowTrickleIsShownByteByByte) {
  ASSERT_TRUE(session_.Open(L"COM5"));
  for (std::size_t i = 1; i <= 50; ++i) {
    device_.Send("t");
    AwaitBytes(i);
  }
  EXPECT_EQ(received_, std::string(50, 't'));
}

TEST_F(Conversation, ClosingInMidFloodLeavesNoThread) {
  std::thread([] {}).join();  // a sanitizer's own thread begins with the first of ours
  const std::size_t before = ThreadCount();
  ASSERT_TRUE(session_.Open(L"COM5"));
  std::atomic<bool> over = false;
  std::thread floods([&] {
    while (!over) device_.SendSome(std::string(4096, 'f'));
  });
  AwaitBytes(1 << 16);
  session_.Close();
  over = true;
  floods.join();
  EXPECT_EQ(ThreadCount(), before);
}

TEST_F(Conversation, AHundredUnplugsEndEachSessionWithItsLine) {
  for (int i = 0; i < 100; ++i) {
    VirtualPort device(directory_, "COM6");
    Wakes wakes;
    SerialSession session(platform::OpenSerialPort, [&] { wakes.Add(); });
    ASSERT_TRUE(session.Open(L"COM6"));
    device.Send("x");
    device.Unplug();
    std::vector<SessionEvent> events;
    while (events.empty() || events.back() != SessionEvent(L"<Error Reading Port>")) {
      wakes.Await();
      for (SessionEvent& event : session.Take(1 << 20)) events.push_back(std::move(event));
    }
  }
}

}  // namespace
}  // namespace qlx
