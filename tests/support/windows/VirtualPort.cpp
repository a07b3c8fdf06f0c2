#include "tests/support/windows/VirtualPort.h"

#include <cstdint>
#include <cstdlib>
#include <stdexcept>

namespace qlx::testing {
namespace {

SOCKET Connect() {
  static const int failure = [] {
    WSADATA granted{};
    return WSAStartup(MAKEWORD(2, 2), &granted);
  }();
  const char* const port = std::getenv("QLX_VIRTUAL_PORTS");
  if (failure != 0 || port == nullptr) throw std::runtime_error("run this under virtual_ports.py");
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(std::atoi(port)));
  const SOCKET connection = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  if (connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("virtual_ports.py does not answer");
  }
  return connection;
}

}  // namespace

VirtualPort::VirtualPort(const PortDirectory&, const std::string& name) : connection_(Connect()) {
  Ask("plug " + name + "\n");
}

VirtualPort::~VirtualPort() {
  if (plugged_) Ask("unplug\n");
  closesocket(connection_);
}

void VirtualPort::Unplug() {
  if (!plugged_) return;
  Ask("unplug\n");
  plugged_ = false;
}

void VirtualPort::Send(std::string_view bytes) const {
  while (!bytes.empty()) {
    const auto sent = SendSome(bytes);
    if (!sent) throw std::runtime_error("the device is unplugged");
    bytes.remove_prefix(*sent);
  }
}

std::optional<std::size_t> VirtualPort::SendSome(std::string_view bytes) const {
  if (!plugged_) return std::nullopt;
  return Ask("send " + std::to_string(bytes.size()) + "\n" + std::string(bytes));
}

std::string VirtualPort::Receive(std::size_t size, int limit_ms) const {
  return Read(Ask("receive " + std::to_string(size) + " " + std::to_string(limit_ms) + "\n"));
}

std::size_t VirtualPort::Ask(const std::string& request) const {
  for (std::string_view rest = request; !rest.empty();) {
    const int sent = send(connection_, rest.data(), static_cast<int>(rest.size()), 0);
    if (sent <= 0) throw std::runtime_error("virtual_ports.py has gone");
    rest.remove_prefix(static_cast<std::size_t>(sent));
  }
  std::string number;
  for (std::string digit = Read(1); digit != "\n"; digit = Read(1)) number += digit;
  return std::stoul(number);
}

std::string VirtualPort::Read(std::size_t size) const {
  std::string bytes(size, '\0');
  for (std::size_t at = 0; at < size;) {
    const int count = recv(connection_, bytes.data() + at, static_cast<int>(size - at), 0);
    if (count <= 0) throw std::runtime_error("virtual_ports.py has gone");
    at += static_cast<std::size_t>(count);
  }
  return bytes;
}

}  // namespace qlx::testing
