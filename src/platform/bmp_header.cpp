#include "platform/bmp_header.h"

#include <algorithm>
#include <span>

namespace qlx::platform {
namespace {

constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kOffsetAt = 10;  // where the pixels begin
constexpr std::size_t kInfoSizeAt = kFileHeader;
constexpr std::size_t kWidthAt = kFileHeader + 4;
constexpr std::size_t kCompressionAt = kFileHeader + 16;
constexpr std::size_t kColoursUsedAt = kFileHeader + 32;

constexpr std::uint32_t kCoreHeader = 12;
constexpr std::uint32_t kInfoHeader = 40;
constexpr std::uint32_t kOs2Header = 64;
constexpr std::uint32_t kInfoSizes[] = {kCoreHeader, kInfoHeader, 52, 56, kOs2Header, 108, 124};
constexpr std::uint32_t kDepths[] = {1, 4, 8, 16, 24, 32};
constexpr std::uint32_t kBitFields = 3;
constexpr std::size_t kBitMasks = 12;

std::uint32_t LittleEndian(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t size) {
  std::uint32_t value = 0;
  for (std::size_t i = size; i-- > 0;) value = value << 8 | bytes[at + i];
  return value;
}

void PutLittleEndian(std::span<std::uint8_t> bytes, std::size_t at, std::size_t value) {
  for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

bool Append(PictureBytes& file, std::size_t count, std::vector<std::uint8_t>& bytes) {
  bytes.resize(bytes.size() + count);
  return file.Read(std::span(bytes).last(count));
}

/// Bytes of the palette, or of the bit masks that stand in its place.
std::optional<std::size_t> TableSize(std::span<const std::uint8_t> bytes, std::uint32_t info,
                                     std::uint32_t bits) {
  if (bits > 8) {
    const bool masks =
        (info == kInfoHeader || info == kOs2Header) && LittleEndian(bytes, kCompressionAt, 4) == kBitFields;
    return masks ? kBitMasks : 0;
  }
  const std::uint32_t most = 1U << bits;
  if (info == kCoreHeader) return std::size_t{most} * 3;
  const std::uint32_t used = LittleEndian(bytes, kColoursUsedAt, 4);
  if (used > most) return std::nullopt;
  return std::size_t{used == 0 ? most : used} * 4;
}

/// The old header has neither signs nor compression.
void ReadSize(std::uint32_t info, BmpHeader& header) {
  const auto& bytes = header.bytes;
  if (info == kCoreHeader) {
    header.width = LittleEndian(bytes, kWidthAt, 2);
    header.height = LittleEndian(bytes, kWidthAt + 2, 2);
    return;
  }
  header.width = static_cast<std::int32_t>(LittleEndian(bytes, kWidthAt, 4));
  header.height = static_cast<std::int32_t>(LittleEndian(bytes, kWidthAt + 4, 4));
  header.compression = LittleEndian(bytes, kCompressionAt, 4);
}

}  // namespace

std::optional<BmpHeader> ReadBmpHeader(PictureBytes& file) {
  BmpHeader header;
  auto& bytes = header.bytes;
  if (!Append(file, kFileHeader + 4, bytes)) return std::nullopt;
  const std::uint32_t info = LittleEndian(bytes, kInfoSizeAt, 4);
  if (std::ranges::find(kInfoSizes, info) == std::end(kInfoSizes)) return std::nullopt;
  if (!Append(file, info - 4, bytes)) return std::nullopt;

  const std::uint32_t bits = LittleEndian(bytes, kFileHeader + (info == kCoreHeader ? 10 : 14), 2);
  if (std::ranges::find(kDepths, bits) == std::end(kDepths)) return std::nullopt;
  header.bits_per_pixel = static_cast<int>(bits);
  ReadSize(info, header);
  header.table_at = bytes.size();
  const auto table = TableSize(bytes, info, bits);
  if (!table || !Append(file, *table, bytes)) return std::nullopt;

  const std::uint32_t offset = LittleEndian(bytes, kOffsetAt, 4);
  if (offset < bytes.size() || !file.Skip(offset - bytes.size())) return std::nullopt;
  PutLittleEndian(bytes, kOffsetAt, bytes.size());
  // Above 8 bits these colours are a hint to others; gdk-pixbuf takes more than one of them for a mistake.
  if (bits > 8 && info != kCoreHeader) PutLittleEndian(bytes, kColoursUsedAt, 0);
  return header;
}

}  // namespace qlx::platform
