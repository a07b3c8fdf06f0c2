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

/// What one pixel of the result covers along one axis: source pixels `first` to `last`, all of them by `to`
/// but for the two ends. The unit is 1 / `to` of a source pixel; all weights add up to `from`.
struct Cover {
  std::size_t first;
  std::size_t last;
  std::uint64_t first_weight;
  std::uint64_t last_weight;
};

/// The covers of all pixels when `from` source pixels become `to`.
std::vector<Cover> Covers(int from, int to) {
  const auto length = static_cast<std::uint64_t>(from);
  const auto unit = static_cast<std::uint64_t>(to);
  std::vector<Cover> covers;
  covers.reserve(static_cast<std::size_t>(to));
  for (std::uint64_t start = 0; start < length * unit; start += length) {
    const std::uint64_t first = start / unit;
    const std::uint64_t last = (start + length - 1) / unit;
    // Within a single source pixel the whole weight is the first one's.
    covers.push_back({first, last, std::min(length, (first + 1) * unit - start),
                      first == last ? 0 : start + length - last * unit});
  }
  return covers;
}

/// Adds `weight` times what each cover holds of `row`. The sums stay below 256 * width * height of the
/// source.
void AddRow(const std::uint8_t* row, std::uint64_t weight, std::uint64_t unit, std::span<const Cover> covers,
            std::uint64_t* sums) {
  for (const Cover& cover : covers) {
    const std::uint8_t* const first = row + cover.first * kChannels;
    const std::uint8_t* const last = row + cover.last * kChannels;
    std::uint64_t whole[kChannels] = {};
    for (const std::uint8_t* pixel = first + kChannels; pixel < last; pixel += kChannels) {
      for (int c = 0; c < kChannels; ++c) whole[c] += pixel[c];
    }
    for (int c = 0; c < kChannels; ++c) {
      *sums++ += weight * (cover.first_weight * first[c] + unit * whole[c] + cover.last_weight * last[c]);
    }
  }
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
  const std::vector<Cover> columns = Covers(source.width, size.width);
  const auto column_unit = static_cast<std::uint64_t>(size.width);
  const auto row_unit = static_cast<std::uint64_t>(size.height);
  std::vector<std::uint64_t> sums(columns.size() * kChannels);
  int y = 0;
  for (const Cover& rows : Covers(source.height, size.height)) {
    std::ranges::fill(sums, 0);
    for (std::size_t from = rows.first; from <= rows.last; ++from) {
      const std::uint64_t weight = from == rows.first  ? rows.first_weight
                                   : from == rows.last ? rows.last_weight
                                                       : row_unit;
      AddRow(source.Row(static_cast<int>(from)).data(), weight, column_unit, columns, sums.data());
    }
    std::ranges::transform(sums, result.Row(y++).begin(), [area](std::uint64_t sum) {
      return static_cast<std::uint8_t>((sum + area / 2) / area);
    });
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
