// What a record costs: LogMessage against a bare select + send of ready records, against spdlog writing the
// same fields over the same transport, and filtered out.
#include <cstdarg>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "bench/discarding_reader.h"
#include "bench/rounds.h"
#include "bench/spdlog_peer.h"
#include "log/LogMessage.h"
#include "log/ProcessLog.h"

namespace {

using qlx::bench::BareSocket;
using qlx::bench::Fail;
using qlx::bench::reader_port;
using qlx::bench::Rounds;
using qlx::bench::Seconds;
using qlx::bench::Spdlog;
using qlx::bench::Use;

constexpr int kRecords = 60000;
constexpr int kThreads = 4;
constexpr int kFilteredCalls = 20'000'000;

/// Takes every record at no cost, so that only the formatting is left to measure.
class VoidSocket final : public qlx::platform::TcpSocket {
 public:
  bool Start() override { return true; }
  std::optional<std::uint32_t> Resolve(const std::string&) override { return INADDR_LOOPBACK; }
  bool Create() override { return true; }
  bool BindToAny() override { return true; }
  bool Connect(std::uint32_t, std::uint16_t, std::chrono::milliseconds) override { return true; }
  qlx::platform::WaitEnd WaitWritable(std::chrono::microseconds) override {
    return qlx::platform::WaitEnd::kReady;
  }
  bool Send(std::string_view record) override {
    Use(record.data());
    return true;
  }
  void Close() override {}
  void Stop() override {}
};

std::unique_ptr<qlx::platform::TcpSocket> MakeVoidSocket() {
  return std::make_unique<VoidSocket>();
}

std::vector<qlx::ConfigNode> KeysOfBench(const std::wstring&) {
  return {{L"TCP_Port", std::to_wstring(reader_port), {}, {}}, {L"Log_Level", L"5", {}, {}}};
}

class Quiet final : public qlx::platform::DebugOutput {
 public:
  void Write(std::wstring_view) override {}
};

template <auto kMakeSocket>
std::unique_ptr<qlx::Logger> CreateLogger() {
  static Quiet quiet;
  return std::make_unique<qlx::Logger>(
      qlx::LoggerSystem{qlx::platform::ThisProgram(), quiet, &KeysOfBench, kMakeSocket});
}

qlx::ProcessLog log_to_reader(&CreateLogger<&qlx::platform::MakeTcpSocket>);
qlx::ProcessLog log_to_void(&CreateLogger<&MakeVoidSocket>);

/// LogMessage on a log of our choice.
void Log(qlx::ProcessLog& log, const char* format, ...) QLX_PRINTF(2, 3);

void Log(qlx::ProcessLog& log, const char* format, ...) {
  if (!log.Passes(qlx::MZP_PRINTER, qlx::LEVEL_INFO)) return;
  std::va_list arguments;
  va_start(arguments, format);
  log.Message(qlx::MZP_PRINTER, qlx::LEVEL_INFO, format, arguments);
  va_end(arguments);
}

/// The message that every contender logs.
void LogOne(qlx::ProcessLog& log, unsigned i) {
  Log(log, "PRINTERDialog::SendData - %u bytes to %s", i, "COM17");
}
void LogOne(spdlog::logger& log, unsigned i) {
  log.info("PRINTERDialog::SendData - {} bytes to {}", i, "COM17");
}

/// LogMessage's own transport.
template <auto kMakeSocket>
class OurSocket {
 public:
  OurSocket() : client_(reader_port, kMakeSocket()) {
    if (client_.Connect() != qlx::LogSocketClient::kConnected) Fail("connect");
  }
  void Send(std::string_view record) { client_.Send(record); }

