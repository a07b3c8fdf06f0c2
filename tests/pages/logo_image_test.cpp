#include "pages/logo_image.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qlx {
namespace {

using platform::RgbImage;
using testing::Each;
using testing::ElementsAre;

constexpr Station kReceipt = Station::kCustomerReceipt;
constexpr Station kInsert = Station::kDocumentInsert;

using Bytes = std::vector<std::uint8_t>;

/// A picture whose pixels have three equal channels; `rows` hold one number a pixel. Its rows are padded.
RgbImage Greys(const std::vector<std::vector<int>>& rows) {
  RgbImage image = NewImage({static_cast<int>(rows.front().size()), static_cast<int>(rows.size())});
  image.stride += 5;
  image.pixels.reset(new std::uint8_t[image.stride * rows.size()]);
  for (int y = 0; y < image.height; ++y) {
    std::uint8_t* out = image.Row(y).data();
    for (const int grey : rows[static_cast<std::size_t>(y)]) {
      out = std::fill_n(out, 3, static_cast<std::uint8_t>(grey));
    }
  }
  return image;
}

RgbImage Uniform(PixelSize size, std::uint8_t grey) {
  RgbImage image = NewImage(size);
  for (int y = 0; y < size.height; ++y) std::ranges::fill(image.Row(y), grey);
  return image;
}

RgbImage Noise(PixelSize size) {
  std::mt19937 random(1);
  RgbImage image = NewImage(size);
  for (int y = 0; y < size.height; ++y) {
    for (std::uint8_t& sample : image.Row(y)) sample = static_cast<std::uint8_t>(random());
  }
  return image;
}

Bytes BytesOf(const RgbImage& image) {
  Bytes bytes;
  for (int y = 0; y < image.height; ++y) bytes.insert(bytes.end(), image.Row(y).begin(), image.Row(y).end());
  return bytes;
}

/// One number a pixel: the red channel.
std::vector<int> Reds(const RgbImage& image) {
  std::vector<int> reds;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) reds.push_back(image.Row(y)[static_cast<std::size_t>(x) * 3]);
  }
  return reds;
}

RgbImage Dithered(RgbImage image) {
  Dither(image);
  return image;
}

// --- FitSize ---

/// The rule in its own words, in floating-point-free long arithmetic.
PixelSize FitByTheRule(std::int64_t w, std::int64_t h, std::int64_t most_w, std::int64_t most_h) {
  std::int64_t nw = 0;
  std::int64_t nh = 0;
  if (h < w) {
    nw = w < most_w ? w : most_w;
    nh = h * nw / w;
  } else {
    nh = h < most_h ? h : most_h;
    nw = w * nh / h;
  }
  while (nw % 32 != 0) ++nw;
  while (nh % 8 != 0) ++nh;
  return {static_cast<int>(nw < most_w ? nw : most_w), static_cast<int>(nh < most_h ? nh : most_h)};
}

TEST(FitSize, FollowsTheRuleOnAGridOfSizes) {
  const std::vector<int> sides = {1,   2,   7,   8,   9,    31,   32,   33,   39,    40,        41,
                                  64,  100, 300, 301, 471,  472,  473,  500,  575,   576,       577,
                                  895, 896, 897, 999, 1000, 1500, 4000, 9999, 50000, 50'000'000};
  for (const int w : sides) {
    for (const int h : sides) {
      EXPECT_EQ(FitSize({w, h}, kReceipt), FitByTheRule(w, h, 576, 896)) << w << " by " << h;
      EXPECT_EQ(FitSize({w, h}, kInsert), FitByTheRule(w, h, 472, 40)) << w << " by " << h;
    }
  }
}

TEST(FitSize, AWidePictureFillsTheReceiptsWidth) {
  EXPECT_EQ(FitSize({1000, 500}, kReceipt), (PixelSize{576, 288}));
}

TEST(FitSize, RoundingUpEnlargesASmallPictureSlightly) {
  EXPECT_EQ(FitSize({300, 301}, kReceipt), (PixelSize{320, 304}));
}

TEST(FitSize, ASquareOnTheDocumentInsertStationIsSqueezedToItsHeight) {
  EXPECT_EQ(FitSize({100, 100}, kInsert), (PixelSize{64, 40}));
}

TEST(FitSize, AWidePictureIsSqueezedToTheHeightOfTheDocumentInsertStation) {
  EXPECT_EQ(FitSize({400, 399}, kInsert), (PixelSize{416, 40}));
}

