#include "platform/windows/HuffmanCode.h"

#include <algorithm>

namespace qlx::platform {

std::optional<HuffmanCode> HuffmanCode::Make(std::span<const std::uint8_t, kLengths> counts,
                                             std::span<const std::uint8_t> values) {
  unsigned room = 1;  // codewords of a length that do not begin with a shorter one
  for (const unsigned count : counts) {
    room *= 2;
    if (count > room) return std::nullopt;
    room -= count;
  }
  HuffmanCode code;
  std::ranges::copy(counts, code.counts_.begin());
  code.values_.assign(values.begin(), values.end());
  return code;
}

std::uint8_t HuffmanCode::Decode(EntropyBits& bits) const {
  unsigned word = 0;
  unsigned first = 0;  // codeword of the length so far
  std::size_t value = 0;
  for (const unsigned count : counts_) {
    word = word << 1 | bits.Take(1);
    if (word < first + count) return values_[value + word - first];
    first = (first + count) << 1;
    value += count;
  }
  bits.Break();
  return 0;
}

}  // namespace qlx::platform
