#include "sim/CashDrawers.h"

#include <cstdio>

namespace qlx::sim {
namespace {

constexpr std::string_view kOpen = "\x07\x1B\x07";
constexpr char kStatus = 0x06;

struct StatusBits {
  unsigned char present;
  unsigned char open;
};

constexpr std::array<StatusBits, 2> kBits = {{{0x10, 0x40}, {0x08, 0x20}}};

std::string StatusLine(unsigned char status) {
  std::array<char, 16> text;
  snprintf(text.data(), text.size(), "status 0x%02X", status);
  return text.data();
}

}  // namespace

Reaction CashDrawers::Receive(std::string_view bytes) {
  Reaction reaction;
  for (const char byte : bytes) {
    command_ += byte;
    if (command_ == kOpen) {
      command_.clear();
      reaction.lines.push_back(name_ + ": " + Open());
    } else if (!kOpen.starts_with(command_)) {
      command_ = byte == kOpen.front() ? std::string(1, byte) : std::string();
      if (byte != kStatus) continue;
      reaction.answer += static_cast<char>(Status());
      reaction.lines.push_back(name_ + ": " + StatusLine(Status()));
    }
  }
  return reaction;
}

unsigned char CashDrawers::Status() const {
  unsigned status = 0;
  for (std::size_t i = 0; i < drawers_.size(); ++i) {
    if (!drawers_[i].present) continue;
    status |= kBits[i].present;
    if (drawers_[i].open) status |= kBits[i].open;
  }
  return static_cast<unsigned char>(status);
}

std::string CashDrawers::Open() {
  std::string opened;
  for (std::size_t i = 0; i < drawers_.size(); ++i) {
    if (!drawers_[i].present) continue;
    drawers_[i].open = true;
    opened += (opened.empty() ? "drawer " : " and drawer ") + std::to_string(i + 1);
  }
  return opened.empty() ? "no drawer to open" : opened + " opened";
}

}  // namespace qlx::sim