TEST(FitSize, IsZeroInOneDirectionForAThread) {
  EXPECT_EQ(FitSize({10000, 1}, kReceipt), (PixelSize{576, 0}));
  EXPECT_EQ(FitSize({1, 10000}, kReceipt), (PixelSize{0, 896}));
}

TEST(FitSize, IsNotFooledByTheLargestSides) {
  EXPECT_EQ(FitSize({2147483647, 2147483646}, kReceipt), (PixelSize{576, 576}));
}

// --- Scaled ---

TEST(Scaled, LeavesAPictureOfTheSameSizeAsItIs) {
  const RgbImage noise = Noise({37, 23});
  EXPECT_EQ(BytesOf(Scaled(noise, {37, 23})), BytesOf(noise));
}

TEST(Scaled, AveragesWholePixels) {
  EXPECT_THAT(Reds(Scaled(Greys({{0, 10, 100, 100}, {20, 30, 100, 104}}), {2, 1})), ElementsAre(15, 101));
}

TEST(Scaled, SharesAPixelThatLiesOnAnEdge) {
  // Three pixels into two: each takes one and a half.
  EXPECT_THAT(Reds(Scaled(Greys({{0, 90, 240}}), {2, 1})), ElementsAre(30, 190));
}

TEST(Scaled, RoundsHalvesUp) {
  EXPECT_THAT(Reds(Scaled(Greys({{0, 1}}), {1, 1})), ElementsAre(1));
  EXPECT_THAT(Reds(Scaled(Greys({{0, 0, 1}}), {1, 1})), ElementsAre(0));
}

TEST(Scaled, EnlargesByRepeatingPixels) {
  EXPECT_THAT(Reds(Scaled(Greys({{10, 20}}), {4, 2})), ElementsAre(10, 10, 20, 20, 10, 10, 20, 20));
}

TEST(Scaled, BlendsWhereAnEnlargedPixelLiesOnAnEdge) {
  EXPECT_THAT(Reds(Scaled(Greys({{0, 90}}), {3, 1})), ElementsAre(0, 45, 90));
}

TEST(Scaled, EnlargesInOneDirectionWhileItShrinksInTheOther) {
  EXPECT_THAT(Reds(Scaled(Greys({{0, 100}}), {1, 3})), ElementsAre(50, 50, 50));
}

TEST(Scaled, KeepsTheChannelsApart) {
  RgbImage image = NewImage({2, 1});
  std::ranges::copy(Bytes{0, 100, 200, 10, 120, 250}, image.Row(0).begin());
  EXPECT_EQ(BytesOf(Scaled(image, {1, 1})), (Bytes{5, 110, 225}));
}

TEST(Scaled, KeepsAUniformPictureUniform) {
  EXPECT_THAT(BytesOf(Scaled(Uniform({1001, 701}, 255), {576, 400})), Each(255));
  EXPECT_THAT(BytesOf(Scaled(Uniform({5, 3}, 77), {32, 8})), Each(77));
}

/// The mean of the pixels under each pixel of the result, counted in sub-pixels of 1 / (width * size.width).
Bytes ScaledByCounting(const RgbImage& source, PixelSize size) {
  Bytes bytes;
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      for (std::size_t c = 0; c < 3; ++c) {
        long total = 0;
        for (int j = y * source.height; j < (y + 1) * source.height; ++j) {
          for (int i = x * source.width; i < (x + 1) * source.width; ++i) {
            total += source.Row(j / size.height)[static_cast<std::size_t>(i / size.width) * 3 + c];
          }
        }
        const long area = long{source.width} * source.height;
        bytes.push_back(static_cast<std::uint8_t>((2 * total + area) / (2 * area)));
      }
    }
  }
  return bytes;
}

TEST(Scaled, IsTheMeanOfTheAreaUnderEachPixel) {
  const RgbImage noise = Noise({29, 17});
  for (const PixelSize size : {PixelSize{7, 5}, {28, 16}, {30, 18}, {64, 40}, {1, 1}, {32, 3}}) {
    EXPECT_EQ(BytesOf(Scaled(noise, size)), ScaledByCounting(noise, size)) << size.width;
  }
}

