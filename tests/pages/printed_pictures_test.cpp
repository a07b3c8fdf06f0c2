// What is printed of a picture file is the same on every platform, whatever reads its pixels there.
#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include "pages/logo_image.h"
#include "tests/platform/PictureTest.h"

namespace qlx {
namespace {

using platform::RgbImage;
using test::Bmp;
using test::Gif;

constexpr std::uint32_t kWidth = 301;
constexpr std::uint32_t kHeight = 203;

/// Slopes of different steepness and direction in the channels, with a disc in them.
std::uint32_t SceneAt(std::uint32_t x, std::uint32_t y) {
  const std::uint32_t disc = (x - 90) * (x - 90) + (y - 100) * (y - 100) < 3600 ? 0x40 : 0;
  return ((x * 255 / kWidth) ^ disc) << 16 | (y * 255 / kHeight) << 8 | ((x * 3 + y * 2) & 0xFF);
}

/// Of the scene, one of 2 to the power of `bits` colours: the top bits of the channels in turn, red first.
std::uint32_t IndexAt(std::uint32_t x, std::uint32_t y, int bits) {
  std::uint32_t index = 0;
  for (int i = 0; i < bits; ++i) index = index << 1 | (SceneAt(x, y) >> (23 - i % 3 * 8 - i / 3) & 1);
  return index;
}

std::vector<std::uint32_t> Palette(int bits) {
  std::vector<std::uint32_t> colours(std::size_t{1} << bits);
  for (std::uint32_t i = 0; i < colours.size(); ++i) colours[i] = i * 0x9E3779B1U >> 8;
  return colours;
}

/// One row of indexes, as many as fit into each byte, the first one on top.
std::string Packed(std::uint32_t y, int bits) {
  std::string row((kWidth * static_cast<std::size_t>(bits) + 31) / 32 * 4, '\0');
  for (std::uint32_t x = 0; x < kWidth; ++x) {
    const std::size_t bit = x * static_cast<std::size_t>(bits);
    const auto shift = 8 - static_cast<std::size_t>(bits) - bit % 8;
    row[bit / 8] = static_cast<char>(row[bit / 8] | static_cast<char>(IndexAt(x, y, bits) << shift));
  }
  return row;
}

/// One row of whole bytes.
std::string Direct(std::uint32_t y, int bits) {
  std::string row;
  for (std::uint32_t x = 0; x < kWidth; ++x) row += test::LittleEndian(SceneAt(x, y), bits / 8);
  row.resize((row.size() + 3) / 4 * 4);
  return row;
}

/// One row as runs of as many equal indexes as there are, and its end.
std::string Runs(std::uint32_t y, int bits) {
  std::string row;
  for (std::uint32_t x = 0; x < kWidth;) {
    const std::uint32_t index = IndexAt(x, y, bits);
    std::uint32_t count = 1;
    while (count < 255 && x + count < kWidth && IndexAt(x + count, y, bits) == index) ++count;
    row += static_cast<char>(count);
    row += static_cast<char>(bits == 8 ? index : index * 0x11);
    x += count;
  }
  return row + std::string(2, '\0');
}

Bmp Scene(int bits, std::string (*row)(std::uint32_t y, int bits)) {
  Bmp bmp{.width = kWidth, .height = kHeight, .bits = static_cast<std::uint32_t>(bits), .pixels = {}};
  if (bits <= 8) {
    for (const std::uint32_t colour : Palette(bits)) bmp.table += test::LittleEndian(colour, 4);
  }
  for (std::uint32_t y = kHeight; y-- > 0;) bmp.pixels += row(y, bits);
  return bmp;
}

Bmp Masked(int bits, const std::string& masks) {
  Bmp bmp = Scene(bits, Direct);
  bmp.compression = 3;
  bmp.table = test::FromHex(masks);
  return bmp;
}

Bmp InRuns(int bits) {
  Bmp bmp = Scene(bits, Runs);
  bmp.compression = bits == 8 ? 1 : 2;
  return bmp;
}

Bmp Upright(Bmp bmp) {
  bmp.height = static_cast<std::uint32_t>(-static_cast<int>(kHeight));
  return bmp;
}

Gif SceneGif(bool interlaced, int transparent) {
  constexpr int kBits = 6;
  Gif gif{.width = kWidth + 10, .height = kHeight, .palette = Palette(kBits), .frames = {}};
  test::GifFrame frame{.left = 7, .top = 5, .rows = {}, .interlaced = interlaced, .transparent = transparent};
  for (std::uint32_t y = 0; y < kHeight; ++y) {
    auto& row = frame.rows.emplace_back();
    for (std::uint32_t x = 0; x < kWidth; ++x) row += static_cast<char>('0' + IndexAt(x, y, kBits));
  }
  gif.frames = {std::move(frame)};
  return gif;
}

/// Of all pixels in rows (G. Fowler, L. C. Noll and K.-P. Vo's FNV-1a).
std::uint32_t Checksum(const RgbImage& image) {
  std::uint32_t sum = 2166136261U;
  for (int y = 0; y < image.height; ++y) {
    for (const std::uint8_t sample : image.Row(y)) sum = (sum ^ sample) * 16777619U;
  }
  return sum;
}

struct Printed {
  PixelSize size;
  int bits_per_pixel = 0;  ///< of the file
  std::uint32_t decoded = 0;
  std::uint32_t receipt = 0;
  std::uint32_t insert = 0;

