#include <list>
#include <stdexcept>

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>

#include "sim/ControlSocket.h"
#include "sim/control_client.h"
#include "sim/socket_address.h"
#include "tests/sim/PlayedServices.h"
#include "tests/sim/TtyClient.h"

namespace qlx::sim {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class LineClient {
 public:
  explicit LineClient(const std::filesystem::path& path)
      : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const timeval limit{10, 0};
    setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    const sockaddr_un address = SocketAddress(path);
    connected_ = connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }
  LineClient(const LineClient&) = delete;
  LineClient& operator=(const LineClient&) = delete;
  ~LineClient() { close(socket_); }

  bool connected() const { return connected_; }
  void Send(const std::string& text) const { send(socket_, text.data(), text.size(), MSG_NOSIGNAL); }
  /// What the system takes without waiting.
  ssize_t SendSome(const std::string& text) const {
    return send(socket_, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  }
  void EndSending() const { shutdown(socket_, SHUT_WR); }
  std::string ReadLine() const {
    std::string line;
    for (char byte = 0; !line.ends_with('\n') && recv(socket_, &byte, 1, 0) == 1;) line += byte;
    return line;
  }
  std::string ReadAll() const {
    std::string text;
    std::array<char, 65536> block;
    for (ssize_t count; (count = recv(socket_, block.data(), block.size(), 0)) > 0;) {
      text.append(block.data(), static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  int socket_;
  bool connected_ = false;
};

class ControlSocketTest : public testing::Test {
 protected:
  static constexpr std::size_t kLongest = 100;

  /// The answer names the line and is `answer_size_` long at least.
  std::string Answer(const std::string& line) const {
    return "<" + line + ">" + std::string(answer_size_, 'x') + "\nok\n";
  }

  ScratchDirectory directory_;
  std::filesystem::path path_ = directory_.path() / "control";
  std::size_t answer_size_ = 0;
  SaidLines executed_;
  SaidLines said_;
  EventLoop event_loop_;
  ControlSocket control_{event_loop_, path_, kLongest,
                         [this, executed = executed_.Listener()](const std::string& line) {
                           executed(line);
                           return Answer(line);
                         },
                         said_.Listener()};
  LoopThread loop_{event_loop_};
};

TEST_F(ControlSocketTest, IsItsOwnersOnly) {
  struct stat status {};
  ASSERT_EQ(stat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(ControlSocketTest, AnswersEachLineInItsOrder) {
  const LineClient client(path_);
  client.Send("one\ntwo\n");
  for (const char* line : {"<one>\n", "ok\n", "<two>\n", "ok\n"}) EXPECT_EQ(client.ReadLine(), line);
}

TEST_F(ControlSocketTest, ALineMayComeInPieces) {
  const LineClient client(path_);
  client.Send("o");
  client.Send("ne");
  client.Send("\n");
  EXPECT_EQ(client.ReadLine(), "<one>\n");
}

TEST_F(ControlSocketTest, TheLastLineMayLackItsEnd) {
  const LineClient client(path_);
  client.Send("one\ntwo");
  client.EndSending();
  EXPECT_EQ(client.ReadAll(), "<one>\nok\n<two>\nok\n");
}

TEST_F(ControlSocketTest, ALineOfTheLongestLengthIsExecuted) {
  const LineClient client(path_);
  client.Send(std::string(kLongest, 'a') + "\n");
  EXPECT_EQ(client.ReadLine(), "<" + std::string(kLongest, 'a') + ">\n");
}

TEST_F(ControlSocketTest, ALongerLineEndsItsClientWithAnError) {
  for (const char* end : {"", "\n", "\nnext\n"}) {
    const LineClient client(path_);
    client.Send(std::string(kLongest + 1, 'a') + end);
    EXPECT_EQ(client.ReadAll(), "error: the line is too long\n");
  }
  EXPECT_TRUE(executed_.All().empty());
}

TEST_F(ControlSocketTest, BinaryGarbageReachesTheCommandsAsItIs) {
  const LineClient client(path_);
  const std::string garbage("\0\xff\r\x1b", 4);
  client.Send(garbage + "\n");
  EXPECT_EQ(client.ReadLine(), "<" + garbage + ">\n");
}

TEST_F(ControlSocketTest, AClientThatNeverReadsStallsNobodyElse) {
  answer_size_ = 10000;
  const LineClient mute(path_);
  while (mute.SendSome("command\ncommand\ncommand\n") > 0) {
  }
  const LineClient other(path_);
  other.Send("other\n");
  EXPECT_THAT(other.ReadLine(), StartsWith("<other>"));
}

TEST_F(ControlSocketTest, AClientThatReadsLateHasEveryAnswer) {
  answer_size_ = 100'000;
  const LineClient client(path_);
  for (int i = 0; i < 50; ++i) client.Send("command\n");
  client.EndSending();
  const std::string all = client.ReadAll();
  EXPECT_EQ(all.size(), 50 * Answer("command").size());
}

TEST_F(ControlSocketTest, AClientThatGoesWithoutReadingLeavesNoDescriptor) {
  answer_size_ = 1'000'000;
  const std::ptrdiff_t before = OpenDescriptors();
  for (int i = 0; i < 20; ++i) {
    const LineClient client(path_);
    client.Send("command\n");
    ASSERT_TRUE(executed_.Await("command", i + 1));
  }
  for (int tries = 0; tries < 1000 && OpenDescriptors() > before; ++tries) usleep(10000);
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(ControlSocketTest, ManyClientsAreServedAtOnce) {
  std::list<LineClient> clients;
  for (int i = 0; i < 64; ++i) clients.emplace_back(path_);
  for (const LineClient& client : clients) client.Send("hello\n");
  for (const LineClient& client : clients) EXPECT_EQ(client.ReadLine(), "<hello>\n");
}

TEST_F(ControlSocketTest, ClientsPastTheLimitAreClosed) {
  std::list<LineClient> clients;
  for (int i = 0; i < 65; ++i) clients.emplace_back(path_);
  EXPECT_TRUE(said_.Await("control client refused: there are 64"));
  EXPECT_EQ(clients.back().ReadAll(), "");
}

TEST_F(ControlSocketTest, TheClientsProgramAsksAndKnowsOkFromError) {
  EXPECT_EQ(AskSimulator(path_, "one"), "<one>\nok\n");
  EXPECT_TRUE(IsOk("ok\n"));
  EXPECT_TRUE(IsOk("line\nok\n"));
  EXPECT_FALSE(IsOk("error: not ok\n"));
  EXPECT_FALSE(IsOk("line not ok\n"));
}

TEST_F(ControlSocketTest, TheClientsProgramIsToldOfALineThatIsTooLong) {
  EXPECT_EQ(AskSimulator(path_, std::string(1'000'000, 'a')), "error: the line is too long\n");
}

TEST(ControlClient, WithoutASimulatorItIsToldWhichSocket) {
  const auto ask = [] { AskSimulator("/nonexistent/control", "help"); };
  EXPECT_THAT(ask, testing::ThrowsMessage<std::runtime_error>(HasSubstr("/nonexistent/control")));
}

TEST(ControlSocket, ReplacesTheSocketOfAKilledSimulatorAndGoesWithItsObject) {
  const ScratchDirectory directory;
  const auto path = directory.path() / "control";
  EventLoop loop;
  SaidLines said;
  const auto execute = [](const std::string&) { return std::string("ok\n"); };
  const int stale = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_un address = SocketAddress(path);
  ASSERT_EQ(bind(stale, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  close(stale);
  { const ControlSocket control(loop, path, 100, execute, said.Listener()); }
  EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace qlx::sim
