// The demo's session against bare loops on the same kind of tty: a burst, the round trip of one byte, and how
// long a close takes in mid-flood. The floor of the round trip waits for the gap that ends a block, as every
// reader of blocks must.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include "bench/rounds.h"
#include "demo/SerialSession.h"
#include "tests/support/Wakes.h"
#include "tests/support/linux/VirtualPort.h"

namespace {

using qlx::bench::Seconds;
using qlx::testing::PortDirectory;
using qlx::testing::VirtualPort;

constexpr std::size_t kBurst = 1 << 20;
constexpr int kRoundTrips = 300;
constexpr int kGapMs = 3;
constexpr int kCloses = 20;

std::string BurstBytes() {
  std::string bytes(kBurst, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 2654435761U >> 13);
  return bytes;
}

/// A raw tty that nothing but poll, read and write touches.
class BareTty {
 public:
  explicit BareTty(const PortDirectory& directory)
      : tty_(open((directory.path() / "MZP_COM5").c_str(), O_RDWR | O_NOCTTY)) {
    termios line{};
    tcgetattr(tty_, &line);
    cfmakeraw(&line);
    tcsetattr(tty_, TCSANOW, &line);
  }
  BareTty(const BareTty&) = delete;
  BareTty& operator=(const BareTty&) = delete;
  ~BareTty() { close(tty_); }

  bool Wait(int limit_ms) const {
    pollfd polled = {tty_, POLLIN, 0};
    return poll(&polled, 1, limit_ms) > 0;
  }
  std::size_t Read(char* buffer) const {
    return static_cast<std::size_t>(std::max<ssize_t>(read(tty_, buffer, qlx::kReadBytes), 0));
  }
  void Write(char byte) const {
    if (write(tty_, &byte, 1) != 1) throw std::runtime_error("the tty takes nothing");
  }

 private:
  int tty_;
};

/// The session with somebody who takes what it brings.
class Session {
 public:
  Session() : session_(qlx::platform::OpenSerialPort, [this] { wakes_.Add(); }) {
    if (!session_.Open(L"COM5")) throw std::runtime_error("no port");
  }
  /// Appends what the next events bring.
  void Take(std::string& bytes) {
    wakes_.Await();
    for (const qlx::SessionEvent& event : session_.Take(1 << 20)) {
      if (const auto* block = std::get_if<std::vector<std::uint8_t>>(&event)) {
        bytes.append(block->begin(), block->end());
      }
    }
  }
  qlx::SerialSession& session() { return session_; }

 private:
  qlx::testing::Wakes wakes_;
  qlx::SerialSession session_;
};

/// Megabytes a second; `receive` appends what comes next.
template <typename Receive>
double BurstSpeed(const VirtualPort& device, const std::string& burst, Receive receive) {
  std::string received;
  received.reserve(burst.size());
  const double seconds = Seconds([&] {
    std::thread sends([&] { device.Send(burst); });
    while (received.size() < burst.size()) receive(received);
    sends.join();
  });
  if (received != burst) throw std::runtime_error("bytes were lost");
  return static_cast<double>(burst.size()) / 1e6 / seconds;
}

double BareBurst(const std::string& burst) {
  const PortDirectory directory;
  const VirtualPort device(directory);
  const BareTty tty(directory);
  char buffer[qlx::kReadBytes];
  return BurstSpeed(device, burst, [&](std::string& received) {
    tty.Wait(-1);
    received.append(buffer, tty.Read(buffer));
  });
}

double SessionBurst(const std::string& burst) {
  const PortDirectory directory;
  const VirtualPort device(directory);
  Session session;
  return BurstSpeed(device, burst, [&](std::string& received) { session.Take(received); });
}

struct RoundTrips {
  double median_us;
  double p99_us;
};

/// `answer` waits for one byte from the device and sends one back.
template <typename Answer>
RoundTrips Measure(const VirtualPort& device, Answer answer) {
  std::vector<double> times;
  times.reserve(kRoundTrips);
  std::thread answers([&] {
    for (int i = 0; i < kRoundTrips; ++i) answer();
  });
  for (int i = 0; i < kRoundTrips; ++i) {
    times.push_back(1e6 * Seconds([&] {
                      device.Send("x");
                      device.Receive(1);
                    }));
  }
  answers.join();
  std::ranges::sort(times);
  return {times[times.size() / 2], times[times.size() * 99 / 100]};
}

RoundTrips BareRoundTrips() {
  const PortDirectory directory;
  const VirtualPort device(directory);
  const BareTty tty(directory);
  char buffer[qlx::kReadBytes];
  return Measure(device, [&] {
    tty.Wait(-1);
    tty.Read(buffer);
    while (tty.Wait(kGapMs)) tty.Read(buffer);
    tty.Write('y');
  });
}

RoundTrips SessionRoundTrips() {
  const PortDirectory directory;
  const VirtualPort device(directory);
  Session session;
  constexpr std::string_view kChunks[] = {"y"};
  return Measure(device, [&] {
    std::string received;
    while (received.empty()) session.Take(received);
    session.session().Send({L"", kChunks});
  });
}

/// Milliseconds that a close takes while the device sends as fast as it can.
double CloseInMidFlood() {
  const PortDirectory directory;
  const VirtualPort device(directory);
  Session session;
  std::atomic<bool> over = false;
  std::thread floods([&] {
    while (!over) device.SendSome(std::string(4096, 'f'));
  });
  std::string received;
  while (received.size() < (1 << 18)) session.Take(received);
  const double seconds = Seconds([&] { session.session().Close(); });
  over = true;
  floods.join();
  return 1e3 * seconds;
}

}  // namespace

int main() {
  const std::string burst = BurstBytes();
  qlx::bench::Rounds bursts("burst of 1 MiB, all bytes compared", "MB/s");
  bursts.Add("bare poll + read", [&] { return BareBurst(burst); });
  bursts.Add("session", [&] { return SessionBurst(burst); });
  bursts.Run(9);
  bool holds = bursts.AtLeast(0.8, "session", "bare poll + read");

  qlx::bench::Rounds medians("round trip of one byte, the gap included: median", "us");
  medians.Add("bare poll + read + gap", [] { return BareRoundTrips().median_us; });
  medians.Add("session", [] { return SessionRoundTrips().median_us; });
  medians.Run();
  holds &= medians.AtMost(1.25, "session", "bare poll + read + gap");
  qlx::bench::Rounds p99("the same: 99th percentile", "us");
  p99.Add("bare poll + read + gap", [] { return BareRoundTrips().p99_us; });
  p99.Add("session", [] { return SessionRoundTrips().p99_us; });
  p99.Run();
  holds &= p99.AtMost(1.5, "session", "bare poll + read + gap");

  std::vector<double> closes;
  closes.reserve(kCloses);
  for (int i = 0; i < kCloses; ++i) closes.push_back(CloseInMidFlood());
  const double slowest = *std::ranges::max_element(closes);
  const bool quick = slowest <= 50;
  std::printf("close in mid-flood: median %.2f ms, slowest of %d %.2f ms\n  %s: at most 50 ms\n",
              qlx::bench::Median(closes), kCloses, slowest, quick ? "ok" : "MISSED");
  return holds && quick ? 0 : 1;
}
