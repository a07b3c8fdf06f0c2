// A test's own directory for a picture file, and what the decoder makes of it.
#pragma once

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "platform/image_file.h"
#include "tests/platform/pictures.h"
#include "tests/support/TemporaryDirectory.h"

namespace qlx::platform {

class PictureTest : public ::testing::Test {
 protected:
  std::filesystem::path Path(const std::string& name = "picture") const { return directory_.path() / name; }
  void Write(const std::string& bytes, const std::string& name = "picture") const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
  }
  std::optional<DecodedImage> Decoded(const std::string& bytes) const {
    Write(bytes);
    return DecodeImageFile(Path().wstring());
  }

  /// No rows when there is no picture.
  static test::Pixels PixelsOf(const std::optional<DecodedImage>& decoded) {
    test::Pixels pixels;
    for (int y = 0; decoded && y < decoded->image.height; ++y) {
      const auto row = decoded->image.Row(y);
      auto& out = pixels.emplace_back();
      for (std::size_t i = 0; i < row.size(); i += 3) {
        out.push_back(static_cast<std::uint32_t>(row[i] << 16 | row[i + 1] << 8 | row[i + 2]));
      }
    }
    return pixels;
  }
  test::Pixels PixelsOf(const std::string& bytes) const { return PixelsOf(Decoded(bytes)); }
  /// 0 when there is no picture.
  int DepthOf(const std::string& bytes) const {
    const auto decoded = Decoded(bytes);
    return decoded ? decoded->bits_per_pixel : 0;
  }

  test::TemporaryDirectory directory_;
};

}  // namespace qlx::platform
