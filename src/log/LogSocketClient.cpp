#include "log/LogSocketClient.h"

#include <chrono>
#include <utility>

namespace qlx {
namespace {

using namespace std::chrono_literals;

constexpr auto kConnectLimit = 3s;
constexpr auto kWritableLimit = 3000000us;

}  // namespace

LogSocketClient::LogSocketClient(std::uint32_t port, std::unique_ptr<platform::TcpSocket> socket)
    : port_(static_cast<std::uint16_t>(port)), socket_(std::move(socket)), started_(socket_->Start()) {}

LogSocketClient::~LogSocketClient() {
  if (!started_) return;
  socket_->Close();
  socket_->Stop();
}

std::int32_t LogSocketClient::Connect() {
  if (!started_) return kNotStarted;
  Abandon(kNoSocket);
  const auto address = socket_->Resolve("localhost");
  if (!address) return kNotResolved;
  if (!socket_->Create()) return kNotCreated;
  if (!socket_->BindToAny()) return Abandon(kNotBound);
  if (!socket_->Connect(*address, port_, kConnectLimit)) return Abandon(kNotConnected);
  connected_ = true;
  return kConnected;
}

std::int32_t LogSocketClient::Send(std::string_view bytes) {
  if (!started_) return kNotStarted;
  if (!connected_) return kNoSocket;
  const platform::WaitEnd wait = socket_->WaitWritable(kWritableLimit);
  if (wait == platform::WaitEnd::kTimedOut) return kNotWritable;
  if (wait == platform::WaitEnd::kFailed) return Abandon(kWaitFailed);
  if (!socket_->Send(bytes)) return Abandon(kNotSent);
  // A short send counts as a success: wanted, the service finds the next record by its line end.
  return static_cast<std::int32_t>(bytes.size());
}

std::int32_t LogSocketClient::Abandon(std::int32_t failure) {
  socket_->Close();
  connected_ = false;
  return failure;
}

}  // namespace qlx
