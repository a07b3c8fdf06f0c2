#include <algorithm>

#include "platform/picture_decoders.h"
#include "platform/windows/bmp_unpacked.h"

namespace qlx::platform {
namespace {

/// Follows the runs from the bottom left, and over the edges without a trace.
class Runs {
 public:
  Runs(const BmpHeader& header, PictureBytes& file, const RgbImage& image)
      : file_(file), image_(image), palette_(BmpPalette(header)), bits_(header.bits_per_pixel) {}

  /// False when the file ends before its runs do.
  bool Follow() {
    std::array<std::uint8_t, 2> code{};
    while (y_ < image_.height) {
      if (!file_.Read(code)) return false;
      if (code[0] > 0) {
        for (int i = 0; i < code[0]; ++i) Put(Index(code[1], i));
      } else if (code[1] == 1) {
        return true;
      } else if (!(code[1] == 0 ? NextRow() : code[1] == 2 ? Move() : Copy(code[1]))) {
        return false;
      }
    }
    return true;
  }

 private:
  /// Of the pixels in a byte that number `i`, the first one on top.
  std::uint8_t Index(std::uint8_t byte, int i) const {
    if (bits_ == 8) return byte;
    return i % 2 == 0 ? byte >> 4 : byte & 0xF;
  }
  void Put(std::uint8_t index) {
    if (x_ < image_.width) {
      std::ranges::copy(palette_[index], image_.Row(image_.height - 1 - y_).data() + std::ptrdiff_t{x_} * 3);
    }
    ++x_;
  }
  bool NextRow() {
    x_ = 0;
    ++y_;
    return true;
  }
  bool Move() {
    std::array<std::uint8_t, 2> by{};
    if (!file_.Read(by)) return false;
    x_ += by[0];
    y_ += by[1];
    return true;
  }
  /// Pixels one by one, in whole pairs of bytes.
  bool Copy(int count) {
    const int bytes = (count * bits_ + 15) / 16 * 2;
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(bytes));
    if (!file_.Read(pixels)) return false;
    for (int i = 0; i < count; ++i) Put(Index(pixels[static_cast<std::size_t>(i * bits_ / 8)], i));
    return true;
  }

  PictureBytes& file_;
  const RgbImage& image_;
  const std::vector<BmpColour> palette_;
  const int bits_;
  std::int64_t x_ = 0;
  int y_ = 0;  // from the bottom
};

}  // namespace

std::vector<BmpColour> BmpPalette(const BmpHeader& header) {
  constexpr std::size_t kEndOfCoreHeader = 14 + 12;
  const std::size_t colour_bytes = header.table_at == kEndOfCoreHeader ? 3 : 4;
  std::vector<BmpColour> palette(std::size_t{1} << header.bits_per_pixel);
  const auto table = std::span(header.bytes).subspan(header.table_at);
  for (std::size_t i = 0; i < std::min(palette.size(), table.size() / colour_bytes); ++i) {
    const auto colour = table.subspan(i * colour_bytes, 3);
    palette[i] = {colour[2], colour[1], colour[0]};
  }
  return palette;
}

std::optional<RgbImage> ReadBmpRuns(const BmpHeader& header, PictureBytes& file) {
  auto image = NewImage(header.width, header.height);
  if (!image) return std::nullopt;
  std::fill_n(image->pixels.get(), image->stride * static_cast<std::size_t>(image->height), 0xFF);
  if (!Runs(header, file, *image).Follow()) return std::nullopt;
  return image;
}

}  // namespace qlx::platform
