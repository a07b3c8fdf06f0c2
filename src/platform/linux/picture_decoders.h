// One decoder for each format, each on the library that reads that format completely and stops at damage.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/image_file.h"
#include "platform/linux/PictureBytes.h"

namespace qlx::platform {

/// As DecodeImageFile, for the bytes of a file.
std::optional<DecodedImage> DecodePicture(PictureBytes& bytes);

/// On gdk-pixbuf, the only library here that reads every kind of BMP.
std::optional<DecodedImage> DecodeBmp(PictureBytes& bytes);

/// On libjpeg, which says what is missing; gdk-pixbuf keeps that to itself and shows grey for it.
std::optional<DecodedImage> DecodeJpeg(PictureBytes& bytes);

/// On giflib, which reads one frame in one pass; gdk-pixbuf begins it again with every block it is given.
std::optional<DecodedImage> DecodeGif(PictureBytes& bytes);

/// Whether a picture may have this size: at least one pixel and at most kMostPixels.
constexpr bool IsSizeAllowed(std::int64_t width, std::int64_t height) {
  constexpr auto kMost = static_cast<std::int64_t>(kMostPixels);
  return width > 0 && height > 0 && width <= kMost && height <= kMost / width;
}

/// Rows without a gap, their bytes not set; empty when the size is not allowed or there is no memory.
std::optional<RgbImage> NewImage(std::int64_t width, std::int64_t height);

}  // namespace qlx::platform
