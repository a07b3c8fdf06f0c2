#include "platform/picture_decoders.h"

#include <algorithm>
#include <array>
#include <new>

namespace qlx::platform {
namespace {

struct Format {
  std::array<std::uint8_t, 3> signature;
  std::size_t signature_size;
  std::optional<DecodedImage> (*decode)(PictureBytes& bytes);
};

constexpr Format kFormats[] = {
    {{'B', 'M'}, 2, DecodeBmp},
    {{0xFF, 0xD8, 0xFF}, 3, DecodeJpeg},
    {{'G', 'I', 'F'}, 3, DecodeGif},
};

}  // namespace

std::optional<RgbImage> NewImage(std::int64_t width, std::int64_t height) {
  if (!IsSizeAllowed(width, height)) return std::nullopt;
  const auto stride = static_cast<std::size_t>(width) * 3;
  RgbImage image;
  image.width = static_cast<int>(width);
  image.height = static_cast<int>(height);
  image.stride = stride;
  image.pixels = {new (std::nothrow) std::uint8_t[stride * static_cast<std::size_t>(height)],
                  [](std::uint8_t* pixels) { delete[] pixels; }};
  if (!image.pixels) return std::nullopt;
  return image;
}

std::optional<DecodedImage> DecodePicture(PictureBytes& bytes) {
  const auto begin = bytes.Block();
  for (const Format& format : kFormats) {
    const auto signature = std::span(format.signature).first(format.signature_size);
    if (begin.size() >= signature.size() && std::ranges::equal(begin.first(signature.size()), signature)) {
      return format.decode(bytes);
    }
  }
  return std::nullopt;
}

}  // namespace qlx::platform