  bool operator==(const Printed&) const = default;
};

void PrintTo(const Printed& printed, std::ostream* out) {
  *out << std::hex << "{{" << std::dec << printed.size.width << ", " << printed.size.height << "}, "
       << printed.bits_per_pixel << std::hex << ", 0x" << printed.decoded << ", 0x" << printed.receipt
       << ", 0x" << printed.insert << "}";
}

class PrintedPicture : public platform::PictureTest {
 protected:
  Printed PrintedFrom(const std::string& bytes) const {
    const auto picture = Decoded(bytes);
    if (!picture) return {};
    const auto receipt = PrinterImage(*picture, Station::kCustomerReceipt);
    const auto insert = PrinterImage(*picture, Station::kDocumentInsert);
    return {{picture->image.width, picture->image.height},
            picture->bits_per_pixel,
            Checksum(picture->image),
            receipt ? Checksum(*receipt) : 0,
            insert ? Checksum(*insert) : 0};
  }

  static constexpr PixelSize kSize = {kWidth, kHeight};
};

TEST_F(PrintedPicture, OfATrueColourBitmapIsTheSameEverywhere) {
  EXPECT_EQ(PrintedFrom(Scene(24, Direct).Bytes()), (Printed{kSize, 24, 0xA44F9CA7, 0x6A50BBE5, 0x8B9CD3DD}));
}

TEST_F(PrintedPicture, OfABitmapWithAFourthByteIsTheSameEverywhere) {
  EXPECT_EQ(PrintedFrom(Scene(32, Direct).Bytes()), (Printed{kSize, 32, 0xA44F9CA7, 0x6A50BBE5, 0x8B9CD3DD}));
}

TEST_F(PrintedPicture, OfABitmapFromTheTopIsTheSameEverywhere) {
  EXPECT_EQ(PrintedFrom(Upright(Scene(24, Direct)).Bytes()),
            (Printed{kSize, 24, 0xC6D5F53F, 0x2A68F1CD, 0x722FBB05}));
  EXPECT_EQ(PrintedFrom(Upright(Scene(8, Packed)).Bytes()),
            (Printed{kSize, 8, 0x1CD6B0A6, 0xB0A2F3EB, 0x23D58DFC}));
}

TEST_F(PrintedPicture, OfABitmapOfFifteenBitsIsTheSameEverywhere) {
  EXPECT_EQ(PrintedFrom(Scene(16, Direct).Bytes()), (Printed{kSize, 16, 0x4A120B11, 0x56BA6B35, 0x533D32F5}));
}

TEST_F(PrintedPicture, OfABitmapWithMasksIsTheSameEverywhere) {
  EXPECT_EQ(PrintedFrom(Masked(16, "00F80000 E0070000 1F000000").Bytes()),
            (Printed{kSize, 16, 0xA77A919B, 0x6E6B19BD, 0xC6B2F7F5}));
  EXPECT_EQ(PrintedFrom(Masked(32, "FF000000 00FF0000 0000FF00").Bytes()),
            (Printed{kSize, 32, 0x7E77BB43, 0x6A50BBE5, 0x8B9CD3DD}));
}

TEST_F(PrintedPicture, OfAPaletteBitmapIsTheSameEverywhere) {
  EXPECT_EQ(PrintedFrom(Scene(8, Packed).Bytes()), (Printed{kSize, 8, 0xE6FE6C32, 0x8750E683, 0x2D1574A4}));
  EXPECT_EQ(PrintedFrom(Scene(4, Packed).Bytes()), (Printed{kSize, 4, 0x9637CA14, 0xD8590E6D, 0x0C1BDEEB}));
  EXPECT_EQ(PrintedFrom(Scene(1, Packed).Bytes()), (Printed{kSize, 1, 0x7E8EE011, 0x3EAB5A65, 0xCE8414B5}));
}

TEST_F(PrintedPicture, OfABitmapInRunsIsTheSameEverywhere) {
  EXPECT_EQ(PrintedFrom(InRuns(8).Bytes()), (Printed{kSize, 8, 0xE6FE6C32, 0x8750E683, 0x2D1574A4}));
  EXPECT_EQ(PrintedFrom(InRuns(4).Bytes()), (Printed{kSize, 4, 0x9637CA14, 0xD8590E6D, 0x0C1BDEEB}));
}

TEST_F(PrintedPicture, OfAGifIsTheSameEverywhere) {
  constexpr PixelSize kScreen = {kWidth + 10, kHeight};
  EXPECT_EQ(PrintedFrom(SceneGif(false, -1).Bytes()),
            (Printed{kScreen, 6, 0x9839DA3F, 0xC7FFBD6F, 0xA39C4B71}));
  EXPECT_EQ(PrintedFrom(SceneGif(true, -1).Bytes()),
            (Printed{kScreen, 6, 0x9839DA3F, 0xC7FFBD6F, 0xA39C4B71}));
  EXPECT_EQ(PrintedFrom(SceneGif(true, 21).Bytes()),
            (Printed{kScreen, 6, 0x61F8C227, 0x1E29C75B, 0x63D3B5FE}));
}

// --- JPEG, whose standard leaves its readers some freedom in rounding and in spreading subsampled colours
// ---

/// Pixels of scene*.jpg as libjpeg-turbo 2.1 reads them are in scene*.bmp.
class PrintedJpeg : public PrintedPicture {
 protected:
  struct Distance {
    int largest = 0;  ///< of a sample
    double mean = 0;
  };
  /// How far the pixels of the file `name` are from those of the bitmap file beside it; empty when one of
  /// them cannot be read or their sizes differ.
  std::optional<Distance> DistanceOf(const std::string& name) const {
    const auto expected = Decoded(test::PictureFile(name + ".bmp"));
    const auto found = Decoded(test::PictureFile(name + ".jpg"));
    if (!expected || !found) return std::nullopt;
    const RgbImage& image = found->image;
    if (image.width != expected->image.width || image.height != expected->image.height) return std::nullopt;
    Distance distance;
    for (int y = 0; y < image.height; ++y) {
      for (std::size_t i = 0; i < image.Row(y).size(); ++i) {
        const int off = std::abs(image.Row(y)[i] - expected->image.Row(y)[i]);
        distance.largest = std::max(distance.largest, off);
        distance.mean += off;
      }
    }
    distance.mean /= 3.0 * image.width * image.height;
    return distance;
  }
};

TEST_F(PrintedJpeg, HasItsSizeAndDepthEverywhere) {
  for (const auto& [name, bits] : {std::pair{"scene.jpg", 24},
                                   {"scene_subsampled.jpg", 24},
                                   {"scene_progressive.jpg", 24},
                                   {"scene_grey.jpg", 8},
                                   {"scene_inks.jpg", 32}}) {
    const auto picture = Decoded(test::PictureFile(name));
    ASSERT_TRUE(picture) << name;
    EXPECT_EQ(picture->image.width, 51) << name;
    EXPECT_EQ(picture->image.height, 37) << name;
    EXPECT_EQ(picture->bits_per_pixel, bits) << name;
  }
}

TEST_F(PrintedJpeg, DiffersByRoundingOnly) {
  for (const char* name : {"scene", "scene_grey", "scene_inks"}) {
    const auto distance = DistanceOf(name);
    ASSERT_TRUE(distance) << name;
    EXPECT_LE(distance->largest, 1) << name;
  }
}

/// At sharp edges of saturated colours, which the scene is made of: either way of filling in is right.
TEST_F(PrintedJpeg, DiffersAtEdgesInHowSubsampledColoursAreSpread) {
  for (const char* name : {"scene_subsampled", "scene_progressive"}) {
    const auto distance = DistanceOf(name);
    ASSERT_TRUE(distance) << name;
    EXPECT_LE(distance->largest, 41) << name;
    EXPECT_LE(distance->mean, 3.5) << name;
  }
}

}  // namespace
}  // namespace qlx
