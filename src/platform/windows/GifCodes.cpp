#include "platform/windows/GifCodes.h"

#include <algorithm>

namespace qlx::platform {

GifCodes::GifCodes(int code_size, std::uint64_t pixels)
    : code_size_(code_size), clear_(1U << code_size), pixels_left_(pixels) {
  std::fill_n(lengths_.begin(), clear_, std::uint16_t{1});
  Clear();
}

void GifCodes::Clear() {
  code_bits_ = code_size_ + 1;
  next_ = clear_ + 2;
  last_length_ = 0;
}

bool GifCodes::Follow(std::span<const std::uint8_t> data) {
  for (const std::uint8_t byte : data) {
    bits_ |= static_cast<std::uint32_t>(byte) << bit_count_;
    bit_count_ += 8;
    while (bit_count_ >= code_bits_) {
      if (complete()) return true;
      const unsigned code = bits_ & ((1U << code_bits_) - 1);
      bits_ >>= code_bits_;
      bit_count_ -= code_bits_;
      if (!FollowCode(code)) return false;
    }
  }
  return true;
}

bool GifCodes::FollowCode(unsigned code) {
  if (code == clear_) {
    Clear();
    return true;
  }
  if (code == clear_ + 1) return false;  // the end, though pixels are missing
  // The code that is about to get its entry: the one before and its own first pixel again.
  const bool about_to_be = code == next_ && last_length_ != 0 && next_ < lengths_.size();
  if (code >= next_ && !about_to_be) return false;
  if (last_length_ != 0 && next_ < lengths_.size()) {
    lengths_[next_++] = static_cast<std::uint16_t>(last_length_ + 1);
    if (next_ == 1U << code_bits_ && code_bits_ < kLongestCode) ++code_bits_;
  }
  last_length_ = lengths_[code];
  pixels_left_ -= std::min<std::uint64_t>(pixels_left_, last_length_);
  return true;
}

}  // namespace qlx::platform
