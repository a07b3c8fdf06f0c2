// The TCP client that carries records to the logging service on this machine.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/tcp_socket.h"

namespace qlx {

/// Created on demand, thrown away at the first failure. Used by one thread at a time.
class LogSocketClient {
 public:
  static constexpr std::int32_t kConnected = 0;
  static constexpr std::int32_t kNotStarted = -1;
  static constexpr std::int32_t kNotResolved = -2;
  static constexpr std::int32_t kNotCreated = -3;
  static constexpr std::int32_t kNotBound = -4;
  static constexpr std::int32_t kNotConnected = -5;
  static constexpr std::int32_t kNoSocket = -6;
  static constexpr std::int32_t kNotSent = -7;
  static constexpr std::int32_t kNotWritable = -11;
  static constexpr std::int32_t kWaitFailed = -12;

  /// Starts the socket library. Of `port` the low 16 bits count.
  LogSocketClient(std::uint32_t port, std::unique_ptr<platform::TcpSocket> socket);
  LogSocketClient(const LogSocketClient&) = delete;
  LogSocketClient& operator=(const LogSocketClient&) = delete;
  /// Closes the connection and stops the socket library.
  ~LogSocketClient();

  /// kConnected or what failed; blocks for at most three seconds beside the name's look-up.
  std::int32_t Connect();

  /// The number of `bytes`, or what failed; blocks for at most three seconds until the service takes more.
  /// After kNotWritable the connection stays open, after kWaitFailed and kNotSent it is closed.
  std::int32_t Send(std::string_view bytes);

 private:
  std::int32_t Abandon(std::int32_t failure);

  std::uint16_t port_;
  std::unique_ptr<platform::TcpSocket> socket_;
  bool started_;
  bool connected_ = false;
};

}  // namespace qlx
