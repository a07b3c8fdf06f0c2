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
  std::int64_t width = 0;
  std::int64_t height = 0;  ///< negative when the rows come from the top
  int bits_per_pixel = 0;
  std::uint32_t compression = 0;
  std::size_t table_at = 0;  ///< in `bytes`: where the palette begins, or the bit masks in its place
  std::vector<std::uint8_t> bytes;

  /// Bytes of a row of pixels that is not compressed, with its padding.
  std::uint64_t RowBytes() const {
    return (static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(bits_per_pixel) + 31) / 32 * 4;
  }
};

/// Leaves `file` at the first pixel. Empty for a header, depth or palette of a kind that does not exist and
/// for pixels that would begin inside the headers or behind the end of the file. Sizes are the decoder's to
/// judge.
std::optional<BmpHeader> ReadBmpHeader(PictureBytes& file);

}  // namespace qlx::platform
