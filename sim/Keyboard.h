// The prompt at which a person at the terminal gives commands.
#pragma once

#include <functional>
#include <string>

#include "sim/EventLoop.h"

namespace qlx::sim {

/// Reads lines from the terminal `input` until it ends, and shows a prompt and the answers on standard
/// output.
class Keyboard {
 public:
  using Execute = std::function<std::string(const std::string& line)>;

  Keyboard(EventLoop& loop, int input, Execute execute);
  Keyboard(const Keyboard&) = delete;
  Keyboard& operator=(const Keyboard&) = delete;

 private:
  void Read();

  int input_;
  Execute execute_;
  std::string received_;
  EventSource readable_;
};

}  // namespace qlx::sim
