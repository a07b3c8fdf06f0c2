// The codes of a GIF frame (GIF 89a, appendix F), followed only as far as to count pixels.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace qlx::platform {

/// Takes the data of a frame in pieces and tells whether they make up its pixels.
class GifCodes {
 public:
  /// `code_size`: bits of a pixel, 1 to 8.
  GifCodes(int code_size, std::uint64_t pixels);

  /// False when a code does not exist or the data end themselves before the last pixel.
  bool Follow(std::span<const std::uint8_t> data);
  bool complete() const { return pixels_left_ == 0; }

 private:
  static constexpr int kLongestCode = 12;

  bool FollowCode(unsigned code);
  void Clear();

  const int code_size_;
  const unsigned clear_;
  std::uint64_t pixels_left_;
  std::uint32_t bits_ = 0;
  int bit_count_ = 0;
  int code_bits_ = 0;
  unsigned next_ = 0;              ///< code that the next entry will get
  std::uint16_t last_length_ = 0;  ///< pixels of the code before; 0 after a clear code
  std::array<std::uint16_t, 1U << kLongestCode> lengths_{};
};

}  // namespace qlx::platform
