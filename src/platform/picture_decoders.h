// One decoder for each format, each on the system's library for that format, which may be as lenient as it
// likes: a decoder takes whole and undamaged pictures only.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/PictureBytes.h"
#include "platform/image_file.h"

namespace qlx::platform {

/// As DecodeImageFile, for the bytes of a file.
std::optional<DecodedImage> DecodePicture(PictureBytes& bytes);

std::optional<DecodedImage> DecodeBmp(PictureBytes& bytes);
std::optional<DecodedImage> DecodeJpeg(PictureBytes& bytes);
std::optional<DecodedImage> DecodeGif(PictureBytes& bytes);

/// Whether a picture may have this size: at least one pixel and at most kMostPixels.
constexpr bool IsSizeAllowed(std::int64_t width, std::int64_t height) {
  constexpr auto kMost = static_cast<std::int64_t>(kMostPixels);
  return width > 0 && height > 0 && width <= kMost && height <= kMost / width;
}

/// A sample of opacity `alpha` on white; both 0 to 255.
constexpr std::uint8_t OnWhite(unsigned sample, unsigned alpha) {
  return static_cast<std::uint8_t>((sample * alpha + 255 * (255 - alpha) + 127) / 255);
}

/// Rows without a gap, their bytes not set; empty when the size is not allowed or there is no memory.
std::optional<RgbImage> NewImage(std::int64_t width, std::int64_t height);

}  // namespace qlx::platform
