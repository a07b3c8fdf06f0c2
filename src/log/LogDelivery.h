// One connection to the logging service at most, built when a record needs it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "log/LogSocketClient.h"

namespace qlx {

/// Null when there is no memory for a socket.
using MakeSocket = std::function<std::unique_ptr<platform::TcpSocket>()>;

/// No queue, no retry: a record that cannot be sent is lost and the next one starts with a new connection.
/// Used by one thread at a time.
class LogDelivery {
 public:
  LogDelivery(std::uint32_t port, MakeSocket make_socket);

  void Deliver(std::string_view record);

 private:
  /// Null when the service cannot be reached.
  std::unique_ptr<LogSocketClient> ConnectedClient() const;

  std::uint32_t port_;
  MakeSocket make_socket_;
  std::unique_ptr<LogSocketClient> client_;
};

}  // namespace qlx
