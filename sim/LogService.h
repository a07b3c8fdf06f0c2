// The suite's logging service: takes records over TCP and writes them to the log file.
#pragma once

#include <array>
#include <filesystem>
#include <list>
#include <optional>
#include <string>

#include "sim/EventLoop.h"
#include "sim/LogFile.h"
#include "sim/Say.h"

namespace qlx::sim {

/// Listens on 127.0.0.1 while it is started. Belongs to its loop's thread.
class LogService {
 public:
  LogService(EventLoop& loop, std::filesystem::path configuration, std::filesystem::path log_directory,
             Say say);
  LogService(const LogService&) = delete;
  LogService& operator=(const LogService&) = delete;
  ~LogService();

  /// Reads the configuration anew and listens. False, with a line that says why, when the port or the log
  /// file cannot be had.
  bool Start();
  /// Takes what its clients have already sent, then closes them and the port.
  void Stop();

 private:
  struct Client {
    int socket;
    int number;
    std::string record;  ///< received, its end not yet
    EventSource readable;
  };

  bool Listen(std::uint16_t port);
  void Accept();
  void Receive(std::list<Client>::iterator client);
  bool ReceiveOnce(Client& client);
  void Take(Client& client, std::string_view bytes);
  void Close(std::list<Client>::iterator client);

  EventLoop& loop_;
  std::filesystem::path configuration_;
  std::filesystem::path log_directory_;
  Say say_;
  int listener_ = -1;
  int last_number_ = 0;
  std::optional<LogFile> file_;
  EventSource acceptable_;
  std::list<Client> clients_;
};

}  // namespace qlx::sim
