#include <fstream>
#include <iterator>
#include <list>
#include <optional>

#include <gmock/gmock.h>

#include "sim/LogService.h"
#include "tests/sim/PlayedServices.h"
#include "tests/sim/TcpClient.h"

namespace qlx::sim {
namespace {

using testing::Contains;
using testing::HasSubstr;

class LogServiceTest : public testing::Test {
 protected:
  LogServiceTest() { settings_.port = 0; }

  /// Runs the service in a loop of its own; false when it did not start.
  bool Start() {
    bool started = false;
    loop_.Do([&] { started = service_.Start(); });
    return started;
  }
  void Stop() {
    loop_.Do([this] { service_.Stop(); });
  }
  std::uint16_t Port() {
    std::uint16_t port = 0;
    loop_.Do([&] { port = service_.port(); });
    return port;
  }
  std::string Log(const char* name = "qlx.log") {
    std::ifstream file(directory_.path() / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  ScratchDirectory directory_;
  SaidLines said_;
  LogSettings settings_;
  EventLoop event_loop_;
  LogService service_{event_loop_, [this] { return settings_; }, directory_.path(), said_.Listener()};
  LoopThread loop_{event_loop_};
};

TEST_F(LogServiceTest, WritesTheBytesAsTheyComeAndSaysEachRecord) {
  ASSERT_TRUE(Start());
  EXPECT_TRUE(TcpClient(Port()).Send("first\r\nsecond\r\n"));
  ASSERT_TRUE(said_.Await("log client 1 closed"));
  EXPECT_EQ(Log(), "first\r\nsecond\r\n");
  EXPECT_THAT(said_.All(), Contains("log record from 1: first"));
  EXPECT_THAT(said_.All(), Contains("log record from 1: second"));
}

TEST_F(LogServiceTest, ARecordThatComesInPiecesIsSaidOnceAndWhole) {
  ASSERT_TRUE(Start());
  const TcpClient client(Port());
  client.Send("be\r\nfore ");
  ASSERT_TRUE(said_.Await("log record from 1: be"));
  client.Send("after\r");
  client.Send("\n");
  EXPECT_TRUE(said_.Await("log record from 1: fore after"));
}

TEST_F(LogServiceTest, TwoClientsKeepTheirRecordsApart) {
  ASSERT_TRUE(Start());
  const TcpClient first(Port());
  ASSERT_TRUE(said_.Await("log client 1 connected"));
  const TcpClient second(Port());
  first.Send("a");
  second.Send("b\r\n");
  ASSERT_TRUE(said_.Await("log record from 2: b"));
  first.Send("c\r\n");
  EXPECT_TRUE(said_.Await("log record from 1: ac"));
}

TEST_F(LogServiceTest, AClosingClientLeavesTheServiceToTheNext) {
  ASSERT_TRUE(Start());
  TcpClient(Port()).Send("without end");
  EXPECT_TRUE(said_.Await("log record from 1 without its end: without end"));
  TcpClient(Port()).Send("next\r\n");
  EXPECT_TRUE(said_.Await("log record from 2: next"));
}

TEST_F(LogServiceTest, GarbageIsWrittenAsItIsAndSaidInPrintableCharacters) {
  ASSERT_TRUE(Start());
  const std::string garbage("\0\x1b[2J\xff\n\r\\\r\n", 11);
  TcpClient(Port()).Send(garbage);
  ASSERT_TRUE(said_.Await("log client 1 closed"));
  EXPECT_EQ(Log(), garbage);
  EXPECT_THAT(said_.All(), Contains("log record from 1: \\x00\\x1b[2J\\xff\\x0a\\x0d\\"));
}

TEST_F(LogServiceTest, ABurstOfAMegabyteWithoutAnEndIsWrittenWhole) {
  ASSERT_TRUE(Start());
  const std::string burst(1 << 20, 'x');
  EXPECT_TRUE(TcpClient(Port()).Send(burst));
  ASSERT_TRUE(said_.Await("log client 1 closed"));
  EXPECT_TRUE(Log() == burst);
}

TEST_F(LogServiceTest, ABurstOfManyRecordsIsSaidInOrder) {
  ASSERT_TRUE(Start());
  std::string burst;
  for (int i = 0; i < 10000; ++i) burst += std::to_string(i) + "\r\n";
  EXPECT_TRUE(TcpClient(Port()).Send(burst));
  ASSERT_TRUE(said_.Await("log client 1 closed"));
  const auto said = said_.All();
  for (std::size_t i = 0; i < 10000; ++i) {
    ASSERT_EQ(said[i + 2], "log record from 1: " + std::to_string(i));
  }
}

TEST_F(LogServiceTest, AFullFileMakesRoomForTheNext) {
  settings_.file_bytes = 1024;
  ASSERT_TRUE(Start());
  TcpClient(Port()).Send(std::string(1500, 'x'));
  ASSERT_TRUE(said_.Await("log client 1 closed"));
  EXPECT_EQ(Log("qlx.log.1").size(), 1024U);
  EXPECT_EQ(Log().size(), 476U);
}

TEST_F(LogServiceTest, StoppingTakesWhatWasAlreadySentEvenByAClientNotYetAccepted) {
  ASSERT_TRUE(Start());
  loop_.Do([this] {
    const TcpClient client(service_.port());
    client.Send("last\r\n");
    service_.Stop();
  });
  EXPECT_EQ(Log(), "last\r\n");
}

TEST(LogServiceWithoutLoop, ItsEndTakesInWhoStillWaits) {
  const ScratchDirectory directory;
  SaidLines said;
  EventLoop loop;
  std::optional<LogService> service;
  service.emplace(
      loop, [] { return LogSettings{.port = 0}; }, directory.path(), said.Listener());
  ASSERT_TRUE(service->Start());
  loop.Stop();
  loop.Run();
  const TcpClient client(service->port());
  client.Send("late\r\n");
  service.reset();
  EXPECT_THAT(said.All(), Contains("log record from 1: late"));
}

TEST_F(LogServiceTest, StoppingClosesTheClientsAndThePort) {
  ASSERT_TRUE(Start());
  const std::uint16_t port = Port();
  const TcpClient client(port);
  Stop();
  client.AwaitEnd();
  EXPECT_FALSE(TcpClient(port).connected());
  EXPECT_EQ(Port(), 0);
}

TEST_F(LogServiceTest, AFurtherStartReadsItsSettingsAnew) {
  ASSERT_TRUE(Start());
  Stop();
  settings_.port = FreePort();
  settings_.file_name = "other.log";
  ASSERT_TRUE(Start());
  TcpClient(settings_.port).Send("moved\r\n");
  ASSERT_TRUE(said_.Await("log client 1 closed"));
  EXPECT_EQ(Log("other.log"), "moved\r\n");
}

TEST_F(LogServiceTest, ThePortCanBeHadAgainAtOnce) {
  ASSERT_TRUE(Start());
  settings_.port = Port();
  const TcpClient client(settings_.port);
  Stop();
  EXPECT_TRUE(Start());
}

TEST_F(LogServiceTest, APortInUseKeepsItFromStarting) {
  ASSERT_TRUE(Start());
  LogService other(
      event_loop_, [port = Port()] { return LogSettings{.port = port}; }, directory_.path(),
      said_.Listener());
  loop_.Do([&] { EXPECT_FALSE(other.Start()); });
  EXPECT_THAT(said_.All(), Contains(HasSubstr("Address already in use")));
}

TEST_F(LogServiceTest, ALogFileThatCannotBeWrittenKeepsItFromStarting) {
  settings_.file_name = "none/qlx.log";
  EXPECT_FALSE(Start());
  EXPECT_THAT(said_.All(), Contains(HasSubstr("cannot be written")));
}

TEST_F(LogServiceTest, ClientsPastTheLimitAreRefused) {
  ASSERT_TRUE(Start());
  std::list<TcpClient> clients;
  for (int i = 0; i < 65; ++i) clients.emplace_back(Port());
  EXPECT_TRUE(said_.Await("log client refused: there are 64"));
  clients.back().AwaitEnd();
}

}  // namespace
}  // namespace qlx::sim
