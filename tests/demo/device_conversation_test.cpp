// The demo's session on a real tty, as far as the system call that takes a chunk.
#include <atomic>
#include <filesystem>
#include <random>
#include <semaphore>
#include <thread>

#include <gmock/gmock.h>

#include "demo/SerialSession.h"
#include "demo/received_text.h"
#include "tests/support/linux/VirtualPort.h"
#include "tests/support/recorded_writes.h"

namespace qlx {
namespace {

using ::testing::ElementsAre;
using testing::PortDirectory;
using testing::VirtualPort;

class Conversation : public ::testing::Test {
 protected:
  /// Takes what there is, until `count` bytes have been received.
  void AwaitBytes(std::size_t count) {
    while (received_.size() < count) AwaitEvent();
  }
  /// Takes what there is, until `line` was shown.
  void AwaitLine(const std::wstring& line) {
    while (std::ranges::find(lines_, line) == lines_.end()) AwaitEvent();
  }

  void AwaitEvent() {
    wakes_.acquire();
    Collect();
  }

  void Collect() {
    for (const SessionEvent& event : session_.Take(1 << 20)) {
      if (const auto* line = std::get_if<std::wstring>(&event)) {
        lines_.push_back(*line);
      } else {
        const auto& block = std::get<std::vector<std::uint8_t>>(event);
        received_.append(block.begin(), block.end());
      }
    }
  }

  PortDirectory directory_;
  VirtualPort device_{directory_};
  std::counting_semaphore<> wakes_{0};
  std::vector<std::wstring> lines_;
  std::string received_;
  SerialSession session_{platform::OpenSerialPort, [this] { wakes_.release(); }};
};

std::string Whole(const DemoCommand& command) {
  std::string bytes;
  for (const std::string_view chunk : command.chunks) bytes += chunk;
  return bytes;
}

TEST_F(Conversation, TheReceiptReachesTheTtyInSeventeenWrites) {
  ASSERT_TRUE(session_.Open(L"COM5"));
  const testing::RecordedWrites writes;
  session_.Send(FirstDemoCommand(kPrinter));
  const auto chunks = FirstDemoCommand(kPrinter).chunks;
  EXPECT_EQ(writes.Taken(), std::vector<std::string>(chunks.begin(), chunks.end()));
  EXPECT_EQ(device_.Receive(564), Whole(FirstDemoCommand(kPrinter)));
}

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

TEST_F(Conversation, APrinterThatTakesNothingGivesALineForTheChunk) {
  ASSERT_TRUE(session_.Open(L"COM5"));
  const std::string much(1 << 16, 'x');
  const std::string_view chunks[] = {much};
  session_.Send({L"", chunks});
  AwaitLine(L"<Error Writing to Port>");
}

TEST_F(Conversation, AnUnpluggedDeviceIsOneReadErrorLine) {
  ASSERT_TRUE(session_.Open(L"COM5"));
  device_.Unplug();
  AwaitLine(L"<Error Reading Port>");
  session_.Close();
  Collect();
  EXPECT_THAT(lines_, ElementsAre(L"<COM Port Opened>", L"<Error Reading Port>"));
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
  const auto threads = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
  };
  std::thread([] {}).join();  // a sanitizer's own thread begins with the first of ours
  const auto before = threads();
  ASSERT_TRUE(session_.Open(L"COM5"));
  std::atomic<bool> over = false;
  std::thread floods([&] {
    while (!over) device_.SendSome(std::string(4096, 'f'));
  });
  AwaitBytes(1 << 16);
  session_.Close();
  over = true;
  floods.join();
  EXPECT_EQ(threads(), before);
}

TEST_F(Conversation, AHundredUnplugsEndEachSessionWithItsLine) {
  for (int i = 0; i < 100; ++i) {
    VirtualPort device(directory_, "COM6");
    std::counting_semaphore<> wakes{0};
    SerialSession session(platform::OpenSerialPort, [&] { wakes.release(); });
    ASSERT_TRUE(session.Open(L"COM6"));
    device.Send("x");
    device.Unplug();
    std::vector<SessionEvent> events;
    while (events.empty() || events.back() != SessionEvent(L"<Error Reading Port>")) {
      wakes.acquire();
      for (SessionEvent& event : session.Take(1 << 20)) events.push_back(std::move(event));
    }
  }
}

}  // namespace
}  // namespace qlx
