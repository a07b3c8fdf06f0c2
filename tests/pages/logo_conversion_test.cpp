// The store with real picture files.
#include <thread>

#include "pages/LogoStore.h"
#include "tests/pages/LogoTestbed.h"
#include "tests/platform/pictures.h"

namespace qlx {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kGreyTone = 0xC8C8C8;
constexpr std::uint32_t kRed = 0xFF0000;

class LogoConversion : public LogoTestbed {
 protected:
  LogoConversion() {
    LogoSystem system = System();
    system.decode = platform::DecodeImageFile;
    system.encode = platform::EncodeBmp;
    store_ = std::make_unique<LogoStore>(std::move(system));
  }

  void Add(const std::string& bytes, int encode_choice = 0) {
    Put("picture", bytes);
    store_->Add(0, (root_ / "picture").wstring(), encode_choice, ThrowEnded);
  }
  void Write() { store_->Write(*document_, {}, ThrowEnded); }

  /// Size and first pixel of the printer's bitmap for `bytes`.
  struct Printed {
    PixelSize size;
    std::uint32_t first = 0;

    bool operator==(const Printed&) const = default;
  };
  Printed PrintedFrom(const std::string& bytes, int encode_choice = 0) {
    Add(bytes, encode_choice);
    Write();
    const auto bitmap = platform::DecodeImageFile((root_ / "data/1.bmp").wstring());
    if (!bitmap || bitmap->bits_per_pixel != 24) return {};
    const auto row = bitmap->image.Row(0);
    return {{bitmap->image.width, bitmap->image.height},
            static_cast<std::uint32_t>(row[0] << 16 | row[1] << 8 | row[2])};
  }

  /// What the program ends with when it is to print `bytes`.
  std::string EndFor(const std::string& bytes) {
    try {
      PrintedFrom(bytes);
    } catch (const Ended& ended) {
      return ended.what();
    }
    return "no end";
  }

  std::unique_ptr<LogoStore> store_;
};

TEST_F(LogoConversion, AWhiteJpegBecomesUniformGrey) {
  EXPECT_EQ(PrintedFrom(test::PictureFile("white.jpg"), 2), (Printed{{64, 40}, kGreyTone}));
}

TEST_F(LogoConversion, AWhiteTrueColourBitmapBecomesUniformGrey) {
  EXPECT_EQ(PrintedFrom(test::Bmp{.pixels = std::string(16, '\xFF')}.Bytes()), (Printed{{32, 8}, kGreyTone}));
}

TEST_F(LogoConversion, AGifKeepsItsColours) {
  EXPECT_EQ(PrintedFrom(test::Gif().Bytes()), (Printed{{32, 8}, kRed}));
}

TEST_F(LogoConversion, APaletteBitmapKeepsItsColours) {
  const test::Bmp bitmap{
      .bits = 8, .colours_used = 4, .table = test::FourColours(), .pixels = std::string(8, '\0')};
  EXPECT_EQ(PrintedFrom(bitmap.Bytes()), (Printed{{32, 8}, kRed}));
}

TEST_F(LogoConversion, AGreyJpegKeepsItsShades) {
  EXPECT_EQ(PrintedFrom(test::PictureFile("white_grey.jpg")), (Printed{{32, 32}, kWhite}));
}

TEST_F(LogoConversion, ATruncatedLogoIsCutBeforeItIsConverted) {
  EXPECT_EQ(PrintedFrom(test::PictureFile("white_wide.jpg"), 3), (Printed{{472, 40}, kGreyTone}));
  EXPECT_THAT(Names("tmp/logos"), ElementsAre("picture.bmp"));
  store_->DeleteTempImages(ThrowEnded);
  EXPECT_THAT(Names("tmp/logos"), IsEmpty());
}

TEST_F(LogoConversion, WorksOnAWorkerThreadToo) {
  Add(test::Gif().Bytes());
  std::jthread([this] { Write(); }).join();
  EXPECT_THAT(Names("data"), ElementsAre("1.bmp"));
}

TEST_F(LogoConversion, APictureThatWasCutShortCannotBeLoaded) {
  const std::string whole = test::PictureFile("red.jpg");
  EXPECT_EQ(EndFor(whole.substr(0, whole.size() / 2)), "Error loading image!\nExiting program.");
}

TEST_F(LogoConversion, APictureThatClaimsTooManyPixelsCannotBeLoaded) {
  EXPECT_EQ(EndFor(test::Bmp{.width = 60'000, .height = 60'000}.Bytes()),
            "Error loading image!\nExiting program.");
}

TEST_F(LogoConversion, NothingIsLeftOfAThread) {
  const test::Bmp thread{.width = 10'000, .height = 1, .pixels = std::string(30'000, '\0')};
  EXPECT_EQ(EndFor(thread.Bytes()), "Error creating CImage!\nExiting program.");
}

}  // namespace
}  // namespace qlx