TEST(Scaled, HoldsTheSumsOfTheLongestRowsAndColumns) {
  EXPECT_THAT(BytesOf(Scaled(Uniform({20'000'000, 1}, 255), {1, 1})), Each(255));
  EXPECT_THAT(BytesOf(Scaled(Uniform({1, 20'000'000}, 255), {1, 1})), Each(255));
}

// --- Cropped ---

TEST(Cropped, TakesTheTopLeftPart) {
  EXPECT_THAT(Reds(Cropped(Greys({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}), {2, 2})), ElementsAre(1, 2, 4, 5));
}

TEST(Cropped, TakesTheWholeOfASmallerPicture) {
  EXPECT_THAT(Reds(Cropped(Greys({{1, 2}}), {576, 896})), ElementsAre(1, 2));
  const RgbImage wide = Cropped(Uniform({1000, 20}, 9), {472, 40});
  EXPECT_EQ((PixelSize{wide.width, wide.height}), (PixelSize{472, 20}));
}

// --- Dither ---

/// The rule pixel by pixel, with distances and bounds spelled out.
class PlainDither {
 public:
  explicit PlainDither(const RgbImage& image) : width_(image.width), height_(image.height) {
    for (const std::uint8_t sample : BytesOf(image)) samples_.push_back(sample);
  }

  Bytes Result() {
    for (int y = 0; y < height_; ++y) {
      for (int x = 0; x < width_; ++x) Visit(x, y);
    }
    return {samples_.begin(), samples_.end()};
  }

 private:
  int& At(int x, int y, int c) {
    const std::ptrdiff_t pixel = std::ptrdiff_t{y} * width_ + x;
    return samples_[static_cast<std::size_t>(pixel * 3 + c)];
  }

  void Add(int x, int y, int c, int error, int share) {
    At(x, y, c) = std::min(255, std::max(0, At(x, y, c) + (error * share >> 4)));
  }

  int Nearest(int x, int y) {
    int best = 195076;
    int nearest = -1;
    for (const int tone : {200, 0}) {
      int distance = 0;
      for (int c = 0; c < 3; ++c) distance += (At(x, y, c) - tone) * (At(x, y, c) - tone);
      if (distance < best) {
        best = distance;
        nearest = tone;
      }
    }
    return nearest;
  }

  void Visit(int x, int y) {
    const int tone = Nearest(x, y);
    for (int c = 0; c < 3; ++c) {
      const int error = At(x, y, c) - tone;
      if (x + 1 < width_) Add(x + 1, y, c, error, 7);
      if (y + 1 < height_ && x - 1 > 0) Add(x - 1, y + 1, c, error, 3);
      if (y + 1 < height_) Add(x, y + 1, c, error, 5);
      if (x + 1 < width_ && y + 1 < height_) Add(x + 1, y + 1, c, error, 1);
      At(x, y, c) = tone;
    }
  }

  int width_;
  int height_;
  std::vector<int> samples_;
};

TEST(Dither, FollowsTheRuleOnNoiseOfEverySmallSize) {
  for (int w = 1; w <= 9; ++w) {
    for (int h = 1; h <= 9; ++h) {
      const RgbImage noise = Noise({w, h});
      Bytes expected = PlainDither(noise).Result();
      EXPECT_EQ(BytesOf(Dithered(Cropped(noise, {w, h}))), expected) << w << " by " << h;
    }
  }
}

TEST(Dither, FollowsTheRuleOnALargePicture) {
  const RgbImage noise = Noise({301, 203});
  Bytes expected = PlainDither(noise).Result();
  EXPECT_EQ(BytesOf(Dithered(Cropped(noise, {301, 203}))), expected);
}

TEST(Dither, TurnsWhiteIntoUniformGrey) {
  EXPECT_THAT(BytesOf(Dithered(Uniform({64, 40}, 255))), Each(200));
}

TEST(Dither, LeavesBlackAndGreyAsTheyAre) {
  EXPECT_THAT(BytesOf(Dithered(Uniform({16, 8}, 0))), Each(0));
  EXPECT_THAT(BytesOf(Dithered(Uniform({16, 8}, 200))), Each(200));
}

TEST(Dither, GivesATieToTheGrey) {
  EXPECT_THAT(Reds(Dithered(Greys({{100}}))), ElementsAre(200));
  EXPECT_THAT(Reds(Dithered(Greys({{99}}))), ElementsAre(0));
}

