// A TCP client's socket, reduced to what the log transport needs.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qlx::platform {

enum class WaitEnd { kReady, kTimedOut, kFailed };

/// One IPv4 stream socket and the system's socket library behind it. Used by one thread at a time. No
/// operation raises a signal or throws; failures carry no cause, since nobody is told one.
class TcpSocket {
 public:
  virtual ~TcpSocket() = default;

  /// Starts the socket library. True when it grants the version that the operations below need.
  virtual bool Start() = 0;

  /// The first IPv4 address of `host`, most significant byte first when written as a number.
  virtual std::optional<std::uint32_t> Resolve(const std::string& host) = 0;

  /// Opens the socket. No child process inherits it.
  virtual bool Create() = 0;

  /// Binds to any local address and a port of the system's choice.
  virtual bool BindToAny() = 0;

  /// Blocks until the peer has accepted or refused, at most `limit`.
  virtual bool Connect(std::uint32_t address, std::uint16_t port, std::chrono::milliseconds limit) = 0;

  /// Blocks until the socket takes more bytes, at most `limit`.
  virtual WaitEnd WaitWritable(std::chrono::microseconds limit) = 0;

  /// Hands over `bytes` in one call, after a wait that ended with kReady. True unless the call failed; the
  /// system may have taken only a part.
  virtual bool Send(std::string_view bytes) = 0;

  /// Closes the socket; nothing happens when none is open.
  virtual void Close() = 0;

  /// The counterpart of a successful Start.
  virtual void Stop() = 0;
};

/// The system's sockets. Null when out of memory.
std::unique_ptr<TcpSocket> MakeTcpSocket();

}  // namespace qlx::platform
