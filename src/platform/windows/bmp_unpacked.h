// Bitmap files that GDI+ shall not see: its versions make different things of them, or break on them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/bmp_header.h"
#include "platform/image_file.h"

namespace qlx::platform {

using BmpColour = std::array<std::uint8_t, 3>;  ///< red, green, blue

/// A colour for every index that the depth allows: black for those that the file has none for.
std::vector<BmpColour> BmpPalette(const BmpHeader& header);

/// A picture of 16 or 32 bits a pixel whose channels are told by masks, on white where it is transparent.
/// `file` stands at the first pixel.
std::optional<RgbImage> ReadMaskedBmp(const BmpHeader& header, PictureBytes& file);

/// A picture of 4 or 8 bits a pixel in runs, white where the runs leave it out. `file` stands at the first
/// run.
std::optional<RgbImage> ReadBmpRuns(const BmpHeader& header, PictureBytes& file);

}  // namespace qlx::platform
