#include "sim/ControlSocket.h"

#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "sim/socket_address.h"

namespace qlx::sim {
namespace {

using platform::Descriptor;

constexpr std::size_t kMostClients = 64;
constexpr std::size_t kLongestAnswer = std::size_t{1} << 20;

ssize_t SendQuietly(int socket, const void* bytes, std::size_t count) {
  return send(socket, bytes, count, MSG_NOSIGNAL);
}

/// The socket is only its owner's from its first moment.
Descriptor Listen(const std::filesystem::path& path) {
  const sockaddr_un address = SocketAddress(path);
  std::filesystem::remove(path);
  Descriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  const mode_t mask = umask(0177);
  const bool bound =
      bind(listener.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  const int error = errno;
  umask(mask);
  if (!bound) throw std::system_error(error, std::generic_category(), path.native());
  if (listen(listener.number(), SOMAXCONN) != 0)
    throw std::system_error(errno, std::generic_category(), path.native());
  return listener;
}

}  // namespace

ControlSocket::Client::Client(ControlSocket& owner, int accepted)
    : socket(accepted),
      outbox(owner.loop_, accepted, SendQuietly, kLongestAnswer, [this, &owner] { owner.Advance(*this); }) {}

ControlSocket::ControlSocket(EventLoop& loop, const std::filesystem::path& path, std::size_t longest_line,
                             Execute execute, Say say)
    : loop_(loop),
      path_(path),
      longest_line_(longest_line),
      execute_(std::move(execute)),
      say_(std::move(say)),
      listener_(Listen(path)),
      acceptable_(loop.OnReadable(listener_.number(), [this] { Accept(); })) {}

ControlSocket::~ControlSocket() {
  std::error_code gone;
  std::filesystem::remove(path_, gone);
}

void ControlSocket::Accept() {
  const int socket = accept4(listener_.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
  if (socket < 0) return;
  if (clients_.size() == kMostClients) {
    close(socket);
    say_("control client refused: there are " + std::to_string(kMostClients));
    return;
  }
  Client& client = clients_.emplace_back(*this, socket);
  client.self = std::prev(clients_.end());
  Advance(client);
}

void ControlSocket::Receive(Client& client) {
  std::array<char, 4096> bytes;
  const ssize_t count = recv(client.socket.number(), bytes.data(), bytes.size(), 0);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (count > 0) {
    client.received.append(bytes.data(), static_cast<std::size_t>(count));
  } else {
    client.ended = true;
    if (!client.received.empty()) client.received += '\n';  // the last line may lack its end
  }
  Advance(client);
}

/// Executes what has been received as far as the client reads its answers.
void ControlSocket::Advance(Client& client) {
  client.readable = {};
  while (client.outbox.empty() && ExecuteNext(client)) {
  }
  if (!client.outbox.empty()) return;
  if (client.ended) {
    clients_.erase(client.self);
  } else {
    client.readable = loop_.OnReadable(client.socket.number(), [this, &client] { Receive(client); });
  }
}

/// False when no whole line waits.
bool ControlSocket::ExecuteNext(Client& client) {
  const std::size_t end = client.received.find('\n');
  if (end == std::string::npos && client.received.size() <= longest_line_) return false;
  if (end == std::string::npos || end > longest_line_) {
    client.received.clear();
    client.ended = true;
    client.outbox.Send("error: the line is too long\n");
    return false;
  }
  const std::string line = client.received.substr(0, end);
  client.received.erase(0, end + 1);
  client.outbox.Send(execute_(line));
  return true;
}

}  // namespace qlx::sim
