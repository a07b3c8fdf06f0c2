#include "sim/control_client.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include <sys/socket.h>
#include <sys/time.h>

#include "platform/linux/Descriptor.h"
#include "sim/socket_address.h"

namespace qlx::sim {
namespace {

constexpr timeval kAnswerLimit{10, 0};

std::string ReadAll(int socket) {
  std::string text;
  std::array<char, 4096> bytes;
  ssize_t count = 0;
  while ((count = recv(socket, bytes.data(), bytes.size(), 0)) > 0) {
    text.append(bytes.data(), static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace

std::string AskSimulator(const std::filesystem::path& path, const std::string& command) {
  const sockaddr_un address = SocketAddress(path);
  const platform::Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error(path.native() + ": " + std::strerror(errno));
  }
  setsockopt(socket.number(), SOL_SOCKET, SO_RCVTIMEO, &kAnswerLimit, sizeof kAnswerLimit);
  const std::string line = command + "\n";
  for (std::string_view rest = line; !rest.empty();) {
    const ssize_t count = send(socket.number(), rest.data(), rest.size(), MSG_NOSIGNAL);
    if (count < 0) break;  // a refusing simulator has closed; its answer tells why
    rest.remove_prefix(static_cast<std::size_t>(count));
  }
  shutdown(socket.number(), SHUT_WR);
  std::string answer = ReadAll(socket.number());
  if (answer.empty()) throw std::runtime_error(path.native() + ": no answer");
  return answer;
}

bool IsOk(const std::string& answer) {
  return answer == "ok\n" || answer.ends_with("\nok\n");
}

}  // namespace qlx::sim
