// GDI+ as the decoder of picture files.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "platform/image_file.h"

namespace qlx::platform {

/// The opaque picture in `file`, a whole picture file of `width` by `height` pixels, at most kMostPixels.
/// Empty when GDI+ refuses it or sees another size. GDI+ takes damage and lies for granted and shows what it
/// has: only give it what has been checked to its last byte.
std::optional<RgbImage> DecodeByGdiPlus(std::span<const std::uint8_t> file, int width, int height);

}  // namespace qlx::platform
