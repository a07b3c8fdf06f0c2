// The first frame of a GIF file, as a file of its own.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/PictureBytes.h"

namespace qlx::platform {

/// Sizes and places in pixels; the frame may lie outside the screen.
struct GifFrame {
  int screen_width = 0;
  int screen_height = 0;
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  int bits_per_pixel = 0;  ///< of its palette
  /// A GIF file of a screen of the frame's size, the frame, and nothing else. Its palette has a colour for
  /// every index: white for the transparent one, black for those that the file has no colour for.
  std::vector<std::uint8_t> file{};
};

/// Empty when there is no frame, when it or its screen has a size that is not allowed, and when its codes
/// break off, do not exist or are out of all proportion to its pixels.
std::optional<GifFrame> ReadGifFrame(PictureBytes& bytes);

}  // namespace qlx::platform
