// Files made to break the picture decoders: each ends in its stated way, and nothing crashes, hangs or grows.
#include <random>

#include "tests/platform/PictureTest.h"
#include "tests/support/memory_growth.h"

namespace qlx::platform {
namespace {

using test::Bmp;
using test::FourColours;
using test::FromHex;
using test::Gif;
using test::LittleEndian;
using test::PictureFile;
using test::Pixels;

constexpr std::uint32_t kWhite = 0xFFFFFF;

class HostilePicture : public PictureTest {
 protected:
  void ExpectRefused(const std::string& bytes) {
    EXPECT_FALSE(Decoded(bytes)) << ::testing::PrintToString(bytes.substr(0, 100));
  }

  /// Refused without asking for memory: no address space beyond the decoder's own few blocks.
  void ExpectRefusedUnallocated(const std::string& bytes) {
    EXPECT_TRUE(Decoded(Bmp{}.Bytes()));  // loads the decoder's code
    Write(bytes);
    const auto growth = test::MemoryGrowth([&] { return !DecodeImageFile(Path().wstring()); });
    ASSERT_TRUE(growth) << ::testing::PrintToString(bytes.substr(0, 100));
#ifndef QLX_ADDRESS_SANITIZER  // the sanitizer's own memory says nothing
    EXPECT_LT(*growth, 4 << 10);
#endif
    RecordProperty("growth", std::to_string(*growth));
  }

