// What is known of a picture before GDI+ gets to see it, and what it gets to see.
#include <algorithm>

#include <gtest/gtest.h>

#include "platform/windows/JpegFile.h"
#include "platform/windows/gif_frame.h"
#include "tests/platform/pictures.h"

namespace qlx::platform {
namespace {

using test::FromHex;
using test::Gif;
using test::PictureFile;

PictureBytes BytesOf(std::string text) {
  return PictureBytes([text = std::move(text)](std::span<std::uint8_t> block) mutable {
    const std::size_t count = std::min(block.size(), text.size());
    std::copy_n(text.begin(), count, block.begin());
    text.erase(0, count);
    return count;
  });
}

/// What GDI+ would get; the empty text for nothing.
std::string CheckedJpeg(const std::string& bytes) {
  PictureBytes source = BytesOf(bytes);
  JpegFile file(source);
  return file.Read() ? std::string(file.bytes().begin(), file.bytes().end()) : "";
}

std::string CheckedGif(const std::string& bytes) {
  PictureBytes source = BytesOf(bytes);
  const auto frame = ReadGifFrame(source);
  return frame ? std::string(frame->file.begin(), frame->file.end()) : "";
}

std::size_t DataOf(const std::string& jpeg) {
  const std::size_t scan = jpeg.find("\xFF\xDA");
  return scan + 2 + static_cast<unsigned char>(jpeg[scan + 3]);
}

TEST(CheckedJpeg, OfEveryKindIsTheFileItself) {
  for (const char* name :
       {"scene.jpg", "scene_subsampled.jpg", "scene_progressive.jpg", "scene_grey.jpg", "scene_inks.jpg",
        "noise_with_restarts.jpg", "dusk.jpg", "dusk_progressive.jpg", "white_wide.jpg"}) {
    EXPECT_EQ(CheckedJpeg(PictureFile(name)), PictureFile(name)) << name;
  }
}

TEST(CheckedJpeg, LosesWhatIsNoPartOfThePicture) {
  const std::string good = PictureFile("scene.jpg");
  const std::string comment = FromHex("FFFE 0004 4142");
  const std::string profile = FromHex("FFE2 0004 4142");
  EXPECT_EQ(CheckedJpeg(std::string(good).insert(2, comment + profile) + "more"), good);
}

TEST(CheckedJpeg, HasTheUsualCodesWhenItsFileHasNone) {
  std::string without = PictureFile("dusk.jpg");
  for (std::size_t at = without.find("\xFF\xC4"); at != std::string::npos; at = without.find("\xFF\xC4")) {
    without.erase(at, 2U + static_cast<unsigned char>(without[at + 3]));
  }
  const std::string checked = CheckedJpeg(without);
  EXPECT_EQ(checked.size(), without.size() + 420);
  EXPECT_NE(checked.find("\xFF\xC4\x01\xA2"), std::string::npos);
}

TEST(CheckedJpeg, OfMoreRowsThanItsDataIsNone) {
  for (const char* name :
       {"scene.jpg", "scene_progressive.jpg", "scene_grey.jpg", "noise_with_restarts.jpg"}) {
    std::string bytes = PictureFile(name);
    const std::size_t frame = std::min(bytes.find("\xFF\xC0"), bytes.find("\xFF\xC2"));
    bytes[frame + 6] = static_cast<char>(bytes[frame + 6] + 16);
    EXPECT_EQ(CheckedJpeg(bytes), "") << name;
  }
}

TEST(CheckedJpeg, WithoutAByteOfItsDataAndWithItsEndIsNone) {
  for (const char* name : {"dusk.jpg", "scene_grey.jpg", "dusk_progressive.jpg"}) {
    const std::string good = PictureFile(name);
    EXPECT_EQ(CheckedJpeg(std::string(good).erase(good.size() - 4, 2)), "") << name;
    EXPECT_EQ(CheckedJpeg(good.substr(0, DataOf(good)) + "\xFF\xD9"), "") << name;
  }
}

TEST(CheckedJpeg, OfCodesThatDoNotExistIsNone) {
  const std::string good = PictureFile("dusk.jpg");
  std::string ones;
  for (int i = 0; i < 200; ++i) ones += FromHex("FF00");
  EXPECT_EQ(CheckedJpeg(good.substr(0, DataOf(good)) + ones + "\xFF\xD9"), "");
}

TEST(CheckedJpeg, WhoseRestartsAreMissingOrOutOfOrderIsNone) {
  const std::string good = PictureFile("noise_with_restarts.jpg");
  const std::size_t restart = good.find("\xFF\xD2");
  EXPECT_EQ(CheckedJpeg(std::string(good).replace(restart, 2, "\xFF\xD3")), "");
  EXPECT_EQ(CheckedJpeg(std::string(good).erase(restart, 2)), "");
}

TEST(CheckedJpeg, WithoutAComponentsScanIsNone) {
  // A frame of three components whose one scan holds the first alone.
  const std::string grey = PictureFile("greys.jpg");
  const std::string three = FromHex("FFC0 0011 08 0008 0010 03 011100 021100 031100");
  const std::size_t frame = grey.find("\xFF\xC0");
  EXPECT_EQ(CheckedJpeg(std::string(grey).replace(frame, 13, three)), "");
}

TEST(CheckedGif, IsTheFirstFrameAloneWithAllColours) {
  Gif gif{.width = 9, .height = 7};
  gif.frames[0].left = 3;
  gif.frames.push_back(gif.frames[0]);
  const std::string checked = CheckedGif(gif.Bytes());
  const std::string data = Gif{}.Bytes().substr(13 + 12 + 10);
  EXPECT_EQ(checked.substr(0, 13 + 10), FromHex("474946383961 0400 0400 70 00 00 2C 0000 0000 0400 0400 87"));
  EXPECT_EQ(checked.substr(13 + 10, 15), FromHex("FF0000 00FF00 0000FF FFFFFF 000000"));
  EXPECT_EQ(checked.substr(13 + 10 + 256 * 3), data);
}

TEST(CheckedGif, HasWhiteForItsTransparentColour) {
  Gif gif;
  gif.frames[0].transparent = 200;
  EXPECT_EQ(CheckedGif(gif.Bytes()).substr(13 + 10 + 200 * 3, 6), FromHex("FFFFFF 000000"));
}

TEST(CheckedGif, WhoseCodesEndBeforeItsPixelsIsNone) {
  const std::string head = Gif{}.Bytes().substr(0, 13 + 12 + 10);
  EXPECT_EQ(CheckedGif(head + FromHex("02 02 2C05 00 3B")), "");
  EXPECT_EQ(CheckedGif(head + FromHex("02 02 2400 00 3B")), "");
}

TEST(CheckedGif, OfCodesThatDoNotExistYetIsNone) {
  // A clear code and 6, which the second pixel would make; then the same with a pixel before it.
  const std::string head = Gif{.width = 1, .height = 1, .frames = {{.rows = {"0"}}}}.Bytes().substr(0, 35);
  EXPECT_EQ(CheckedGif(head + FromHex("02 01 34 00 3B")), "");
  EXPECT_NE(CheckedGif(head + FromHex("02 01 84 00 3B")), "");
}

}  // namespace
}  // namespace qlx::platform
