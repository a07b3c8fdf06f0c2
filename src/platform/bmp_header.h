// What has to be known of a bitmap file before its decoder may see it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/PictureBytes.h"

namespace qlx::platform {

/// `bytes` is the file up to its pixels without the gap in front of them, and says so in its offset:
/// gdk-pixbuf 2.42 takes the gap behind a palette or behind bit masks for pixels.
struct BmpHeader {
  int bits_per_pixel = 0;
  std::vector<std::uint8_t> bytes;
};

/// Leaves `file` at the first pixel. Empty for a header, depth or palette of a kind that does not exist and
/// for pixels that would begin inside the headers or behind the end of the file. Sizes are the decoder's to
/// judge.
std::optional<BmpHeader> ReadBmpHeader(PictureBytes& file);

}  // namespace qlx::platform
