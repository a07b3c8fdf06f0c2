// A private message bus: a dbus-daemon of our own, gone when this object goes.
#pragma once

#include <filesystem>
#include <string>

#include <sys/types.h>

namespace qlx::sim {

/// Keeps its socket `bus`, its settings `bus.conf` and its complaints `bus.errors` in the directory it is
/// given, and removes them.
class BusDaemon {
 public:
  /// Returns when the bus accepts connections. Throws std::runtime_error that names the cause when it does
  /// not start; the system limits the socket's path to 107 bytes.
  explicit BusDaemon(const std::filesystem::path& directory);
  BusDaemon(const BusDaemon&) = delete;
  BusDaemon& operator=(const BusDaemon&) = delete;
  ~BusDaemon();

  /// The value of DBUS_SYSTEM_BUS_ADDRESS for its clients.
  const std::string& address() const { return address_; }
  pid_t process() const { return process_; }
  /// Ends the daemon, as a crash would: every client loses its connection.
  void Kill();

 private:
  void Spawn();
  void RemoveFiles() const;

  std::filesystem::path socket_;
  std::filesystem::path settings_;
  std::filesystem::path errors_;
  std::string address_;
  pid_t process_ = -1;
};

}  // namespace qlx::sim
