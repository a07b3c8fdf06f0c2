// Picture files in, bitmap files out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace qlx::platform {

/// Most pixels that a picture may claim to have; one that claims more is not decoded.
inline constexpr std::uint64_t kMostPixels = 50'000'000;

/// Pixels in rows from the top, each row from the left, three bytes a pixel: red, green, blue. Movable only.
struct RgbImage {
  int width = 0;           ///< pixels, at least 1
  int height = 0;          ///< pixels, at least 1
  std::size_t stride = 0;  ///< bytes from the start of a row to the next one's, at least 3 * width
  std::unique_ptr<std::uint8_t, std::function<void(std::uint8_t*)>> pixels;

  std::span<std::uint8_t> Row(int y) const {
    return {pixels.get() + static_cast<std::size_t>(y) * stride, static_cast<std::size_t>(width) * 3};
  }
};

/// A picture as its file holds it. `bits_per_pixel` is the file's own figure: 8 and less for palette images
/// and grey JPEGs, whatever the decoder makes of them.
struct DecodedImage {
  RgbImage image;
  int bits_per_pixel = 0;
};

/// Reads a BMP, JPEG (ISO/IEC 10918-1) or GIF (89a) file, told by its content and not by its name; of several
/// frames the first. Empty when it is not a regular file, of another format, damaged, cut short, or larger
/// than kMostPixels, which is known before memory for its pixels is asked for. Any thread.
std::optional<DecodedImage> DecodeImageFile(const std::wstring& path);

/// The bytes of an uncompressed bitmap file of 24 bits a pixel. Any thread.
std::vector<std::uint8_t> EncodeBmp(const RgbImage& image);

}  // namespace qlx::platform
