#include "pages/logo_image.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace qlx {

using platform::RgbImage;

namespace {

constexpr int kChannels = 3;
constexpr int kColumns = 32;  ///< the printer takes pictures whose width is a multiple of this
constexpr int kBand = 8;      ///< and their height of this
constexpr int kPaletteBits = 8;
constexpr int kGrey = 200;

constexpr int RoundedUp(int number, int multiple) {
  return (number + multiple - 1) / multiple * multiple;
}

/// a * b / c with an intermediate result that always fits.
constexpr int Proportion(int a, int b, int c) {
  return static_cast<int>(std::int64_t{a} * b / c);
}

/// The source pixels under one pixel of the result along one axis, in units of 1 / `to` of a source pixel: a
/// pixel of the result is `from` units wide, one of the source `to`.
class Cover {
 public:
  Cover(int index, int from, int to) : start_(std::int64_t{index} * from), end_(start_ + from), to_(to) {}

  int first() const { return static_cast<int>(start_ / to_); }
  int last() const { return static_cast<int>((end_ - 1) / to_); }
  std::uint32_t Weight(int source) const {
    const std::int64_t from = std::max(start_, std::int64_t{source} * to_);
    const std::int64_t until = std::min(end_, (std::int64_t{source} + 1) * to_);
    return static_cast<std::uint32_t>(until - from);
  }

 private:
  std::int64_t start_;
  std::int64_t end_;
  std::int64_t to_;
};

/// Adds a row of samples, times `weight`. The weights of one column add up to the source's height at most, so
/// 32 bits hold the sums.
void AddRow(std::span<const std::uint8_t> row, std::uint32_t weight, std::span<std::uint32_t> sums) {
  for (std::size_t i = 0; i < row.size(); ++i) sums[i] += weight * row[i];
}

/// One pixel from the column sums: `area` is what all weights add up to.
void Average(std::span<const std::uint32_t> sums, const Cover& cover, std::uint64_t area, std::uint8_t* out) {
  std::uint64_t total[kChannels] = {};
  for (int x = cover.first(); x <= cover.last(); ++x) {
    const std::uint64_t weight = cover.Weight(x);
    const std::uint32_t* pixel = &sums[static_cast<std::size_t>(x) * kChannels];
    for (int c = 0; c < kChannels; ++c) total[c] += weight * pixel[c];
  }
  for (int c = 0; c < kChannels; ++c) out[c] = static_cast<std::uint8_t>((total[c] + area / 2) / area);
}

struct Rgb {
  int red;
  int green;
  int blue;
};

void Spread(std::uint8_t* pixel, const Rgb& error, int share) {
  const auto add = [share](std::uint8_t& sample, int part) {
    sample = static_cast<std::uint8_t>(std::clamp(sample + ((part * share) >> 4), 0, 255));
  };
  add(pixel[0], error.red);
  add(pixel[1], error.green);
  add(pixel[2], error.blue);
}

/// Sets the pixel to the nearer of the two tones and tells what it loses by that. By squared distances grey
/// is not farther exactly when the three channels add up to 300: the squares themselves cancel out.
Rgb Quantise(std::uint8_t* pixel) {
  const int tone = pixel[0] + pixel[1] + pixel[2] >= kGrey * kChannels / 2 ? kGrey : 0;
  const Rgb error = {pixel[0] - tone, pixel[1] - tone, pixel[2] - tone};
  std::fill_n(pixel, kChannels, static_cast<std::uint8_t>(tone));
  return error;
}

void DitherRow(std::uint8_t* row, std::uint8_t* below, int width) {
  for (int x = 0; x < width; ++x) {
    const std::ptrdiff_t at = std::ptrdiff_t{x} * kChannels;
    const Rgb error = Quantise(row + at);
    const bool right = x + 1 < width;
    if (right) Spread(row + at + kChannels, error, 7);
    if (below == nullptr) continue;
    if (x > 1) Spread(below + at - kChannels, error, 3);
    Spread(below + at, error, 5);
    if (right) Spread(below + at + kChannels, error, 1);
  }
}

}  // namespace

RgbImage NewImage(PixelSize size) {
  RgbImage image;
  image.width = size.width;
  image.height = size.height;
  image.stride = static_cast<std::size_t>(size.width) * kChannels;
  image.pixels = {new std::uint8_t[image.stride * static_cast<std::size_t>(size.height)],
                  [](const std::uint8_t* pixels) { delete[] pixels; }};
  return image;
}

PixelSize FitSize(PixelSize size, Station station) {
  const PixelSize limit = RowOf(station).limit;
  PixelSize fitted;
  if (size.height < size.width) {
    fitted.width = std::min(size.width, limit.width);
    fitted.height = Proportion(size.height, fitted.width, size.width);
  } else {
    fitted.height = std::min(size.height, limit.height);
    fitted.width = Proportion(size.width, fitted.height, size.height);
  }
  return {std::min(RoundedUp(fitted.width, kColumns), limit.width),
          std::min(RoundedUp(fitted.height, kBand), limit.height)};
}

RgbImage Scaled(const RgbImage& source, PixelSize size) {
  RgbImage result = NewImage(size);
  const auto area = static_cast<std::uint64_t>(source.width) * static_cast<std::uint64_t>(source.height);
  std::vector<std::uint32_t> sums(static_cast<std::size_t>(source.width) * kChannels);
  for (int y = 0; y < size.height; ++y) {
    std::ranges::fill(sums, 0);
    const Cover rows(y, source.height, size.height);
    for (int from = rows.first(); from <= rows.last(); ++from) {
      AddRow(source.Row(from), rows.Weight(from), sums);
    }
    std::uint8_t* out = result.Row(y).data();
    for (int x = 0; x < size.width; ++x, out += kChannels) {
      Average(sums, Cover(x, source.width, size.width), area, out);
    }
  }
  return result;
}

RgbImage Cropped(const RgbImage& source, PixelSize limit) {
  RgbImage result = NewImage({std::min(source.width, limit.width), std::min(source.height, limit.height)});
  for (int y = 0; y < result.height; ++y) {
    const auto row = result.Row(y);
    std::ranges::copy(source.Row(y).first(row.size()), row.begin());
  }
  return result;
}

void Dither(RgbImage& image) {
  for (int y = 0; y < image.height; ++y) {
    std::uint8_t* below = y + 1 < image.height ? image.Row(y + 1).data() : nullptr;
    DitherRow(image.Row(y).data(), below, image.width);
  }
}

std::optional<RgbImage> PrinterImage(const platform::DecodedImage& picture, Station station) {
  const PixelSize size = FitSize({picture.image.width, picture.image.height}, station);
  if (size.width == 0 || size.height == 0) return std::nullopt;
  RgbImage image = Scaled(picture.image, size);
  if (picture.bits_per_pixel > kPaletteBits) Dither(image);
  return image;
}

}  // namespace qlx