 private:
  qlx::LogSocketClient client_;
};

const std::string& ReadyRecord() {
  static const std::string record =
      "16/11/2026 02:27:47.123\tP[0a1c]\tT[1f20]\tMZP_PRINTER    \tLEVEL_INFO    \t"
      "PRINTERDialog::SendData - 12345 bytes to COM17\r\n";
  return record;
}

/// Records per second of `threads` threads that share kRecords calls of `one`.
double Rate(int threads, const std::function<void(unsigned)>& one) {
  const auto share = [&] {
    for (unsigned i = 0; i < kRecords / static_cast<unsigned>(threads); ++i) one(10000 + i);
  };
  const double seconds = Seconds([&] {
    std::vector<std::thread> team;
    for (int helper = 1; helper < threads; ++helper) team.emplace_back(share);
    share();
    for (std::thread& member : team) member.join();
  });
  return kRecords / seconds;
}

bool Records(int threads, double bound) {
  const BareSocket bare;
  std::mutex lock;
  const auto over_bare = Spdlog<BareSocket>();
  const auto over_ours = Spdlog<OurSocket<&qlx::platform::MakeTcpSocket>>();
  Rounds rounds("records, " + std::to_string(threads) + " thread(s)", "records/s");
  rounds.Add("bare select + send, one lock", [&] {
    return Rate(threads, [&](unsigned) {
      const std::lock_guard only_one(lock);
      bare.Send(ReadyRecord());
    });
  });
  rounds.Add("LogMessage", [&] { return Rate(threads, [](unsigned i) { LogOne(log_to_reader, i); }); });
  rounds.Add("spdlog, select + send",
             [&] { return Rate(threads, [&](unsigned i) { LogOne(*over_bare, i); }); });
  rounds.Add("spdlog, LogMessage's socket",
             [&] { return Rate(threads, [&](unsigned i) { LogOne(*over_ours, i); }); });
  rounds.Run(9);
  const bool floor = rounds.AtLeast(bound, "LogMessage", "bare select + send, one lock");
  return (threads > 1 || rounds.AtLeast(1.2, "LogMessage", "spdlog, select + send")) && floor;
}

bool Formatting() {
  const auto spdlog_logger = Spdlog<OurSocket<&MakeVoidSocket>>();
  Rounds rounds("records over a socket that costs nothing, 1 thread", "records/s");
  rounds.Add("spdlog", [&] { return Rate(1, [&](unsigned i) { LogOne(*spdlog_logger, i); }); });
  rounds.Add("LogMessage", [&] { return Rate(1, [](unsigned i) { LogOne(log_to_void, i); }); });
  rounds.Run(15);
  return rounds.AtLeast(1.2, "LogMessage", "spdlog");
}

bool FilteredOut() {
  const auto logger = Spdlog<OurSocket<&qlx::platform::MakeTcpSocket>>();
  logger->set_level(spdlog::level::off);
  qlx::LogMessage(qlx::MZP_PRINTER, qlx::LEVEL_INFO, "no configuration beside this program: off");
  Rounds rounds("a call that the level filters out", "ns");
  rounds.Add("spdlog", [&] {
    return 1e9 / kFilteredCalls * Seconds([&] {
             for (int i = 0; i < kFilteredCalls; ++i) logger->info("{} bytes to {}", i, "COM17");
           });
  });
  rounds.Add("LogMessage", [&] {
    return 1e9 / kFilteredCalls * Seconds([&] {
             for (int i = 0; i < kFilteredCalls; ++i)
               qlx::LogMessage(qlx::MZP_PRINTER, qlx::LEVEL_INFO, "%d bytes to %s", i, "COM17");
           });
  });
  rounds.Run(9);
  return rounds.AtMost(1.0, "LogMessage", "spdlog");
}

}  // namespace

int main() {
  reader_port = qlx::bench::StartReader();
  qlx::bench::PinTo(0);
  const bool one = Records(1, 0.80);
  const bool four = Records(kThreads, 0.85);
  const bool formatting = Formatting();
  const bool filtered = FilteredOut();
  log_to_reader.End();
  return one && four && formatting && filtered ? 0 : 1;
}
