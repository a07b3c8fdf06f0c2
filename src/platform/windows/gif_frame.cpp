#include "platform/windows/gif_frame.h"

#include <algorithm>
#include <array>

#include "platform/picture_decoders.h"
#include "platform/windows/GifCodes.h"

namespace qlx::platform {
namespace {

using Colour = std::array<std::uint8_t, 3>;
using Palette = std::vector<Colour>;

/// More than any encoder needs for a pixel: a stream of nothing but table resets must end at some time.
constexpr std::uint64_t kMostBytesPerPixel = 2;
constexpr std::uint64_t kMostBytesBesides = std::uint64_t{64} << 10;

constexpr std::uint8_t kExtension = 0x21;
constexpr std::uint8_t kGraphicsControl = 0xF9;
constexpr std::uint8_t kFrame = 0x2C;
constexpr std::uint8_t kEnd = 0x3B;
constexpr std::uint8_t kHasPalette = 0x80;
constexpr std::uint8_t kInterlaced = 0x40;

class Reader {
 public:
  explicit Reader(PictureBytes& bytes) : bytes_(bytes) {}

  std::optional<GifFrame> Read() {
    std::array<std::uint8_t, 13> screen{};
    if (!bytes_.Read(screen)) return std::nullopt;
    frame_.screen_width = Number(screen, 6);
    frame_.screen_height = Number(screen, 8);
    if (!ReadPalette(screen[10]) || !FindFrame() || !ReadFrame()) return std::nullopt;
    return std::move(frame_);
  }

 private:
  static int Number(std::span<const std::uint8_t> bytes, std::size_t at) {
    return bytes[at] | bytes[at + 1] << 8;
  }
  std::optional<std::uint8_t> Byte() {
    std::uint8_t byte = 0;
    if (!bytes_.Read({&byte, 1})) return std::nullopt;
    return byte;
  }

  /// In place of the one before, where `flags` announce one.
  bool ReadPalette(std::uint8_t flags) {
    if ((flags & kHasPalette) == 0) return true;
    frame_.bits_per_pixel = (flags & 7) + 1;
    palette_.resize(std::size_t{1} << frame_.bits_per_pixel);
    return std::ranges::all_of(palette_, [this](Colour& colour) { return bytes_.Read(colour); });
  }

  bool FindFrame() {
    for (auto block = Byte(); block != kFrame; block = Byte()) {
      if (block != kExtension || !ReadExtension()) return false;
    }
    return true;
  }

  bool ReadExtension() {
    const auto kind = Byte();
    for (auto size = Byte(); size; size = Byte()) {
      if (*size == 0) return kind.has_value();
      std::vector<std::uint8_t> block(*size);
      if (!bytes_.Read(block)) return false;
      if (kind == kGraphicsControl && block.size() == 4) {
        transparent_ = (block[0] & 1) != 0 ? std::optional(block[3]) : std::nullopt;
      }
    }
    return false;
  }

  bool ReadFrame() {
    std::array<std::uint8_t, 9> place{};
    if (!bytes_.Read(place)) return false;
    frame_.left = Number(place, 0);
    frame_.top = Number(place, 2);
    frame_.width = Number(place, 4);
    frame_.height = Number(place, 6);
    if (!IsSizeAllowed(frame_.width, frame_.height) ||
        !IsSizeAllowed(frame_.screen_width, frame_.screen_height)) {
      return false;
    }
    if (!ReadPalette(place[8]) || palette_.empty()) return false;
    WriteHeaders(place[8]);
    return CopyPixels();
  }

  void WriteHeaders(std::uint8_t flags) {
    constexpr std::size_t kAllColours = 256;
    palette_.resize(kAllColours);
    if (transparent_) palette_[*transparent_] = {0xFF, 0xFF, 0xFF};
    Put(std::array<std::uint8_t, 6>{'G', 'I', 'F', '8', '9', 'a'});
    PutSize();
    Put(std::array<std::uint8_t, 8>{0x70, 0, 0, kFrame, 0, 0, 0, 0});
    PutSize();
    Put(std::array{static_cast<std::uint8_t>(kHasPalette | (flags & kInterlaced) | 7)});
    for (const Colour& colour : palette_) Put(colour);
  }

  /// With their blocks' sizes; those after the last pixel too, which encoders fill up.
  bool CopyPixels() {
    const auto code_size = Byte();
    if (!code_size || *code_size < 1 || *code_size > 8) return false;
    Put(std::array{*code_size});
    const auto pixels = static_cast<std::uint64_t>(frame_.width) * static_cast<std::uint64_t>(frame_.height);
    GifCodes codes(*code_size, pixels);
    std::uint64_t left = pixels * kMostBytesPerPixel + kMostBytesBesides;
    std::array<std::uint8_t, 255> block{};
    for (auto size = Byte(); size; size = Byte()) {
      const auto data = std::span(block).first(*size);
      if (left < data.size() + 1 || !bytes_.Read(data) || !codes.Follow(data)) return false;
      left -= data.size() + 1;
      Put(std::array{*size});
      Put(data);
      if (data.empty()) {
        Put(std::array{kEnd});
        return codes.complete();
      }
    }
    return false;
  }

  void Put(std::span<const std::uint8_t> bytes) {
    frame_.file.insert(frame_.file.end(), bytes.begin(), bytes.end());
  }
  void PutSize() {
    for (const int side : {frame_.width, frame_.height}) {
      Put(std::array{static_cast<std::uint8_t>(side), static_cast<std::uint8_t>(side >> 8)});
    }
  }

  PictureBytes& bytes_;
  GifFrame frame_;
  Palette palette_;
  std::optional<std::uint8_t> transparent_;
};

}  // namespace

std::optional<GifFrame> ReadGifFrame(PictureBytes& bytes) {
  return Reader(bytes).Read();
}

}  // namespace qlx::platform
