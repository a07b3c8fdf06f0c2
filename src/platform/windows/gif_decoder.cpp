#include <algorithm>
#include <vector>

#include "platform/picture_decoders.h"
#include "platform/windows/gdi_plus.h"
#include "platform/windows/gif_frame.h"

namespace qlx::platform {
namespace {

/// `frame` on a white screen of `width` by `height`, as far as it is on it.
std::optional<RgbImage> OnScreen(const RgbImage& frame, const GifFrame& place) {
  auto screen = NewImage(place.screen_width, place.screen_height);
  if (!screen) return std::nullopt;
  std::fill_n(screen->pixels.get(), screen->stride * static_cast<std::size_t>(screen->height), 0xFF);
  const int width = std::min(frame.width, screen->width - place.left);
  const int height = std::min(frame.height, screen->height - place.top);
  for (int y = 0; y < height && width > 0; ++y) {
    const auto row = screen->Row(place.top + y).subspan(static_cast<std::size_t>(place.left) * 3);
    std::ranges::copy(frame.Row(y).first(static_cast<std::size_t>(width) * 3), row.begin());
  }
  return screen;
}

}  // namespace

/// GDI+ gets a file of the first frame alone: what surrounds it is not left to its versions' taste.
std::optional<DecodedImage> DecodeGif(PictureBytes& bytes) {
  const auto frame = ReadGifFrame(bytes);
  if (!frame) return std::nullopt;
  const auto picture = DecodeByGdiPlus(frame->file, frame->width, frame->height);
  if (!picture) return std::nullopt;
  auto screen = OnScreen(*picture, *frame);
  if (!screen) return std::nullopt;
  return DecodedImage{std::move(*screen), frame->bits_per_pixel};
}

}  // namespace qlx::platform
