#include "sim/Keyboard.h"

#include <array>
#include <iostream>
#include <utility>

#include <unistd.h>

namespace qlx::sim {
namespace {

void Prompt() {
  std::cout << "qlxsim> " << std::flush;
}

}  // namespace

Keyboard::Keyboard(EventLoop& loop, int input, Execute execute)
    : input_(input), execute_(std::move(execute)), readable_(loop.OnReadable(input, [this] { Read(); })) {
  Prompt();
}

void Keyboard::Read() {
  std::array<char, 4096> bytes;
  const ssize_t count = read(input_, bytes.data(), bytes.size());
  if (count <= 0) {
    readable_ = {};
    return;
  }
  received_.append(bytes.data(), static_cast<std::size_t>(count));
  for (std::size_t end = 0; (end = received_.find('\n')) != std::string::npos;) {
    const std::string line = received_.substr(0, end);
    received_.erase(0, end + 1);
    if (!line.empty()) std::cout << execute_(line);
    Prompt();
  }
}

}  // namespace qlx::sim
