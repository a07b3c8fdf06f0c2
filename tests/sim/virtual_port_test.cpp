#include <numeric>
#include <optional>
#include <thread>

#include <gtest/gtest.h>

#include "sim/VirtualPort.h"
#include "tests/sim/PlayedServices.h"
#include "tests/sim/TtyClient.h"

namespace qlx::sim {
namespace {

std::string AllBytes() {
  std::string bytes(256, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  return bytes;
}

class VirtualPortTest : public testing::Test {
 protected:
  VirtualPortTest() {
    loop_.Do([this] { port_.Plug(); });
  }
  ~VirtualPortTest() override {
    loop_.Do([this] { port_.Unplug(); });
  }

  bool Send(std::string_view bytes) {
    bool taken = false;
    loop_.Do([&] { taken = port_.Send(bytes); });
    return taken;
  }
  void Unplug() {
    loop_.Do([this] { port_.Unplug(); });
  }
  void Plug() {
    loop_.Do([this] { port_.Plug(); });
  }
  void Flood(bool on) {
    loop_.Do([this, on] { port_.Flood(on); });
  }

  ScratchDirectory directory_;
  std::filesystem::path link_ = directory_.path() / "MZP_COM3";
  SaidLines received_;
  EventLoop event_loop_;
  VirtualPort port_{event_loop_, link_,
                    [say = received_.Listener()](std::string_view bytes) { say(std::string(bytes)); }};
  LoopThread loop_{event_loop_};
};

TEST_F(VirtualPortTest, CarriesEveryByteUnalteredInBothDirections) {
  const TtyClient program(link_);
  EXPECT_TRUE(Send(AllBytes()));
  EXPECT_EQ(program.Read(256), AllBytes());
  EXPECT_TRUE(program.Write(AllBytes()));
  EXPECT_TRUE(received_.Await(AllBytes()));
}

TEST_F(VirtualPortTest, DoesNotEchoWhatItSends) {
  const TtyClient program(link_);
  Send("no echo");
  EXPECT_EQ(program.Read(7), "no echo");
  program.Write("end");
  ASSERT_TRUE(received_.Await("end"));
  EXPECT_EQ(received_.All().size(), 1U);
}

TEST_F(VirtualPortTest, IsRawBeforeAnyProgramHasOpenedIt) {
  const termios line = TtyClient(link_).Line();
  EXPECT_EQ(line.c_lflag & (ECHO | ICANON | ISIG), 0U);
  EXPECT_EQ(line.c_oflag & OPOST, 0U);
}

TEST_F(VirtualPortTest, OutlivesTheProgramsThatOpenIt) {
  for (const char* text : {"one", "two"}) {
    const TtyClient program(link_);
    Send(text);
    EXPECT_EQ(program.Read(3), text);
  }
}

TEST_F(VirtualPortTest, AnUnplugTakesTheLinkAndHangsUp) {
  const TtyClient program(link_);
  Unplug();
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(link_)));
  EXPECT_TRUE(program.AwaitHangUp());
  EXPECT_FALSE(Send("x"));
}

TEST_F(VirtualPortTest, APlugMakesANewTtyUnderTheSameName) {
  const TtyClient old(link_);
  Unplug();
  Plug();
  const TtyClient program(link_);
  Send("again");
  EXPECT_EQ(program.Read(5), "again");
  EXPECT_EQ(old.ReadNow(), "");
}

TEST_F(VirtualPortTest, PluggingAPluggedPortLeavesItsTty) {
  const TtyClient program(link_);
  Plug();
  Send("same");
  EXPECT_EQ(program.Read(4), "same");
}

TEST_F(VirtualPortTest, AHundredUnplugsUnderAReaderLeaveNoDescriptorAndAWorkingPort) {
  const std::ptrdiff_t before = OpenDescriptors();
  for (int i = 0; i < 100; ++i) {
    const TtyClient program(link_);
    std::thread reader([&] { program.Read(100); });
    Unplug();
    reader.join();
    Plug();
  }
  EXPECT_EQ(OpenDescriptors(), before);
  const TtyClient program(link_);
  Send("works");
  EXPECT_EQ(program.Read(5), "works");
}

TEST_F(VirtualPortTest, ALinkThatIsThereAlreadyIsReplaced) {
  Unplug();
  std::filesystem::create_symlink("/nonexistent", link_);
  Plug();
  EXPECT_TRUE(TtyClient(link_).opened());
}

TEST_F(VirtualPortTest, ABurstBeyondTheSystemsRoomArrivesWhole) {
  std::string burst;
  while (burst.size() < 500'000) burst += std::to_string(burst.size()) + ",";
  const TtyClient program(link_);
  EXPECT_TRUE(Send(burst));
  EXPECT_TRUE(program.Read(burst.size()) == burst);
}

TEST_F(VirtualPortTest, WhatNobodyReadsIsDroppedOnceTooMuchWaits) {
  const std::string block(100'000, 'x');
  int taken = 0;
  while (taken < 100 && Send(block)) ++taken;
  EXPECT_LT(taken, 15);
  const TtyClient program(link_);
  const std::size_t waiting = static_cast<std::size_t>(taken) * block.size();
  EXPECT_EQ(program.Read(waiting).size(), waiting);
  EXPECT_TRUE(Send("room again"));
  EXPECT_EQ(program.Read(10), "room again");
}

TEST_F(VirtualPortTest, AFloodWithoutAReaderStallsNothing) {
  Flood(true);
  const TtyClient program(link_);
  EXPECT_TRUE(program.Write("heard"));
  EXPECT_TRUE(received_.Await("heard"));
  EXPECT_TRUE(Send("taken"));
}

TEST_F(VirtualPortTest, AFloodIsNumberedAndLosesNothing) {
  const TtyClient program(link_);
  Flood(true);
  const std::string text = program.Read(20000 * 16);
  for (std::size_t i = 0; i < 20000; ++i) {
    char line[32];
    snprintf(line, sizeof line, "flood %08zu\r\n", i);
    ASSERT_EQ(text.substr(i * 16, 16), line);
  }
}

TEST_F(VirtualPortTest, AFloodEnds) {
  const TtyClient program(link_);
  // More turns of the loop than blocks fit: some of the flood waits.
  for (int turns = 0; turns < 1000; ++turns) Flood(true);
  Flood(false);
  Send("\x1A");
  std::string last;
  while (!last.ends_with('\x1A')) {
    last = program.Read(1);
    ASSERT_EQ(last.size(), 1U);
  }
  Send("\x1B");
  EXPECT_EQ(program.Read(1), "\x1B");
}

TEST_F(VirtualPortTest, AnUnplugEndsAFlood) {
  Flood(true);
  Unplug();
  Plug();
  const TtyClient program(link_);
  Send("quiet");
  EXPECT_EQ(program.Read(5), "quiet");
}

TEST_F(VirtualPortTest, AProgramThatFloodsIsReadToTheEnd) {
  const TtyClient program(link_);
  EXPECT_TRUE(program.Write(std::string(1'000'000, 'x')));
  EXPECT_TRUE(program.Write("\n"));
  std::size_t count = 0;
  for (int tries = 0; tries < 10000 && count < 1'000'001; ++tries) {
    const auto all = received_.All();
    count = std::accumulate(all.begin(), all.end(), std::size_t{0},
                            [](std::size_t sum, const std::string& piece) { return sum + piece.size(); });
    std::this_thread::yield();
  }
  EXPECT_EQ(count, 1'000'001U);
}

}  // namespace
}  // namespace qlx::sim
