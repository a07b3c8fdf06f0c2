#include "log/LogDelivery.h"

#include <new>
#include <utility>

namespace qlx {

LogDelivery::LogDelivery(std::uint32_t port, MakeSocket make_socket)
    : port_(port), make_socket_(std::move(make_socket)) {}

void LogDelivery::Deliver(std::string_view record) {
  if (!client_) client_ = ConnectedClient();
  if (!client_) return;
  if (client_->Send(record) != static_cast<std::int32_t>(record.size())) client_.reset();
}

std::unique_ptr<LogSocketClient> LogDelivery::ConnectedClient() const {
  auto socket = make_socket_();
  if (!socket) return nullptr;
  std::unique_ptr<LogSocketClient> client(new (std::nothrow) LogSocketClient(port_, std::move(socket)));
  if (!client || client->Connect() != LogSocketClient::kConnected) return nullptr;
  return client;
}

}  // namespace qlx
