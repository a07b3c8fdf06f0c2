// The line display: two lines of 20 characters.
#pragma once

#include <array>
#include <string>

#include "sim/Device.h"

namespace qlx::sim {

/// Knows 1F 10 04, which clears it; a line feed, which goes to the lower line and from there moves both up; a
/// carriage return; and printable characters, of which those past the end of a line are lost.
class LineDisplay : public Device {
 public:
  static constexpr std::size_t kColumns = 20;

  LineDisplay() { Clear(); }

  /// Says both lines.
  Reaction Receive(std::string_view bytes) override;

 private:
  void Take(char byte);
  void Show(char byte);
  void Clear();
  void FeedLine();

  std::array<std::string, 2> lines_;
  std::size_t line_ = 0;
  std::size_t column_ = 0;
  std::string escape_;  ///< the beginning of a command
};

}  // namespace qlx::sim
