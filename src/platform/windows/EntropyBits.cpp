#include "platform/windows/EntropyBits.h"

namespace qlx::platform {
namespace {

constexpr std::uint8_t kMarker = 0xFF;
constexpr std::uint8_t kStuffing = 0x00;
constexpr std::uint8_t kFirstRestart = 0xD0;

}  // namespace

unsigned EntropyBits::Take(int count) {
  while (count_ < count && !broken_) {
    Refill();
    if (marker_) Break();
  }
  if (broken_) return 0;
  count_ -= count;
  return bits_ >> count_ & ((1U << count) - 1);
}

void EntropyBits::Restart(int number) {
  count_ = 0;
  Refill();
  if (marker_ != kFirstRestart + number % 8) return Break();
  copy_.insert(copy_.end(), {kMarker, *marker_});
  marker_.reset();
}

std::uint8_t EntropyBits::Byte() {
  std::uint8_t byte = 0;
  if (!file_.Read({&byte, 1})) Break();
  return byte;
}

void EntropyBits::Refill() {
  const std::uint8_t byte = Byte();
  if (byte == kMarker) {
    std::uint8_t next = Byte();
    while (next == kMarker && !broken_) next = Byte();
    if (broken_) return;
    if (next != kStuffing) {
      marker_ = next;
      return;
    }
    copy_.insert(copy_.end(), {kMarker, kStuffing});
  } else {
    copy_.push_back(byte);
  }
  bits_ = bits_ << 8 | byte;
  count_ += 8;
}

}  // namespace qlx::platform
