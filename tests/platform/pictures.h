// Picture files, the same bytes on every platform. Bitmap and GIF files are put together field by field, so
// that a test can make any of them lie; JPEG files are those in pictures/.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qlx::test {

/// Rows from the top, each pixel 0xRRGGBB.
using Pixels = std::vector<std::vector<std::uint32_t>>;

std::string LittleEndian(std::uint32_t value, int size);
std::string FromHex(std::string_view hex);

/// 2 x 2 pixels of 24 bits, but for what a test changes.
struct Bmp {
  std::uint32_t info_size = 40;
  std::uint32_t width = 2;
  std::uint32_t height = 2;
  std::uint32_t bits = 24;
  std::uint32_t compression = 0;
  std::uint32_t colours_used = 0;
  std::string more_info{};                ///< what follows the first 40 bytes of a longer info header
  std::string table{};                    ///< palette or bit masks
  std::string gap{};                      ///< between table and pixels
  std::optional<std::uint32_t> offset{};  ///< of the pixels, where it is not the true one
  std::string pixels = std::string(16, '\x55');

  std::string Bytes() const;
};

/// Four palette entries: red, green, blue, white.
std::string FourColours();

/// The bytes of the file `name` in pictures/.
std::string PictureFile(const std::string& name);

struct GifFrame {
  std::uint32_t left = 0;
  std::uint32_t top = 0;
  std::vector<std::string> rows;  ///< one character for each pixel: '0' and its index
  bool interlaced = false;
  int transparent = -1;
  std::vector<std::uint32_t> palette{};  ///< its own, a power of two of colours
};
struct Gif {
  std::uint32_t width = 4;
  std::uint32_t height = 4;
  std::vector<std::uint32_t> palette = {0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF};  ///< none: no global one
  std::vector<GifFrame> frames = {{.rows = {"0123", "1230", "2301", "3012"}}};

  std::string Bytes() const;
};

}  // namespace qlx::test
