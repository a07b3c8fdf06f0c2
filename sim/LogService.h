// The suite's logging service: takes records over TCP and writes them to the log file.
#pragma once

#include <filesystem>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <string_view>

#include "sim/EventLoop.h"
#include "sim/LogFile.h"
#include "sim/LogSettings.h"
#include "sim/Say.h"

namespace qlx::sim {

/// Listens on 127.0.0.1 while it is started. Belongs to its loop's thread.
class LogService {
 public:
  /// `read_settings` is called by every start.
  LogService(EventLoop& loop, std::function<LogSettings()> read_settings, std::filesystem::path log_directory,
             Say say);
  LogService(const LogService&) = delete;
  LogService& operator=(const LogService&) = delete;
  ~LogService();

  /// Reads the settings anew and listens; port 0 means any free one. False, with a line that says why, when
  /// the port or the log file cannot be had.
  bool Start();
  /// Takes what its clients have already sent, then closes them and the port.
  void Stop();
  /// Where it listens; 0 while it is stopped.
  std::uint16_t port() const;

 private:
  enum class Received { kBytes, kNothingYet, kEnd };

  struct Client {
    int socket;
    int number;
    std::string record;  ///< received, its end not yet
    EventSource readable;
  };

  bool Listen(std::uint16_t port);
  /// Takes in every client that waits.
  void Accept();
  /// Takes in one, as the last of the list; false when none waits.
  bool AcceptOne();
  void Receive(std::list<Client>::iterator client);
  Received ReceiveOnce(Client& client);
  void Take(Client& client, std::string_view bytes);
  void Close(std::list<Client>::iterator client);

  EventLoop& loop_;
  std::function<LogSettings()> read_settings_;
  std::filesystem::path log_directory_;
  Say say_;
  int listener_ = -1;
  int last_number_ = 0;
  std::optional<LogFile> file_;
  EventSource acceptable_;
  std::list<Client> clients_;
};

}  // namespace qlx::sim
