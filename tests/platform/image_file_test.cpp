#include "platform/image_file.h"

#include "tests/platform/PictureTest.h"

namespace qlx::platform {
namespace {

using test::Bmp;
using test::FourColours;
using test::FromHex;
using test::Gif;
using test::PictureFile;
using test::Pixels;

constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::uint32_t kGreen = 0x00FF00;
constexpr std::uint32_t kBlue = 0x0000FF;
constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kBlack = 0x000000;

/// Rows from the bottom, as files have them.
const Pixels kRedGreenOverBlueWhite = {{kRed, kGreen}, {kBlue, kWhite}};

class BmpFile : public PictureTest {};

TEST_F(BmpFile, Of24BitsIsReadFromTheBottomWithItsPadding) {
  const Bmp bmp{.pixels = FromHex("FF0000 FFFFFF AAAA 0000FF 00FF00 AAAA")};
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
  EXPECT_EQ(DepthOf(bmp.Bytes()), 24);
}

TEST_F(BmpFile, OfANegativeHeightIsReadFromTheTop) {
  const Bmp bmp{.height = static_cast<std::uint32_t>(-2),
                .pixels = FromHex("0000FF 00FF00 AAAA FF0000 FFFFFF AAAA")};
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
}

TEST_F(BmpFile, Of32BitsIgnoresTheFourthByte) {
  const Bmp bmp{.bits = 32, .pixels = FromHex("FF000000 FFFFFF00 0000FF00 00FF0080")};
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
  EXPECT_EQ(DepthOf(bmp.Bytes()), 32);
}

TEST_F(BmpFile, OfOneBitHasItsTwoColours) {
  const Bmp bmp{.bits = 1, .table = FromHex("0000FF00 FFFFFF00"), .pixels = FromHex("40000000 80000000")};
  EXPECT_EQ(PixelsOf(bmp.Bytes()), (Pixels{{kWhite, kRed}, {kRed, kWhite}}));
  EXPECT_EQ(DepthOf(bmp.Bytes()), 1);
}

TEST_F(BmpFile, OfFourBitsHasItsPalette) {
  const Bmp bmp{.bits = 4, .colours_used = 4, .table = FourColours(), .pixels = FromHex("23000000 01000000")};
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
  EXPECT_EQ(DepthOf(bmp.Bytes()), 4);
}

Bmp EightBits() {
  return {.bits = 8, .colours_used = 4, .table = FourColours(), .pixels = FromHex("02030000 00010000")};
}

TEST_F(BmpFile, OfEightBitsHasItsPalette) {
  EXPECT_EQ(PixelsOf(EightBits().Bytes()), kRedGreenOverBlueWhite);
  EXPECT_EQ(DepthOf(EightBits().Bytes()), 8);
}

TEST_F(BmpFile, OfEightBitsWithAColourCountOf0HasAllOfThem) {
  Bmp bmp = EightBits();
  bmp.colours_used = 0;
  bmp.table.resize(1024);
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
}

TEST_F(BmpFile, AnIndexBehindTheEndOfThePaletteIsBlack) {
  Bmp bmp = EightBits();
  bmp.pixels = FromHex("04FF0000 00010000");
  EXPECT_EQ(PixelsOf(bmp.Bytes()), (Pixels{{kRed, kGreen}, {kBlack, kBlack}}));
}

TEST_F(BmpFile, AGapBetweenPaletteAndPixelsIsNoPicture) {
  for (const std::size_t gap : {1U, 100U, 200'000U}) {
    Bmp bmp = EightBits();
    bmp.gap = std::string(gap, '\x01');
    EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite) << gap;
  }
}

TEST_F(BmpFile, AGapBeforePixelsOf24BitsIsNoPicture) {
  Bmp bmp{.gap = std::string(200'000, '\x01'), .pixels = FromHex("FF0000 FFFFFF AAAA 0000FF 00FF00 AAAA")};
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
}

TEST_F(BmpFile, APaletteThatOnlyAdvisesIsPassedOver) {
  Bmp bmp{.bits = 32, .colours_used = 4, .table = FourColours()};
  bmp.pixels = FromHex("FF000000 FFFFFF00 0000FF00 00FF0080");
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
}

TEST_F(BmpFile, WithTheOldCoreHeaderHasThreeBytesAColour) {
  const Bmp bmp{.info_size = 12,
                .bits = 4,
                .table = FromHex("0000FF 00FF00 FF0000 FFFFFF") + std::string(36, '\0'),
                .pixels = FromHex("23000000 01000000")};
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
  EXPECT_EQ(DepthOf(bmp.Bytes()), 4);
}

TEST_F(BmpFile, WithTheOldCoreHeaderAnd24Bits) {
  const Bmp bmp{.info_size = 12, .pixels = FromHex("FF0000 FFFFFF AAAA 0000FF 00FF00 AAAA")};
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
}

TEST_F(BmpFile, WithRunsOfEightBitsIsAPaletteImage) {
  Bmp bmp = EightBits();
  bmp.compression = 1;
  bmp.pixels = FromHex("0102 0103 0000 0100 0101 0000 0001");
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
  EXPECT_EQ(DepthOf(bmp.Bytes()), 8);
}

TEST_F(BmpFile, WithRunsOfFourBitsIsAPaletteImage) {
  Bmp bmp = EightBits();
  bmp.bits = 4;
  bmp.compression = 2;
  bmp.pixels = FromHex("0223 0000 0201 0000 0001");
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
  EXPECT_EQ(DepthOf(bmp.Bytes()), 4);
}

TEST_F(BmpFile, WhatItsRunsSkipIsWhite) {
  Bmp bmp = EightBits();
  bmp.compression = 1;
  bmp.pixels = FromHex("0002 0101 0100 0001");
  EXPECT_EQ(PixelsOf(bmp.Bytes()), (Pixels{{kWhite, kRed}, {kWhite, kWhite}}));
}

TEST_F(BmpFile, Of16BitsHasFiveOfThemForAColour) {
  const Bmp bmp{.bits = 16, .pixels = FromHex("1F00 FF7F 007C E003")};
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
}

TEST_F(BmpFile, OfBitFieldsHasItsMasks) {
  const Bmp bmp{.bits = 32,
                .compression = 3,
                .table = FromHex("FF000000 00FF0000 0000FF00"),
                .pixels = FromHex("0000FF00 FFFFFF00 FF000000 00FF0000")};
  EXPECT_EQ(PixelsOf(bmp.Bytes()), kRedGreenOverBlueWhite);
}

TEST_F(BmpFile, WhatShinesThroughShowsWhite) {
  const Bmp bmp{.info_size = 108,
                .bits = 32,
                .compression = 3,
                .more_info = FromHex("FF000000 00FF0000 0000FF00 000000FF"),
                .pixels = FromHex("000000FF 00000000 FF000080 FF0000FF")};
  EXPECT_EQ(PixelsOf(bmp.Bytes()), (Pixels{{0xFF7F7F, kRed}, {kBlack, kWhite}}));
}

class JpegFile : public PictureTest {
 protected:
  /// Blocks of 8 x 8, so that the compression loses next to nothing.
  static Pixels Blocks(std::uint32_t left, std::uint32_t right) {
    Pixels pixels(8, std::vector<std::uint32_t>(16, left));
    for (auto& row : pixels) std::fill(row.begin() + 8, row.end(), right);
    return pixels;
  }

  /// The picture in `bytes`, whose every row of blocks ends with a restart, `times` below each other.
  static std::string Repeated(const std::string& bytes, std::size_t times) {
    const std::size_t data = bytes.find("\xFF\xDA") + 14;
    const std::string rows = bytes.substr(data, bytes.size() - 2 - data);
    std::string all = bytes.substr(0, data);
    for (std::size_t i = 0; i < times; ++i) all += (i == 0 ? "" : "\xFF\xD7") + rows;
    const std::size_t height = bytes.find("\xFF\xC0") + 5;
    const std::size_t tall = static_cast<unsigned char>(bytes[height + 1]) * times;
    all[height] = static_cast<char>(tall >> 8);
    all[height + 1] = static_cast<char>(tall);
    return all + "\xFF\xD9";
  }

  void ExpectNear(const Pixels& found, const Pixels& expected) {
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t y = 0; y < found.size(); ++y) {
      ASSERT_EQ(found[y].size(), expected[y].size());
      for (std::size_t x = 0; x < found[y].size(); ++x) {
        for (const int shift : {0, 8, 16}) {
          EXPECT_NEAR(found[y][x] >> shift & 0xFF, expected[y][x] >> shift & 0xFF, 2) << x << ',' << y;
        }
      }
    }
  }
};

TEST_F(JpegFile, OfColourIs24BitsDeep) {
  const std::string bytes = PictureFile("red_and_dusk.jpg");
  ExpectNear(PixelsOf(bytes), Blocks(kRed, 0x204060));
  EXPECT_EQ(DepthOf(bytes), 24);
}

TEST_F(JpegFile, OfGreyIs8BitsDeep) {
  const std::string bytes = PictureFile("greys.jpg");
  ExpectNear(PixelsOf(bytes), Blocks(0x303030, 0xC0C0C0));
  EXPECT_EQ(DepthOf(bytes), 8);
}

TEST_F(JpegFile, ThatIsProgressiveIsReadToItsLastScan) {
  const std::string bytes = PictureFile("green_and_dusk_progressive.jpg");
  ExpectNear(PixelsOf(bytes), Blocks(kGreen, 0x204060));
  EXPECT_EQ(DepthOf(bytes), 24);
}

TEST_F(JpegFile, OfFourInksIs32BitsDeep) {
  const std::string bytes = PictureFile("blue_and_dusk_inks.jpg");
  ExpectNear(PixelsOf(bytes), Blocks(kBlue, 0x204060));
  EXPECT_EQ(DepthOf(bytes), 32);
}

TEST_F(JpegFile, LargerThanABlockOfTheReaderIsReadWhole) {
  constexpr std::size_t kTimes = 12;
  const std::string once = PictureFile("noise_with_restarts.jpg");
  const Pixels expected = PixelsOf(once);
  const std::string bytes = Repeated(once, kTimes);
  ASSERT_GT(bytes.size(), 200'000U);
  const Pixels pixels = PixelsOf(bytes);
  ASSERT_EQ(pixels.size(), expected.size() * kTimes);
  for (std::size_t y = 0; y < pixels.size(); ++y) ASSERT_EQ(pixels[y], expected[y % expected.size()]) << y;
}

TEST_F(JpegFile, ACommentLargerThanABlockOfTheReaderIsPassedOver) {
  std::string bytes = PictureFile("red_and_dusk.jpg");
  std::string comments;
  for (int i = 0; i < 3; ++i) comments += "\xFF\xFE\xFF\xFF" + std::string(65533, '\xD9');
  ExpectNear(PixelsOf(bytes.insert(2, comments)), Blocks(kRed, 0x204060));
}

class GifFile : public PictureTest {};

const Pixels kTurning = {{kRed, kGreen, kBlue, kWhite},
                         {kGreen, kBlue, kWhite, kRed},
                         {kBlue, kWhite, kRed, kGreen},
                         {kWhite, kRed, kGreen, kBlue}};

TEST_F(GifFile, HasItsPalette) {
  EXPECT_EQ(PixelsOf(Gif{}.Bytes()), kTurning);
  EXPECT_EQ(DepthOf(Gif{}.Bytes()), 2);
}

TEST_F(GifFile, AFramesOwnPaletteComesFirst) {
  Gif gif;
  gif.frames[0].palette = {kWhite, kBlack, kWhite, kBlack, kRed, kRed, kRed, kRed};
  EXPECT_EQ(PixelsOf(gif.Bytes())[0], (std::vector{kWhite, kBlack, kWhite, kBlack}));
  EXPECT_EQ(DepthOf(gif.Bytes()), 3);
}

TEST_F(GifFile, WithoutAGlobalPaletteIsReadByTheFramesOwn) {
  Gif gif;
  gif.frames[0].palette = std::exchange(gif.palette, {});
  EXPECT_EQ(PixelsOf(gif.Bytes()), kTurning);
}

TEST_F(GifFile, WhatIsTransparentIsWhite) {
  Gif gif;
  gif.frames[0].transparent = 0;
  EXPECT_EQ(PixelsOf(gif.Bytes())[0], (std::vector{kWhite, kGreen, kBlue, kWhite}));
}

TEST_F(GifFile, AnInterlacedFrameIsPutInOrder) {
  Gif gif{.width = 1, .height = 11};
  gif.frames = {{.rows = {"0", "1", "2", "3", "0", "1", "2", "3", "0", "1", "2"}, .interlaced = true}};
  const Pixels pixels = PixelsOf(gif.Bytes());
  ASSERT_EQ(pixels.size(), 11U);
  for (std::size_t y = 0; y < pixels.size(); ++y) EXPECT_EQ(pixels[y][0], gif.palette[y % 4]) << y;
}

TEST_F(GifFile, OfManyFramesTheFirstIsThePicture) {
  Gif gif;
  gif.frames.push_back({.rows = {"3333", "3333", "3333", "3333"}});
  EXPECT_EQ(PixelsOf(gif.Bytes()), kTurning);
}

TEST_F(GifFile, WhatFollowsTheFirstFrameIsNotLookedAt) {
  Gif gif;
  gif.frames.push_back({.rows = {"3333", "3333", "3333", "3333"}});
  const std::string one = Gif{}.Bytes();
  const std::string many = gif.Bytes();
  EXPECT_EQ(PixelsOf(many.substr(0, one.size() + 3)), kTurning);
}

TEST_F(GifFile, AroundAFrameSmallerThanTheScreenIsWhite) {
  Gif gif{.width = 3, .height = 3};
  gif.frames = {{.left = 1, .top = 1, .rows = {"0"}}};
  EXPECT_EQ(PixelsOf(gif.Bytes()),
            (Pixels{{kWhite, kWhite, kWhite}, {kWhite, kRed, kWhite}, {kWhite, kWhite, kWhite}}));
}

TEST_F(GifFile, AFramesPartOutsideTheScreenIsCutOff) {
  Gif gif{.width = 2, .height = 2};
  gif.frames = {{.left = 1, .top = 1, .rows = {"012", "012", "012"}}};
  EXPECT_EQ(PixelsOf(gif.Bytes()), (Pixels{{kWhite, kWhite}, {kWhite, kRed}}));
}

TEST_F(PictureTest, IsToldByItsContentAndNotByItsName) {
  Write(Gif{}.Bytes(), "picture.bmp");
  EXPECT_EQ(PixelsOf(DecodeImageFile(Path("picture.bmp").wstring())), kTurning);
}

class EncodedBmp : public PictureTest {
 protected:
  static RgbImage Image(int width, int height, std::size_t stride) {
    RgbImage image{width, height, stride, {}};
    const std::size_t size = stride * static_cast<std::size_t>(height);
    image.pixels = {new std::uint8_t[size], [](std::uint8_t* pixels) { delete[] pixels; }};
    for (std::size_t i = 0; i < size; ++i) image.pixels.get()[i] = static_cast<std::uint8_t>(i);
    return image;
  }
  static std::string Bytes(const RgbImage& image) {
    const auto bytes = EncodeBmp(image);
    return {bytes.begin(), bytes.end()};
  }
};

TEST_F(EncodedBmp, Is24BitsFromTheBottomInRowsPaddedWithZeros) {
  const Bmp expected{.width = 1, .pixels = FromHex("050403 00 020100 00")};
  std::string bytes = expected.Bytes();
  bytes.replace(34, 4, test::LittleEndian(8, 4));
  EXPECT_EQ(Bytes(Image(1, 2, 3)), bytes);
}

TEST_F(EncodedBmp, IsReadBackAsItWasWhateverItsWidth) {
  for (int width = 1; width <= 9; ++width) {
    const auto image = Image(width, 3, static_cast<std::size_t>(width) * 3 + 5);
    const auto decoded = Decoded(Bytes(image));
    ASSERT_TRUE(decoded) << width;
    EXPECT_EQ(decoded->bits_per_pixel, 24);
    for (int y = 0; y < 3; ++y) EXPECT_TRUE(std::ranges::equal(decoded->image.Row(y), image.Row(y))) << width;
  }
}

}  // namespace
}  // namespace qlx::platform
