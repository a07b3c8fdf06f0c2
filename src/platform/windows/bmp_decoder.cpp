#include <algorithm>
#include <cstdlib>

#include "platform/bmp_header.h"
#include "platform/picture_decoders.h"
#include "platform/windows/bmp_unpacked.h"
#include "platform/windows/gdi_plus.h"

namespace qlx::platform {
namespace {

enum Compression : std::uint32_t { kNone, kRuns8, kRuns4, kBitFields };

/// Memory for pixels is asked for in such steps, so that a file that lies about its size takes none.
constexpr std::uint64_t kStep = std::uint64_t{1} << 20;

void Put(std::vector<std::uint8_t>& bytes, std::uint64_t value, int size) {
  for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

bool Append(PictureBytes& file, std::uint64_t count, std::vector<std::uint8_t>& bytes) {
  while (count > 0) {
    const auto step = static_cast<std::size_t>(std::min(count, kStep));
    bytes.resize(bytes.size() + step);
    if (!file.Read(std::span(bytes).last(step))) return false;
    count -= step;
  }
  return true;
}

/// The headers of a bitmap file of the same pixels and nothing uncommon, its palette complete.
std::vector<std::uint8_t> PlainHeaders(const BmpHeader& header) {
  const auto palette = header.bits_per_pixel > 8 ? std::vector<BmpColour>() : BmpPalette(header);
  std::vector<std::uint8_t> bytes = {'B', 'M'};
  Put(bytes, 0, 8);
  Put(bytes, 14 + 40 + palette.size() * 4, 4);
  Put(bytes, 40, 4);
  Put(bytes, static_cast<std::uint64_t>(header.width), 4);
  Put(bytes, static_cast<std::uint64_t>(header.height), 4);
  Put(bytes, 1, 2);
  Put(bytes, static_cast<std::uint64_t>(header.bits_per_pixel), 2);
  Put(bytes, 0, 24);
  for (const BmpColour& colour : palette) {
    bytes.insert(bytes.end(), colour.rbegin(), colour.rend());
    bytes.push_back(0);
  }
  return bytes;
}

std::optional<RgbImage> DecodePlain(const BmpHeader& header, PictureBytes& bytes) {
  const auto height = static_cast<std::uint64_t>(std::abs(header.height));
  auto file = PlainHeaders(header);
  if (!Append(bytes, header.RowBytes() * height, file)) return std::nullopt;
  return DecodeByGdiPlus(file, static_cast<int>(header.width), static_cast<int>(height));
}

std::optional<RgbImage> DecodePixels(const BmpHeader& header, PictureBytes& bytes) {
  const int bits = header.bits_per_pixel;
  switch (header.compression) {
    case kNone:
      return bits == 16 ? ReadMaskedBmp(header, bytes) : DecodePlain(header, bytes);
    case kBitFields:
      return bits == 16 || bits == 32 ? ReadMaskedBmp(header, bytes) : std::nullopt;
    case kRuns8:
      return bits == 8 ? ReadBmpRuns(header, bytes) : std::nullopt;
    case kRuns4:
      return bits == 4 ? ReadBmpRuns(header, bytes) : std::nullopt;
    default:
      return std::nullopt;
  }
}

}  // namespace

/// GDI+ gets the kinds that all its versions read alike, with the headers of the commonest.
std::optional<DecodedImage> DecodeBmp(PictureBytes& bytes) {
  const auto header = ReadBmpHeader(bytes);
  if (!header || !IsSizeAllowed(header->width, std::abs(header->height))) return std::nullopt;
  auto image = DecodePixels(*header, bytes);
  if (!image) return std::nullopt;
  return DecodedImage{std::move(*image), header->bits_per_pixel};
}

}  // namespace qlx::platform
