#include "tests/platform/pictures.h"

#include <bit>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>

namespace qlx::test {
namespace {

constexpr char kAllColoursDeep = '\x70';
constexpr char kHasPalette = '\x80';
constexpr char kInterlaced = '\x40';

/// The bits of a colour's index.
int BitsOf(const std::vector<std::uint32_t>& palette) {
  return std::max(1, static_cast<int>(std::bit_width(palette.size() - 1)));
}

/// What a header says of its palette.
std::string Flags(const std::vector<std::uint32_t>& palette, char more) {
  const int flags = palette.empty() ? 0 : kHasPalette | (BitsOf(palette) - 1);
  return {static_cast<char>(flags | more)};
}

std::string Table(const std::vector<std::uint32_t>& palette) {
  std::string bytes;
  for (const std::uint32_t colour : palette) {
    for (const int shift : {16, 8, 0}) bytes += static_cast<char>(colour >> shift);
  }
  return bytes;
}

/// Pixels as codes of one length: the table is cleared before it makes them longer.
class GifData {
 public:
  explicit GifData(int code_size) : code_size_(code_size), clear_(1U << code_size) { Put(clear_); }

  void PutPixel(unsigned index) {
    if (since_clear_++ == clear_ - 2) {
      Put(clear_);
      since_clear_ = 1;
    }
    Put(index);
  }
  /// In blocks, each with its size in front.
  std::string Finish() {
    Put(clear_ + 1);
    if (bit_count_ > 0) codes_ += static_cast<char>(bits_);
    std::string bytes(1, static_cast<char>(code_size_));
    for (std::size_t at = 0; at < codes_.size(); at += 255) {
      const std::string block = codes_.substr(at, 255);
      bytes += static_cast<char>(block.size()) + block;
    }
    return bytes + std::string(1, '\0');
  }

 private:
  void Put(unsigned code) {
    bits_ |= code << bit_count_;
    for (bit_count_ += code_size_ + 1; bit_count_ >= 8; bit_count_ -= 8, bits_ >>= 8) {
      codes_ += static_cast<char>(bits_);
    }
  }

  const int code_size_;
  const unsigned clear_;
  unsigned since_clear_ = 0;
  std::uint32_t bits_ = 0;
  int bit_count_ = 0;
  std::string codes_;
};

/// Rows of a frame in the order of its file: the first one, and the step to the next.
struct Pass {
  std::size_t first;
  std::size_t step;
};
constexpr Pass kInPasses[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
constexpr Pass kPlain[] = {{0, 1}};

std::string FrameBytes(const GifFrame& frame, const std::vector<std::uint32_t>& palette) {
  const auto passes = frame.interlaced ? std::span<const Pass>(kInPasses) : std::span<const Pass>(kPlain);
  GifData data(std::max(2, BitsOf(palette)));
  for (const auto& [first, step] : passes) {
    for (std::size_t y = first; y < frame.rows.size(); y += step) {
      for (const char pixel : frame.rows[y]) data.PutPixel(static_cast<unsigned char>(pixel - '0'));
    }
  }
  std::string bytes;
  if (frame.transparent >= 0) bytes = FromHex("21F9 04 010000") + static_cast<char>(frame.transparent) + '\0';
  return bytes + "," + LittleEndian(frame.left, 2) + LittleEndian(frame.top, 2) +
         LittleEndian(static_cast<std::uint32_t>(frame.rows.front().size()), 2) +
         LittleEndian(static_cast<std::uint32_t>(frame.rows.size()), 2) +
         Flags(frame.palette, frame.interlaced ? kInterlaced : '\0') + Table(frame.palette) + data.Finish();
}

}  // namespace

std::string LittleEndian(std::uint32_t value, int size) {
  std::string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

std::string FromHex(std::string_view hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    if (hex[i] == ' ') ++i;
    bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
  }
  return bytes;
}

std::string Bmp::Bytes() const {
  std::string info = LittleEndian(info_size, 4);
  if (info_size == 12) {
    info += LittleEndian(width, 2) + LittleEndian(height, 2) + LittleEndian(1, 2) + LittleEndian(bits, 2);
  } else {
    info += LittleEndian(width, 4) + LittleEndian(height, 4) + LittleEndian(1, 2) + LittleEndian(bits, 2) +
            LittleEndian(compression, 4) + std::string(12, '\0') + LittleEndian(colours_used, 4) +
            std::string(4, '\0') + more_info;
    if (info_size > info.size() && info_size < 1000) info.resize(info_size);
  }
  const std::size_t true_offset = 14 + info.size() + table.size() + gap.size();
  const std::size_t size = true_offset + pixels.size();
  return "BM" + LittleEndian(static_cast<std::uint32_t>(size), 4) + LittleEndian(0, 4) +
         LittleEndian(offset.value_or(static_cast<std::uint32_t>(true_offset)), 4) + info + table + gap +
         pixels;
}

std::string FourColours() {
  return FromHex("0000FF00 00FF0000 FF000000 FFFFFF00");
}

std::string PictureFile(const std::string& name) {
  std::ifstream file(std::string(QLX_PICTURES) + "/" + name, std::ios::binary);
  if (!file) throw std::runtime_error("there is no picture " + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string Gif::Bytes() const {
  std::string bytes = "GIF89a" + LittleEndian(width, 2) + LittleEndian(height, 2) +
                      Flags(palette, kAllColoursDeep) + std::string(2, '\0') + Table(palette);
  for (const GifFrame& frame : frames) {
    bytes += FrameBytes(frame, frame.palette.empty() ? palette : frame.palette);
  }
  return bytes + ";";
}

}  // namespace qlx::test