TEST(Dither, HandsSevenSixteenthsToTheRight) {
  // 99 becomes black and hands on 99 * 7 / 16 = 43: 57 + 43 = 100 is grey, 56 + 43 is not.
  EXPECT_THAT(Reds(Dithered(Greys({{99, 57}}))), ElementsAre(0, 200));
  EXPECT_THAT(Reds(Dithered(Greys({{99, 56}}))), ElementsAre(0, 0));
}

TEST(Dither, HandsFiveSixteenthsDown) {
  // 99 * 5 / 16 = 30
  EXPECT_THAT(Reds(Dithered(Greys({{99}, {70}}))), ElementsAre(0, 200));
  EXPECT_THAT(Reds(Dithered(Greys({{99}, {69}}))), ElementsAre(0, 0));
}

TEST(Dither, HandsOneSixteenthDownToTheRight) {
  // 96 hands on 42, 30 and 6; the 42 hand 13 down, the 30 hand 13 to the right: 32 for the last pixel.
  EXPECT_THAT(Reds(Dithered(Greys({{96, 0}, {0, 68}}))), ElementsAre(0, 0, 0, 200));
  EXPECT_THAT(Reds(Dithered(Greys({{96, 0}, {0, 67}}))), ElementsAre(0, 0, 0, 0));
}

TEST(Dither, HandsThreeSixteenthsDownToTheLeft) {
  // The last of three, 99, is black and hands 99 * 3 / 16 = 18 to column 1 of the next row.
  EXPECT_THAT(Reds(Dithered(Greys({{0, 0, 99}, {0, 82, 0}}))), ElementsAre(0, 0, 0, 0, 200, 0));
  EXPECT_THAT(Reds(Dithered(Greys({{0, 0, 99}, {0, 81, 0}}))), ElementsAre(0, 0, 0, 0, 0, 0));
}

TEST(Dither, NeverHandsAnErrorFromColumnOneToColumnZero) {
  // With its three sixteenths of 99 column 0 would be 18 + 99 and grey.
  EXPECT_THAT(Reds(Dithered(Greys({{0, 99}, {99, 0}}))), ElementsAre(0, 0, 0, 0));
}

TEST(Dither, RoundsErrorsTowardsMinusInfinity) {
  // 199 becomes grey with an error of -1: -7 / 16 is -1, so 100 falls to 99 and is black.
  EXPECT_THAT(Reds(Dithered(Greys({{199, 100}}))), ElementsAre(200, 0));
}

TEST(Dither, CutsEachSumAtOnce) {
  // 250 and the 24 from its left are cut to 255, which hands on 24; uncut it would be 32.
  EXPECT_THAT(Reds(Dithered(Greys({{255, 250, 76}}))), ElementsAre(200, 200, 200));
  EXPECT_THAT(Reds(Dithered(Greys({{255, 250, 75}}))), ElementsAre(200, 200, 0));
}

TEST(Dither, TreatsTheChannelsTogether) {
  RgbImage image = NewImage({2, 1});
  std::ranges::copy(Bytes{255, 45, 0, 255, 44, 0}, image.Row(0).begin());
  // 300 in all is a tie. Errors 55, -155, -200 hand on 24, -68, -88: 255, 0, 0 is black.
  EXPECT_EQ(BytesOf(Dithered(Cropped(image, {2, 1}))), (Bytes{200, 200, 200, 0, 0, 0}));
}

// --- PrinterImage ---

TEST(PrinterImage, FitsAndReducesATrueColourPicture) {
  const auto image = PrinterImage({Uniform({1000, 500}, 255), 24}, kReceipt);
  ASSERT_TRUE(image);
  EXPECT_EQ((PixelSize{image->width, image->height}), (PixelSize{576, 288}));
  EXPECT_THAT(BytesOf(*image), Each(200));
}

TEST(PrinterImage, FitsAPaletteImageAndKeepsItsColours) {
  const auto image = PrinterImage({Uniform({100, 100}, 123), 8}, kInsert);
  ASSERT_TRUE(image);
  EXPECT_EQ((PixelSize{image->width, image->height}), (PixelSize{64, 40}));
  EXPECT_THAT(BytesOf(*image), Each(123));
}

TEST(PrinterImage, IsNoneWhenNothingIsLeftOfIt) {
  EXPECT_FALSE(PrinterImage({Uniform({10000, 1}, 0), 24}, kReceipt));
  EXPECT_FALSE(PrinterImage({Uniform({1, 10000}, 0), 24}, kReceipt));
}

}  // namespace
}  // namespace qlx
