// The commands that print pictures.
#include <algorithm>

#include "sim/receipt/PrintStream.h"
#include "sim/receipt/command_parameters.h"

namespace qlx::receipt {
namespace {

/// More would be wider than any paper or longer than what is drawn of one.
constexpr int kMostAcross = 2048;
constexpr int kMostDown = 16384;

bool BitAt(std::string_view bytes, std::size_t byte, int bit) {
  return byte < bytes.size() && ((static_cast<unsigned char>(bytes[byte]) >> (7 - bit)) & 1) != 0;
}

/// Eight dots a byte, the highest bit first, whole bytes a line; along the rows or down the columns. Lines
/// that are missing at the end are left out, the rest of one that is cut off is white.
Dots Unpack(std::string_view bytes, int width, int height, bool by_columns) {
  const auto stride = static_cast<std::size_t>(((by_columns ? height : width) + 7) / 8);
  const auto lines = static_cast<int>(stride == 0 ? 0 : (bytes.size() + stride - 1) / stride);
  (by_columns ? width : height) = std::min(lines, by_columns ? width : height);
  Dots dots{std::min(width, kMostAcross), std::min(height, kMostDown)};
  dots.black.reserve(static_cast<std::size_t>(dots.width) * static_cast<std::size_t>(dots.height));
  for (int y = 0; y < dots.height; ++y) {
    for (int x = 0; x < dots.width; ++x) {
      const auto line = static_cast<std::size_t>(by_columns ? x : y);
      const int place = by_columns ? y : x;
      dots.black.push_back(BitAt(bytes, line * stride + static_cast<std::size_t>(place / 8), place % 8));
    }
  }
  return dots;
}

std::size_t Product(int a, int b) {
  return static_cast<std::size_t>(a) * static_cast<std::size_t>(b);
}

/// The lowest bit doubles the width, the next one the height.
Image Scaled(Image image, int mode) {
  image.scale_x = (mode & 1) != 0 ? 2 : 1;
  image.scale_y = (mode & 2) != 0 ? 2 : 1;
  return image;
}

}  // namespace

void PrintStream::BitImage(Parameters mode_and_columns) {
  const int mode = ByteAt(mode_and_columns, 0);
  const bool tall = (mode & 0x20) != 0;
  if ((mode & ~0x21) != 0) return;
  const int columns = WordAt(mode_and_columns, 1);
  const int height = tall ? 24 : 8;
  const std::string_view bytes = Take(Product(columns, height / 8));
  next_ = Image{Unpack(bytes, columns, height, true), (mode & 1) != 0 ? 1 : 2, tall ? 1 : 3, true};
}

void PrintStream::RasterImage(Parameters mode_and_size) {
  const int bytes_across = WordAt(mode_and_size, 1);
  const int height = WordAt(mode_and_size, 3);
  const std::string_view bytes = Take(Product(bytes_across, height));
  next_ = Scaled({Unpack(bytes, bytes_across * 8, height, false), 1, 1, false}, ByteAt(mode_and_size, 0));
}

void PrintStream::DefineImage(Parameters size) {
  const int across = ByteAt(size, 0) * 8;
  const int down = ByteAt(size, 1);
  image_ = Image{Unpack(Take(Product(across, down)), across, down * 8, true), 1, 1, false};
}

void PrintStream::PrintImage(Parameters scale) {
  if (image_) next_ = Scaled(*image_, ByteAt(scale, 0));
}

void PrintStream::DefineLogos(Parameters count) {
  logos_.clear();
  for (int number = 1; number <= ByteAt(count, 0) && !rest_.empty(); ++number) {
    const std::string_view size = Take(4);
    const int across = WordAt(size, 0) * 8;
    const int down = WordAt(size, 2);
    logos_[number] = {Unpack(Take(Product(across, down)), across, down * 8, true), 1, 1, false};
  }
}

/// Most logos were stored in the printer long before this receipt.
void PrintStream::PrintLogo(Parameters number_and_scale) {
  const int number = ByteAt(number_and_scale, 0);
  const auto logo = logos_.find(number);
  if (logo == logos_.end()) {
    next_ = Note{"logo " + std::to_string(number)};
  } else {
    next_ = Scaled(logo->second, ByteAt(number_and_scale, 1));
  }
}

void PrintStream::Block(Parameters name_and_length) {
  const std::string_view data = Take(static_cast<std::size_t>(WordAt(name_and_length, 1)));
  if (name_and_length[0] == 'L') Graphics(data);
  if (name_and_length[0] == 'k') MatrixCode(data);
}

void PrintStream::LongBlock(Parameters name_and_length) {
  const auto low = static_cast<std::size_t>(WordAt(name_and_length, 1));
  const auto high = static_cast<std::size_t>(WordAt(name_and_length, 3));
  const std::string_view data = Take(low + 65536 * high);
  if (name_and_length[0] == 'L') Graphics(data);
}

/// Function 112 stores rows, 113 columns; 2 and 50 print what is stored, 69 a logo of the printer's own.
void PrintStream::Graphics(std::string_view data) {
  const int function = ByteAt(data, 1);
  if (function == 112 || function == 113) {
    const std::string_view bytes = data.substr(std::min<std::size_t>(data.size(), 10));
    graphics_ = Image{Unpack(bytes, WordAt(data, 6), WordAt(data, 8), function == 113),
                      std::clamp(ByteAt(data, 3), 1, 2), std::clamp(ByteAt(data, 4), 1, 2), false};
  } else if ((function == 2 || function == 50) && graphics_) {
    next_ = *graphics_;
  } else if (function == 69) {
    next_ = Note{"logo " + std::string(data.substr(std::min<std::size_t>(data.size(), 2), 2))};
  }
}

}  // namespace qlx::receipt