  static bool IsPicture(const std::optional<DecodedImage>& decoded, int width, int height) {
    return decoded && decoded->image.width == width && decoded->image.height == height;
  }
};

TEST_F(HostilePicture, AnEmptyFileIsRefused) {
  ExpectRefused("");
}

TEST_F(HostilePicture, NothingButASignatureIsRefused) {
  for (const char* signature : {"B", "BM", "\xFF\xD8", "\xFF\xD8\xFF", "GIF", "GIF89a"})
    ExpectRefused(signature);
}

TEST_F(HostilePicture, ATextFileCalledBmpIsRefused) {
  for (const char* text : {"Dear printer,\n", "BMW, a car and then some more words of text to be read",
                           "GIFTS for everyone, and then some more words of text to be read"}) {
    Write(text, "text.bmp");
    EXPECT_FALSE(DecodeImageFile(Path("text.bmp").wstring())) << text;
  }
}

TEST_F(HostilePicture, OtherFormatsAreRefused) {
  const std::string one_pixel_png = FromHex(
      "89504E470D0A1A0A0000000D4948445200000001000000010802000000907753DE0000000C49444154789C63F8CFC000000301"
      "0100"
      "C9FE92EF0000000049454E44AE426082");
  const std::string tiff = FromHex("49492A0008000000") + std::string(100, '\0');
  for (const std::string& bytes :
       {one_pixel_png, tiff, std::string("<svg xmlns='http://www.w3.org/2000/svg' width='1' height='1'/>"),
        std::string("P3 1 1 255 0 0 0\n"),
        std::string("/* XPM */ static char* x[] = {\"1 1 1 1\", \". c red\", \".\"};"),
        FromHex("00000100") + std::string(100, '\1'), "RIFF" + std::string(4, '\0') + "WEBPVP8 "}) {
    ExpectRefused(bytes);
  }
}

TEST_F(HostilePicture, AFileThatIsNotThereIsRefused) {
  EXPECT_FALSE(DecodeImageFile(Path("missing").wstring()));
  EXPECT_FALSE(DecodeImageFile(L""));
}

TEST_F(HostilePicture, ADirectoryIsRefused) {
  EXPECT_FALSE(DecodeImageFile(directory_.path().wstring()));
}

class HostileBmp : public HostilePicture {
 protected:
  static std::string Sized(std::uint32_t width, std::uint32_t height) {
    return Bmp{.width = width, .height = height}.Bytes();
  }
  static Bmp EightBits() {
    return {.bits = 8, .colours_used = 4, .table = FourColours(), .pixels = FromHex("02030000 00010000")};
  }
  static Bmp Runs(std::string_view hex) {
    Bmp bmp = EightBits();
    bmp.compression = 1;
    bmp.pixels = FromHex(hex);
    return bmp;
  }
};

TEST_F(HostileBmp, Of60000By60000IsRefusedBeforeMemoryIsAskedFor) {
  ExpectRefusedUnallocated(Sized(60000, 60000));
  ExpectRefusedUnallocated(Bmp{.info_size = 12, .width = 60000, .height = 60000}.Bytes());
  ExpectRefusedUnallocated(Sized(60000, static_cast<std::uint32_t>(-60000)));
}

TEST_F(HostileBmp, OfAFewPixelsTooManyIsRefusedBeforeMemoryIsAskedFor) {
  ExpectRefusedUnallocated(Sized(7072, 7071));
}

TEST_F(HostileBmp, OfAsManyPixelsAsMayBeIsReadAndNotOneRowMore) {
  Bmp bmp{.width = 10'000, .height = 5'000, .bits = 1, .table = FromHex("0000FF00 FFFFFF00")};
  bmp.pixels = std::string(5'000 * 1'252, '\0');
  EXPECT_TRUE(IsPicture(Decoded(bmp.Bytes()), 10'000, 5'000));
  bmp.height = 5'001;
  bmp.pixels += std::string(1'252, '\0');
  ExpectRefused(bmp.Bytes());
}

TEST_F(HostileBmp, WhoseSizesMultiplyPastTheirNumbersIsRefusedBeforeMemoryIsAskedFor) {
  for (const std::uint32_t large : {0x7FFFFFFFU, 0x40000001U, 0x10000U, 0x15555556U}) {
    ExpectRefusedUnallocated(Sized(large, large));
    ExpectRefusedUnallocated(Sized(large, 3 * large));
  }
}

TEST_F(HostileBmp, WithoutWidthOrHeightIsRefused) {
  ExpectRefused(Sized(0, 2));
  ExpectRefused(Sized(2, 0));
  ExpectRefused(Sized(0, 0));
}

TEST_F(HostileBmp, OfANegativeWidthIsRefused) {
  ExpectRefused(Sized(static_cast<std::uint32_t>(-2), 2));
  ExpectRefused(Sized(static_cast<std::uint32_t>(-2), static_cast<std::uint32_t>(-2)));
}

TEST_F(HostileBmp, OfTheSmallestNumberThereIsIsRefused) {
  ExpectRefused(Sized(0x80000000U, 2));
  ExpectRefused(Sized(2, 0x80000000U));
  ExpectRefused(Sized(0x80000000U, 0x80000000U));
}

TEST_F(HostileBmp, WithLessThanItClaimsIsRefusedWithoutTakingItsMemory) {
  ExpectRefused(Sized(7'000, 7'000));
  ExpectRefused(Sized(1, 50'000'000));
  ExpectRefused(Sized(50'000'000, 1));
}

TEST_F(HostileBmp, WhosePixelsBeginBehindItsEndIsRefused) {
  for (const std::uint32_t offset : {71U, 1'000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    ExpectRefusedUnallocated(Bmp{.offset = offset}.Bytes());
    Bmp palette = EightBits();
    palette.offset = offset + 16;
    ExpectRefusedUnallocated(palette.Bytes());
  }
}

TEST_F(HostileBmp, WhosePixelsBeginInItsHeadersIsRefused) {
  for (const std::uint32_t offset : {0U, 1U, 14U, 53U}) ExpectRefused(Bmp{.offset = offset}.Bytes());
  Bmp palette = EightBits();
  palette.offset = 14 + 40 + 15;
  ExpectRefused(palette.Bytes());
}

TEST_F(HostileBmp, OfADepthThatDoesNotExistIsRefused) {
  for (const std::uint32_t bits : {0U, 2U, 3U, 5U, 15U, 31U, 33U, 48U, 64U, 0x7FFFU, 0x8000U, 0xFFFFU}) {
    Bmp bmp{.bits = bits, .table = std::string(4096, '\0')};
    ExpectRefused(bmp.Bytes());
    bmp.info_size = 12;
    ExpectRefused(bmp.Bytes());
  }
}

TEST_F(HostileBmp, OfMoreColoursThanItsDepthHasIsRefused) {
  for (const std::uint32_t used : {257U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    Bmp bmp = EightBits();
    bmp.colours_used = used;
    ExpectRefusedUnallocated(bmp.Bytes());
  }
}

TEST_F(HostileBmp, OfMoreColoursThanItHoldsIsRefused) {
  Bmp bmp = EightBits();
  bmp.colours_used = 200;
  ExpectRefused(bmp.Bytes());
}

TEST_F(HostileBmp, OfAHeaderThatDoesNotExistIsRefused) {
  for (const std::uint32_t size : {0U, 11U, 13U, 16U, 39U, 41U, 125U, 0xFFFFU, 0x7FFFFFF2U, 0xFFFFFFFFU}) {
    ExpectRefusedUnallocated(Bmp{.info_size = size}.Bytes());
  }
}

TEST_F(HostileBmp, OfACompressionThatDoesNotExistIsRefused) {
  for (const std::uint32_t compression : {4U, 5U, 6U, 11U, 0x80000000U, 0xFFFFFFFFU}) {
    ExpectRefused(Bmp{.compression = compression}.Bytes());
  }
}

TEST_F(HostileBmp, WhoseCompressionDoesNotFitItsDepthIsRefused) {
  for (const std::uint32_t compression : {1U, 2U, 3U}) ExpectRefused(Bmp{.compression = compression}.Bytes());
  Bmp bmp = EightBits();
  bmp.compression = 2;
  ExpectRefused(bmp.Bytes());
}

TEST_F(HostileBmp, OfRunsFromTheTopIsRefused) {
  Bmp bmp = Runs("0102 0103 0000 0100 0101 0000 0001");
  bmp.height = static_cast<std::uint32_t>(-2);
  ExpectRefused(bmp.Bytes());
}

TEST_F(HostileBmp, OfRunsWithoutAnEndIsRefused) {
  ExpectRefused(Runs("").Bytes());
  ExpectRefused(Runs("0102 0103 0000 0100 0101").Bytes());
  ExpectRefused(Runs("0102 00FF 0102").Bytes());
}

TEST_F(HostileBmp, OfRunsThatLeaveThePictureStaysInsideIt) {
  EXPECT_EQ(PixelsOf(Runs("0002FFFF 0102").Bytes()), Pixels(2, std::vector(2, kWhite)));
  EXPECT_EQ(PixelsOf(Runs("FF03 0000 0002FF00 FF01 0001").Bytes()), Pixels(2, std::vector(2, kWhite)));
  EXPECT_EQ(PixelsOf(Runs("0002FF00 0002FF01 00FF" + std::string(512, '1') + "0001").Bytes()),
            Pixels(2, std::vector(2, kWhite)));
}

TEST_F(HostileBmp, CutAnywhereIsRefused) {
  for (const Bmp& bmp : {Bmp{}, EightBits(), Runs("0102 0103 0000 0100 0101 0001"), Bmp{.info_size = 12}}) {
    const std::string good = bmp.Bytes();
    EXPECT_TRUE(Decoded(good));
    for (std::size_t size = 0; size < good.size(); ++size) ExpectRefused(good.substr(0, size));
  }
}

class HostileJpeg : public HostilePicture {
 protected:
  static constexpr std::size_t kHeight = 5;  // from the marker of a frame header
  static constexpr std::size_t kComponents = 9;

  std::string good_ = PictureFile("dusk.jpg");

  static std::size_t Find(const std::string& bytes, char marker) { return bytes.find({'\xFF', marker}); }
  std::size_t Frame() const { return Find(good_, '\xC0'); }
  std::size_t Scan() const { return Find(good_, '\xDA'); }
  static std::size_t SegmentSize(const std::string& bytes, std::size_t at) {
    return 2 + static_cast<std::size_t>(static_cast<unsigned char>(bytes[at + 2]) << 8 |
                                        static_cast<unsigned char>(bytes[at + 3]));
  }
  static std::string Without(std::string bytes, char marker) {
    for (std::size_t at = Find(bytes, marker); at != std::string::npos; at = Find(bytes, marker)) {
      bytes.erase(at, SegmentSize(bytes, at));
    }
    return bytes;
  }
  std::string Sized(const std::string& height, const std::string& width) const {
    return std::string(good_).replace(Frame() + kHeight, 4, height + width);
  }
};

TEST_F(HostileJpeg, Of60000By60000IsRefusedBeforeMemoryIsAskedFor) {
  ExpectRefusedUnallocated(Sized("\xEA\x60", "\xEA\x60"));
  ExpectRefusedUnallocated(Sized("\xFF\xFF", "\xFF\xFF"));
}

TEST_F(HostileJpeg, OfAFewPixelsTooManyIsRefusedBeforeMemoryIsAskedFor) {
  ExpectRefusedUnallocated(Sized("\x1B\xA0", "\x1B\x9F"));  // 7072 x 7071
}

TEST_F(HostileJpeg, WithoutWidthOrHeightIsRefused) {
  ExpectRefused(Sized(std::string(2, '\0'), "\1\1"));
  ExpectRefused(Sized("\1\1", std::string(2, '\0')));
}

TEST_F(HostileJpeg, OfMoreRowsThanItHoldsIsRefused) {
  ExpectRefused(Sized(std::string("\0\x40", 2), std::string("\0\x10", 2)));
}

TEST_F(HostileJpeg, WithoutAFrameIsRefused) {
  ExpectRefused(Without(good_, '\xC0'));
}

TEST_F(HostileJpeg, WithTwoFramesIsRefused) {
  const std::string frame = good_.substr(Frame(), SegmentSize(good_, Frame()));
  ExpectRefused(std::string(good_).insert(Frame(), frame));
  ExpectRefused(std::string(good_).insert(good_.size() - 2, frame));
}

TEST_F(HostileJpeg, WithoutAScanIsRefused) {
  ExpectRefused(good_.substr(0, Scan()) + "\xFF\xD9");
}

TEST_F(HostileJpeg, WithoutItsEndMarkerIsRefused) {
  ExpectRefused(good_.substr(0, good_.size() - 2));
  ExpectRefused(good_.substr(0, good_.size() - 2) + std::string(100'000, '\0'));
}

TEST_F(HostileJpeg, WithoutItsQuantisationTablesIsRefused) {
  ExpectRefused(Without(good_, '\xDB'));
}

TEST_F(HostileJpeg, WithoutItsHuffmanTablesIsReadByTheUsualOnes) {
  EXPECT_EQ(PixelsOf(Without(good_, '\xC4')), PixelsOf(good_));
}

TEST_F(HostileJpeg, OfANumberOfComponentsThatDoesNotExistIsRefused) {
  for (const char components : {'\0', '\2', '\5', '\xFF'}) {
    ExpectRefused(std::string(good_).replace(Frame() + kComponents, 1, 1, components));
  }
  std::string none = good_;
  none.replace(Frame(), SegmentSize(good_, Frame()), FromHex("FFC0 0008 08 0010 0010 00"));
  ExpectRefused(none);
}

TEST_F(HostileJpeg, OfAPrecisionThatDoesNotExistIsRefused) {
  for (const char precision : {'\0', '\1', '\xC', '\xFF'}) {
    ExpectRefused(std::string(good_).replace(Frame() + 4, 1, 1, precision));
  }
}

TEST_F(HostileJpeg, OfSamplingThatDoesNotExistIsRefused) {
  for (const char sampling : {'\0', '\x10', '\x01', '\x55', '\xFF'}) {
    ExpectRefused(std::string(good_).replace(Frame() + kComponents + 2, 1, 1, sampling));
  }
}

TEST_F(HostileJpeg, WhoseSegmentsLieAboutTheirLengthIsRefused) {
  for (const std::string& length : {std::string(2, '\0'), std::string("\0\1", 2), std::string("\xFF\xFF")}) {
    ExpectRefused(std::string(good_).replace(Frame() + 2, 2, length));
    ExpectRefused(std::string(good_).replace(Scan() + 2, 2, length));
  }
}

TEST_F(HostileJpeg, OfScansWithoutEndIsRefused) {
  const std::string bytes = PictureFile("dusk_progressive.jpg");
  const std::size_t last = bytes.rfind("\xFF\xDA");
  std::string scans = bytes.substr(0, bytes.size() - 2);
  for (int i = 0; i < 1'000; ++i) scans += bytes.substr(last, bytes.size() - 2 - last);
  ASSERT_TRUE(Decoded(bytes));
  ExpectRefused(scans + "\xFF\xD9");
}

TEST_F(HostileJpeg, WhoseCommentIsLongerThanItIsRefused) {
  ExpectRefused(std::string(good_).replace(2, 4, "\xFF\xFE\xFF\xFF"));
}

TEST_F(HostileJpeg, OfCodesThatDoNotExistIsRefused) {
  const std::size_t data = Scan() + SegmentSize(good_, Scan());
  std::string ones;
  for (int i = 0; i < 200; ++i) ones += FromHex("FF00");
  ExpectRefused(good_.substr(0, data) + ones + "\xFF\xD9");
}

TEST_F(HostileJpeg, OfNothingButFillBytesIsRefused) {
  ExpectRefused("\xFF\xD8" + std::string(1'000'000, '\xFF'));
}

TEST_F(HostileJpeg, CutAnywhereIsRefused) {
  for (const std::string& good : {good_, PictureFile("dusk_progressive.jpg")}) {
    for (std::size_t size = 0; size < good.size(); ++size) ExpectRefused(good.substr(0, size));
  }
}

TEST_F(HostileJpeg, CutAnywhereAndEndedAgainNeverGrows) {
  int taken = 0;
  for (std::size_t size = 2; size < Scan(); ++size)
    taken += Decoded(good_.substr(0, size) + "\xFF\xD9") ? 1 : 0;
  EXPECT_EQ(taken, 0);
}

class HostileGif : public HostilePicture {
 protected:
  static constexpr std::size_t kScreen = 6;
  static constexpr std::size_t kFrame = 13 + 12;  // behind four colours: its introducer
  static constexpr std::size_t kFrameSize = kFrame + 5;
  static constexpr std::size_t kCodeSize = kFrame + 10;

  std::string good_ = Gif{}.Bytes();

  std::string With(std::size_t at, const std::string& bytes) const {
    return std::string(good_).replace(at, bytes.size(), bytes);
  }
  static std::string Size(std::uint32_t width, std::uint32_t height) {
    return LittleEndian(width, 2) + LittleEndian(height, 2);
  }
};

TEST_F(HostileGif, OfAScreenOf60000By60000IsRefusedBeforeMemoryIsAskedFor) {
  ExpectRefusedUnallocated(With(kScreen, Size(60000, 60000)));
  ExpectRefusedUnallocated(With(kScreen, Size(7072, 7071)));
}

TEST_F(HostileGif, OfAFrameOf60000By60000IsRefusedBeforeMemoryIsAskedFor) {
  ExpectRefusedUnallocated(With(kFrameSize, Size(60000, 60000)));
  ExpectRefusedUnallocated(With(kFrameSize, Size(7072, 7071)));
}

TEST_F(HostileGif, OfAFrameOfAsManyPixelsAsMayBeIsReadAndNotOfOneRowMore) {
  Gif gif;
  gif.frames = {{.rows = std::vector(5'000, std::string(10'000, '0'))}};
  EXPECT_TRUE(IsPicture(Decoded(gif.Bytes()), 4, 4));
  gif.frames[0].rows.emplace_back(10'000, '0');
  ExpectRefused(gif.Bytes());
}

TEST_F(HostileGif, WithoutWidthOrHeightIsRefused) {
  for (const std::size_t at : {kScreen, kFrameSize}) {
    ExpectRefused(With(at, Size(0, 4)));
    ExpectRefused(With(at, Size(4, 0)));
  }
}

TEST_F(HostileGif, OfAFrameLargerThanItsDataIsRefused) {
  ExpectRefused(With(kFrameSize, Size(4, 5)));
  ExpectRefused(With(kFrameSize, Size(1, 60000)));
  ExpectRefused(With(kFrameSize, Size(60000, 1)));
}

TEST_F(HostileGif, OfAScreenLargerThanItsFrameIsWhiteAroundIt) {
  EXPECT_TRUE(IsPicture(Decoded(With(kScreen, Size(5, 300))), 5, 300));
}

TEST_F(HostileGif, OfAFrameOutsideItsScreenIsWhite) {
  for (const std::uint32_t at : {4U, 60000U, 65535U}) {
    EXPECT_EQ(PixelsOf(With(kFrame + 1, Size(at, 0))), Pixels(4, std::vector(4, kWhite))) << at;
    EXPECT_EQ(PixelsOf(With(kFrame + 1, Size(0, at))), Pixels(4, std::vector(4, kWhite))) << at;
  }
}

TEST_F(HostileGif, OfACodeSizeThatDoesNotExistIsRefused) {
  ASSERT_EQ(good_[kCodeSize], '\2');
  for (const char size : {'\0', '\x9', '\xB', '\xC', '\xD', '\xFF'}) ExpectRefused(With(kCodeSize, {size}));
}

TEST_F(HostileGif, OfACodeSizeOf0IsRefusedThoughItsCodesCanBeRead) {
  const std::string only_zeros = "\xA" + std::string(10, '\0') + std::string(1, '\0');
  EXPECT_TRUE(Decoded(good_.substr(0, kCodeSize) + '\2' + only_zeros));
  ExpectRefused(good_.substr(0, kCodeSize) + '\0' + only_zeros);
}

TEST_F(HostileGif, WhoseColoursDoNotFitItsPaletteIsBlackThere) {
  Gif gif{.width = 2, .height = 1, .palette = {0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF}};
  gif.frames = {{.rows = {"01"}, .palette = {0x123456, 0x654321}}};
  std::string bytes = gif.Bytes();
  // Data of the frame: a clear code, both pixels and an end code, of 3 bits each.
  const std::size_t data = bytes.size() - 1 - 1 - 2;
  ASSERT_EQ(bytes[data - 1], '\2');
  bytes.replace(data, 2, FromHex("C40A"));  // the second pixel is 3, of two colours
  EXPECT_EQ(PixelsOf(bytes), (Pixels{{0x123456, 0}}));
}

TEST_F(HostileGif, WithoutAFrameIsRefused) {
  ExpectRefused(good_.substr(0, kFrame) + ";");
  ExpectRefused(good_.substr(0, 13));
}

TEST_F(HostileGif, WithoutAnyPaletteIsRefused) {
  std::string bytes = good_;
  bytes[10] = '\x11';
  ExpectRefused(bytes.erase(13, 12));
}

TEST_F(HostileGif, WhoseCodesEndBeforeItsPixelsIsRefused) {
  ExpectRefused(good_.substr(0, kCodeSize) +
                FromHex("02 02 2C05 00 3B"));  // a clear code, a pixel, the end code
}

TEST_F(HostileGif, OfCodesThatDoNotExistIsRefused) {
  ExpectRefused(good_.substr(0, kCodeSize) + FromHex("02 04 FFFFFFFF 00 3B"));
}

TEST_F(HostileGif, OfMoreClearCodesThanItsPixelsCanNeedIsGivenUp) {
  const auto cleared = [this](int blocks) {
    std::string bytes = good_.substr(0, kCodeSize) + '\1';
    for (int i = 0; i < blocks; ++i)
      bytes += '\xFF' + std::string(255, '\xAA');                          // codes of 2 bits: all clear
    return bytes + '\x8' + std::string(8, '\x88') + std::string(1, '\0');  // a pixel, clear, a pixel...
  };
  EXPECT_TRUE(Decoded(cleared(200)));
  ExpectRefused(cleared(300));
}

TEST_F(HostileGif, OfAnUnknownBlockIsRefused) {
  ExpectRefused(std::string(good_).insert(kFrame, "?"));
}

TEST_F(HostileGif, WhoseExtensionNeverEndsIsRefused) {
  ExpectRefused(good_.substr(0, kFrame) + "!\xFE" + std::string(1'000'000, '\xFF'));
}

TEST_F(HostileGif, WhoseTransparencyExtensionLiesAboutItsLengthIsReadWithoutIt) {
  for (const char* extension : {"21F9 00", "21F9 01 01 00", "21F9 03 010000 00", "21F9 05 0100000000 00"}) {
    EXPECT_TRUE(IsPicture(Decoded(std::string(good_).insert(kFrame, FromHex(extension))), 4, 4)) << extension;
  }
}

TEST_F(HostileGif, CutAnywhereBeforeTheEndOfItsFrameIsRefused) {
  for (std::size_t size = 0; size < good_.size() - 1; ++size) ExpectRefused(good_.substr(0, size));
  EXPECT_TRUE(Decoded(good_.substr(0, good_.size() - 1)));
}

class MutatedPicture : public HostilePicture {
 protected:
  static std::string Mutated(std::string bytes, std::mt19937& random) {
    for (unsigned i = 0; i <= random() % 3; ++i) {
      const std::size_t at = random() % bytes.size();
      switch (random() % 3) {
        case 0:
          bytes[at] = static_cast<char>(random());
          break;
        case 1:
          bytes.erase(at, random() % 4);
          break;
        case 2:
          bytes.insert(at, random() % 4, static_cast<char>(random()));
          break;
      }
    }
    return bytes;
  }
};

TEST_F(MutatedPicture, IsTakenOnlyInASizeThatMayBe) {
  std::mt19937 random(1);
  int taken = 0;
  for (const std::string& good : {Bmp{}.Bytes(), Gif{}.Bytes(), PictureFile("dusk.jpg")}) {
    for (int i = 0; i < 1'000; ++i) {
      const auto decoded = Decoded(Mutated(good, random));
      if (!decoded) continue;
      ++taken;
      const auto pixels = static_cast<std::uint64_t>(decoded->image.width) *
                          static_cast<std::uint64_t>(decoded->image.height);
      EXPECT_TRUE(pixels >= 1 && pixels <= kMostPixels);
    }
  }
  EXPECT_GT(taken, 100);
}

}  // namespace
}  // namespace qlx::platform
