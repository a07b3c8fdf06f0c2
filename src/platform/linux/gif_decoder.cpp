#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include <gif_lib.h>

#include "platform/picture_decoders.h"

namespace qlx::platform {
namespace {

using Colour = std::array<std::uint8_t, 3>;

/// More than any encoder needs for a pixel: a stream of nothing but table resets must end at some time.
constexpr std::uint64_t kMostBytesPerPixel = 2;
constexpr std::uint64_t kMostBytesBesides = std::uint64_t{64} << 10;

/// The order in which an interlaced frame stores its rows (GIF 89a, appendix E).
struct Pass {
  int first;
  int step;
};
constexpr Pass kInterlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
constexpr Pass kPlain[] = {{0, 1}};

struct Input {
  PictureBytes& bytes;
  std::uint64_t limit;
  std::uint8_t last = 0;  ///< byte that was read
};

int ReadInput(GifFileType* gif, GifByteType* bytes, int count) {
  auto& input = *static_cast<Input*>(gif->UserData);
  const auto size = static_cast<std::size_t>(count);
  if (size == 0 || input.limit < size || !input.bytes.Read({bytes, size})) return 0;
  input.limit -= size;
  input.last = bytes[size - 1];
  return count;
}

struct CloseGif {
  void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};
using Gif = std::unique_ptr<GifFileType, CloseGif>;

/// Goes over one extension; `transparent` becomes the index that it makes transparent, if it names one.
bool ReadExtension(GifFileType* gif, int& transparent) {
  int function = 0;
  GifByteType* block = nullptr;
  if (DGifGetExtension(gif, &function, &block) == GIF_ERROR) return false;
  while (block != nullptr) {
    GraphicsControlBlock control{};
    if (function == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) {
      transparent = control.TransparentColor;
    }
    if (DGifGetExtensionNext(gif, &block) == GIF_ERROR) return false;
  }
  return true;
}

/// Goes to the first frame; false when there is none.
bool FindFrame(GifFileType* gif, int& transparent) {
  GifRecordType record = UNDEFINED_RECORD_TYPE;
  while (DGifGetRecordType(gif, &record) == GIF_OK) {
    if (record == IMAGE_DESC_RECORD_TYPE) return DGifGetImageHeader(gif) == GIF_OK;
    if (record != EXTENSION_RECORD_TYPE || !ReadExtension(gif, transparent)) return false;
  }
  return false;
}

/// An index behind the end of the table is black, a transparent one white.
std::array<Colour, 256> Palette(const ColorMapObject& table, int transparent) {
  std::array<Colour, 256> palette{};
  for (int i = 0; i < table.ColorCount; ++i) {
    const GifColorType& colour = table.Colors[i];
    palette[static_cast<std::size_t>(i)] = {colour.Red, colour.Green, colour.Blue};
  }
  if (transparent >= 0) palette[static_cast<std::size_t>(transparent)] = {0xFF, 0xFF, 0xFF};
  return palette;
}

/// The part of a frame's row that is on the screen.
void PutRow(std::span<const std::uint8_t> indexes, const std::array<Colour, 256>& palette, int left,
            std::span<std::uint8_t> row) {
  for (std::size_t i = 0, at = static_cast<std::size_t>(left) * 3; i < indexes.size() && at < row.size();
       ++i) {
    for (const std::uint8_t channel : palette[indexes[i]]) row[at++] = channel;
  }
}

bool ReadFrame(GifFileType* gif, const std::array<Colour, 256>& palette, const RgbImage& screen) {
  const GifImageDesc& frame = gif->Image;
  std::vector<std::uint8_t> indexes(static_cast<std::size_t>(frame.Width));
  for (const Pass& pass :
       frame.Interlace ? std::span<const Pass>(kInterlaced) : std::span<const Pass>(kPlain)) {
    for (int y = pass.first; y < frame.Height; y += pass.step) {
      if (DGifGetLine(gif, indexes.data(), frame.Width) == GIF_ERROR) return false;
      if (frame.Top + y < screen.height) PutRow(indexes, palette, frame.Left, screen.Row(frame.Top + y));
    }
  }
  return true;
}

}  // namespace

/// On giflib, which reads one frame in one pass; gdk-pixbuf begins it again with every block it is given.
std::optional<DecodedImage> DecodeGif(PictureBytes& bytes) {
  Input input{bytes, UINT64_MAX};
  const Gif gif(DGifOpen(&input, ReadInput, nullptr));
  if (!gif) return std::nullopt;
  int transparent = NO_TRANSPARENT_COLOR;
  if (!FindFrame(gif.get(), transparent)) return std::nullopt;
  const GifImageDesc& frame = gif->Image;
  const ColorMapObject* const table = frame.ColorMap != nullptr ? frame.ColorMap : gif->SColorMap;
  if (table == nullptr || !IsSizeAllowed(frame.Width, frame.Height)) return std::nullopt;
  // The last byte of a frame's header says how many bits a colour takes; giflib refuses too many, not none.
  if (input.last == 0) return std::nullopt;

  auto screen = NewImage(gif->SWidth, gif->SHeight);
  if (!screen) return std::nullopt;
  std::fill_n(screen->pixels.get(), screen->stride * static_cast<std::size_t>(screen->height), 0xFF);
  input.limit = static_cast<std::uint64_t>(frame.Width) * static_cast<std::uint64_t>(frame.Height) *
                    kMostBytesPerPixel +
                kMostBytesBesides;
  if (!ReadFrame(gif.get(), Palette(*table, transparent), *screen)) return std::nullopt;
  return DecodedImage{std::move(*screen), table->BitsPerPixel};
}

}  // namespace qlx::platform
