#include "platform/image_file.h"

#include <algorithm>
#include <array>

namespace qlx::platform {
namespace {

constexpr std::size_t kHeader = 54;

void PutLittleEndian(std::vector<std::uint8_t>& bytes, std::uint32_t value, int size) {
  for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

/// BITMAPFILEHEADER and BITMAPINFOHEADER.
void PutHeader(std::vector<std::uint8_t>& bytes, const RgbImage& image, std::size_t pixel_bytes) {
  struct Field {
    std::size_t value;
    int size;
  };
  const auto width = static_cast<std::size_t>(image.width);
  const auto height = static_cast<std::size_t>(image.height);
  const std::array<Field, 15> fields = {{{'B' | 'M' << 8, 2},
                                         {kHeader + pixel_bytes, 4},
                                         {0, 4},
                                         {kHeader, 4},
                                         {40, 4},
                                         {width, 4},
                                         {height, 4},
                                         {1, 2},
                                         {24, 2},
                                         {0, 4},
                                         {pixel_bytes, 4},
                                         {0, 4},
                                         {0, 4},
                                         {0, 4},
                                         {0, 4}}};
  for (const Field& field : fields)
    PutLittleEndian(bytes, static_cast<std::uint32_t>(field.value), field.size);
}

}  // namespace

std::vector<std::uint8_t> EncodeBmp(const RgbImage& image) {
  const std::size_t padding = static_cast<std::size_t>(image.width) % 4;
  const std::size_t row_bytes = static_cast<std::size_t>(image.width) * 3 + padding;
  const std::size_t pixel_bytes = row_bytes * static_cast<std::size_t>(image.height);
  std::vector<std::uint8_t> bytes;
  bytes.reserve(kHeader + pixel_bytes);
  PutHeader(bytes, image, pixel_bytes);
  bytes.resize(kHeader + pixel_bytes);
  std::uint8_t* out = bytes.data() + kHeader;
  for (int y = image.height - 1; y >= 0; --y) {
    const auto row = image.Row(y);
    for (std::size_t i = 0; i < row.size(); i += 3) {
      *out++ = row[i + 2];
      *out++ = row[i + 1];
      *out++ = row[i];
    }
    out += padding;
  }
  return bytes;
}

}  // namespace qlx::platform
