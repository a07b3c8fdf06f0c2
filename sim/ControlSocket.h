// The socket through which scripts and people give the simulator its commands.
#pragma once

#include <filesystem>
#include <functional>
#include <list>
#include <string>

#include "platform/linux/Descriptor.h"
#include "sim/EventLoop.h"
#include "sim/Outbox.h"
#include "sim/Say.h"

namespace qlx::sim {

/// A UNIX stream socket for its owner only, there as long as the object. A client that does not read its
/// answers has no further command executed. Belongs to its loop's thread.
class ControlSocket {
 public:
  using Execute = std::function<std::string(const std::string& line)>;

  /// `execute` gives the answer to one line of at most `longest_line` bytes; a longer one ends its client
  /// with an error. Throws std::system_error when the socket cannot be had.
  ControlSocket(EventLoop& loop, const std::filesystem::path& path, std::size_t longest_line, Execute execute,
                Say say);
  ControlSocket(const ControlSocket&) = delete;
  ControlSocket& operator=(const ControlSocket&) = delete;
  ~ControlSocket();

 private:
  struct Client {
    Client(ControlSocket& owner, int accepted);

    platform::Descriptor socket;
    std::string received;  ///< commands that wait and the beginning of one
    bool ended = false;    ///< nothing more is to be read
    std::list<Client>::iterator self;
    Outbox outbox;
    EventSource readable;
  };

  void Accept();
  void Receive(Client& client);
  void Advance(Client& client);
  bool ExecuteNext(Client& client);

  EventLoop& loop_;
  std::filesystem::path path_;
  std::size_t longest_line_;
  Execute execute_;
  Say say_;
  platform::Descriptor listener_;
  EventSource acceptable_;
  std::list<Client> clients_;
};

}  // namespace qlx::sim
