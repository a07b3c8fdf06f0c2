// The coded pixels of a JPEG file, bit by bit.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/PictureBytes.h"

namespace qlx::platform {

/// Bits up to the next marker (ISO/IEC 10918-1, F.2.2.5). Once broken, by their end or by who reads them,
/// they stay so and are all 0.
class EntropyBits {
 public:
  /// Appends every byte that it goes over to `copy`.
  EntropyBits(PictureBytes& file, std::vector<std::uint8_t>& copy) : file_(file), copy_(copy) {}

  /// The next `count` bits, at most 16, the first one on top.
  unsigned Take(int count);
  /// Goes over a restart marker, which has to come next and to be the `number`th, counted modulo 8 from 0.
  void Restart(int number);

  void Break() { broken_ = true; }
  bool broken() const { return broken_; }
  /// The marker that was met in the place of bits, if one was.
  std::optional<std::uint8_t> marker() const { return marker_; }

 private:
  void Refill();
  std::uint8_t Byte();

  PictureBytes& file_;
  std::vector<std::uint8_t>& copy_;
  std::uint32_t bits_ = 0;
  int count_ = 0;
  bool broken_ = false;
  std::optional<std::uint8_t> marker_;
};

}  // namespace qlx::platform
