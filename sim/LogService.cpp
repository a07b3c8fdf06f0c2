#include "sim/LogService.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "sim/printable.h"

namespace qlx::sim {
namespace {

constexpr std::size_t kMostClients = 64;
/// A client that never ends a record is shown in pieces of this size.
constexpr std::size_t kLongestLine = 4096;
/// How often a client is read at the end of the service, so that one that never stops cannot keep it up.
constexpr int kLastReads = 64;

std::string ErrorText() {
  return std::strerror(errno);
}

}  // namespace

LogService::LogService(EventLoop& loop, std::function<LogSettings()> read_settings,
                       std::filesystem::path log_directory, Say say)
    : loop_(loop),
      read_settings_(std::move(read_settings)),
      log_directory_(std::move(log_directory)),
      say_(std::move(say)) {}

LogService::~LogService() {
  Stop();
}

bool LogService::Start() {
  const LogSettings settings = read_settings_();
  file_.emplace(log_directory_ / settings.file_name, settings.file_bytes);
  if (!file_->Append("")) {
    say_("log file " + file_->path().native() + " cannot be written");
    return false;
  }
  if (!Listen(settings.port)) {
    say_("log port " + std::to_string(settings.port) + " cannot be had: " + ErrorText());
    return false;
  }
  say_("log service listens on port " + std::to_string(port()) + ", writes " + file_->path().native());
  return true;
}

bool LogService::Listen(std::uint16_t port) {
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  const int on = 1;
  setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      listen(listener_, SOMAXCONN) != 0) {
    const int error = errno;
    close(std::exchange(listener_, -1));
    errno = error;
    return false;
  }
  acceptable_ = loop_.OnReadable(listener_, [this] { Accept(); });
  return true;
}

void LogService::Stop() {
  if (listener_ < 0) return;
  while (AcceptOne()) {  // none is waited for any more: the loop may be over
  }
  while (!clients_.empty()) {
    Client& client = clients_.front();
    for (int reads = 0; reads < kLastReads && ReceiveOnce(client) == Received::kBytes; ++reads) {
    }
    Close(clients_.begin());
  }
  acceptable_ = {};
  close(std::exchange(listener_, -1));
  file_.reset();
  say_("log service closed its port");
}

std::uint16_t LogService::port() const {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

void LogService::Accept() {
  while (AcceptOne()) {
    const auto client = std::prev(clients_.end());
    client->readable = loop_.OnReadable(client->socket, [this, client] { Receive(client); });
  }
}

bool LogService::AcceptOne() {
  while (true) {
    const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (socket < 0) return false;
    if (clients_.size() < kMostClients) {
      clients_.push_back(Client{socket, ++last_number_, {}, {}});
      say_("log client " + std::to_string(last_number_) + " connected");
      return true;
    }
    close(socket);
    say_("log client refused: there are " + std::to_string(kMostClients));
  }
}

void LogService::Receive(std::list<Client>::iterator client) {
  if (ReceiveOnce(*client) == Received::kEnd) Close(client);
}

LogService::Received LogService::ReceiveOnce(Client& client) {
  std::array<char, 65536> bytes;
  const ssize_t count = recv(client.socket, bytes.data(), bytes.size(), 0);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return Received::kNothingYet;
  if (count <= 0) return Received::kEnd;
  Take(client, {bytes.data(), static_cast<std::size_t>(count)});
  return Received::kBytes;
}

void LogService::Take(Client& client, std::string_view bytes) {
  if (!file_->Append(bytes)) say_("log file " + file_->path().native() + " cannot be written");
  client.record += bytes;
  std::string_view rest = client.record;
  while (true) {
    const std::size_t end = rest.find("\r\n");
    const std::size_t length = std::min(end, rest.size());
    if (end == std::string_view::npos && length < kLongestLine) break;
    const std::size_t shown = std::min(length, kLongestLine);
    say_("log record from " + std::to_string(client.number) + ": " + Printable(rest.substr(0, shown)));
    rest.remove_prefix(shown == end ? shown + 2 : shown);
  }
  client.record.assign(rest);
}

void LogService::Close(std::list<Client>::iterator client) {
  if (!client->record.empty()) {
    say_("log record from " + std::to_string(client->number) +
         " without its end: " + Printable(client->record));
  }
  say_("log client " + std::to_string(client->number) + " closed");
  client->readable = {};
  close(client->socket);
  clients_.erase(client);
}

}  // namespace qlx::sim
