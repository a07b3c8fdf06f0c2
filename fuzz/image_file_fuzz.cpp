// Any bytes as a picture: the decoders take or refuse them, and what they take keeps its word.
#include <algorithm>
#include <cstring>
#include <optional>

#include "fuzz/require.h"
#include "platform/image_file.h"
#include "platform/picture_decoders.h"

namespace {

using qlx::Require;
using qlx::platform::DecodedImage;
using qlx::platform::DecodePicture;
using qlx::platform::PictureBytes;
using qlx::platform::RgbImage;

/// Writing a larger picture out again finds nothing more and takes its time.
constexpr int kLargestWritten = 64;

std::optional<DecodedImage> Decoded(std::span<const std::uint8_t> bytes) {
  PictureBytes source([bytes](std::span<std::uint8_t> block) mutable {
    const std::size_t count = std::min(block.size(), bytes.size());
    std::ranges::copy(bytes.first(count), block.begin());
    bytes = bytes.subspan(count);
    return count;
  });
  return DecodePicture(source);
}

void RequireSame(const RgbImage& one, const RgbImage& other) {
  Require(one.width == other.width && one.height == other.height);
  for (int y = 0; y < one.height; ++y) Require(std::ranges::equal(one.Row(y), other.Row(y)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto decoded = Decoded({data, size});
  if (!decoded) return 0;
  const RgbImage& image = decoded->image;
  Require(qlx::platform::IsSizeAllowed(image.width, image.height));
  Require(image.stride >= static_cast<std::size_t>(image.width) * 3);
  Require(decoded->bits_per_pixel >= 1 && decoded->bits_per_pixel <= 32);
  if (image.width > kLargestWritten || image.height > kLargestWritten) return 0;
  const auto written = Decoded(EncodeBmp(image));
  Require(written.has_value());
  RequireSame(image, written->image);
  return 0;
}
