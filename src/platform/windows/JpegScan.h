// A scan of a JPEG file, followed only as far as to know that it is whole.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/windows/EntropyBits.h"
#include "platform/windows/HuffmanCode.h"

namespace qlx::platform {

/// Blocks are 8 x 8 samples.
struct JpegComponent {
  std::uint8_t id = 0;
  std::uint8_t quantisation = 0;  ///< number of its table
  int across = 1;                 ///< blocks of a unit, side by side
  int down = 1;                   ///< and one above the other
  int blocks_wide = 0;            ///< blocks that hold samples of the picture
  int blocks_high = 0;
  bool seen = false;  ///< in a scan
  /// For each block of all units in rows, a bit for each coefficient that is known not to be 0; in
  /// progressive frames only.
  std::vector<std::uint64_t> nonzero{};
};

struct JpegFrame {
  bool progressive = false;
  int width = 0;
  int height = 0;
  int units_wide = 0;
  int units_high = 0;
  std::vector<JpegComponent> components{};
};

struct JpegScan {
  struct Part {
    JpegComponent* component;
    const HuffmanCode* dc;  ///< null where the scan takes none
    const HuffmanCode* ac;
  };
  std::vector<Part> parts{};
  int first = 0;          ///< coefficient, in zigzag order
  int last = 63;          ///< coefficient
  bool refines = false;   ///< coefficients that a scan before began
  int restart_every = 0;  ///< units; 0 for never
};

/// Goes over all coefficients of the scan; marks `bits` as broken when one is missing or cannot be.
void FollowScan(const JpegFrame& frame, const JpegScan& scan, EntropyBits& bits);

}  // namespace qlx::platform
