// The command language of the control socket and of the keyboard: one line in, one answer out.
#pragma once

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "sim/DevicePorts.h"

namespace qlx::sim {

/// What a command does. Belongs to the thread of its ports.
class Commands {
 public:
  /// No command is longer.
  static constexpr std::size_t kLongestLine = 16384;

  explicit Commands(DevicePorts& ports) : ports_(ports) {}

  /// The lines of the answer, each with its end; the last one is "ok" or begins with "error: ".
  std::string Execute(const std::string& line);

 private:
  struct Arguments {
    std::vector<std::string> words;
    std::string text;  ///< all of it, as it was written
  };
  struct Row;
  static const Row kRows[];

  Refusal Help(const Arguments& arguments);
  Refusal Status(const Arguments& arguments);
  Refusal Swipe(const Arguments& arguments);
  Refusal Touch(const Arguments& arguments);
  Refusal Remove(const Arguments& arguments);
  Refusal Open(const Arguments& arguments);
  Refusal Close(const Arguments& arguments);
  Refusal Absent(const Arguments& arguments);
  Refusal Present(const Arguments& arguments);
  Refusal Unplug(const Arguments& arguments);
  Refusal Plug(const Arguments& arguments);
  Refusal Printer(const Arguments& arguments);
  Refusal Garbage(const Arguments& arguments);
  Refusal Flood(const Arguments& arguments);
  Refusal SendBytes(const Arguments& arguments);
  Refusal Trickle(const Arguments& arguments);

  Refusal PrinterType(const std::string& word);
  Refusal PrinterPages(const std::vector<std::string>& words);

  DevicePorts& ports_;
  std::string lines_;  ///< of the answer, before its last one
  bool touched_ = false;
  std::mt19937 random_{std::random_device()()};
};

}  // namespace qlx::sim
