#include <algorithm>
#include <bit>
#include <cstdlib>

#include "platform/picture_decoders.h"
#include "platform/windows/bmp_unpacked.h"

namespace qlx::platform {
namespace {

constexpr std::size_t kMasksAt = 14 + 40;       // in every header that has them, and behind the shorter ones
constexpr std::size_t kEndWithAlpha = 14 + 56;  // of the shortest header that has a mask for it

std::uint32_t Number(std::span<const std::uint8_t> bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | bytes[i];
  return value;
}

/// One channel of a pixel, scaled to 8 bits by repeating its own from the top.
std::uint8_t Sample(std::uint32_t pixel, std::uint32_t mask) {
  if (mask == 0) return 0;
  const auto bits = static_cast<int>(std::bit_width(mask >> std::countr_zero(mask)));
  const std::uint32_t value = (pixel & mask) >> std::countr_zero(mask);
  if (bits >= 8) return static_cast<std::uint8_t>(value >> (bits - 8));
  std::uint32_t scaled = 0;
  for (int at = 8 - bits; at > -bits; at -= bits) scaled |= at >= 0 ? value << at : value >> -at;
  return static_cast<std::uint8_t>(scaled);
}

struct Masks {
  std::array<std::uint32_t, 3> colours = {0x7C00, 0x03E0, 0x001F};  // without any of its own
  std::uint32_t alpha = 0;
};

Masks MasksOf(const BmpHeader& header) {
  Masks masks;
  if (header.compression == 0) return masks;
  const auto table = std::span(header.bytes).subspan(kMasksAt);
  for (std::size_t i = 0; i < masks.colours.size(); ++i) masks.colours[i] = Number(table.subspan(4 * i, 4));
  if (header.table_at >= kEndWithAlpha) masks.alpha = Number(table.subspan(12, 4));
  return masks;
}

}  // namespace

std::optional<RgbImage> ReadMaskedBmp(const BmpHeader& header, PictureBytes& file) {
  const Masks masks = MasksOf(header);
  auto image = NewImage(header.width, std::abs(header.height));
  if (!image) return std::nullopt;
  const auto pixel_bytes = static_cast<std::size_t>(header.bits_per_pixel) / 8;
  std::vector<std::uint8_t> row(header.RowBytes());
  for (int i = 0; i < image->height; ++i) {
    if (!file.Read(row)) return std::nullopt;
    std::uint8_t* out = image->Row(header.height < 0 ? i : image->height - 1 - i).data();
    for (std::size_t x = 0; x < static_cast<std::size_t>(image->width); ++x) {
      const std::uint32_t pixel = Number(std::span(row).subspan(x * pixel_bytes, pixel_bytes));
      const unsigned alpha = masks.alpha == 0 ? 255 : Sample(pixel, masks.alpha);
      for (const std::uint32_t mask : masks.colours) *out++ = OnWhite(Sample(pixel, mask), alpha);
    }
  }
  return image;
}

}  // namespace qlx::platform
