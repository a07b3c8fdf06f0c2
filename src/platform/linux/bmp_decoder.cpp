#include <gdk-pixbuf/gdk-pixbuf.h>

#include "platform/bmp_header.h"
#include "platform/picture_decoders.h"

namespace qlx::platform {
namespace {

/// A loader for BMP alone: no other format's code ever sees the bytes.
class BmpLoader {
 public:
  BmpLoader() : loader_(gdk_pixbuf_loader_new_with_type("bmp", nullptr)) {
    if (loader_ == nullptr) return;
    g_signal_connect(loader_, "size-prepared", G_CALLBACK(OnSize), nullptr);
    g_signal_connect(loader_, "area-updated", G_CALLBACK(OnRows), this);
  }
  BmpLoader(const BmpLoader&) = delete;
  BmpLoader& operator=(const BmpLoader&) = delete;
  ~BmpLoader() {
    if (loader_ == nullptr) return;
    gdk_pixbuf_loader_close(loader_, nullptr);
    g_object_unref(loader_);
  }

  bool Write(std::span<const std::uint8_t> bytes) {
    return loader_ != nullptr &&
           gdk_pixbuf_loader_write(loader_, bytes.data(), bytes.size(), nullptr) != FALSE;
  }
  /// Owned by the loader; null before the decoder has read the header and when it refuses it.
  GdkPixbuf* Pixbuf() const { return gdk_pixbuf_loader_get_pixbuf(loader_); }
  int rows() const { return rows_; }

 private:
  static void OnSize(GdkPixbufLoader* loader, int width, int height, gpointer) {
    // A size of 0 makes the decoder stop before it asks for memory.
    if (!IsSizeAllowed(width, height)) gdk_pixbuf_loader_set_size(loader, 0, 0);
  }
  static void OnRows(GdkPixbufLoader*, int, int, int, int rows, gpointer self) {
    static_cast<BmpLoader*>(self)->rows_ += rows;
  }

  GdkPixbufLoader* loader_;
  int rows_ = 0;
};

/// Four bytes a pixel become three on white, inside the row.
void FlattenRow(std::uint8_t* row, int width) {
  const std::uint8_t* from = row;
  for (int x = 0; x < width; ++x, from += 4) {
    const unsigned alpha = from[3];
    for (int channel = 0; channel < 3; ++channel) *row++ = OnWhite(from[channel], alpha);
  }
}

/// The decoder's own memory as the image's: a copy would double the peak.
RgbImage TakePixels(GdkPixbuf* pixbuf) {
  RgbImage image;
  image.width = gdk_pixbuf_get_width(pixbuf);
  image.height = gdk_pixbuf_get_height(pixbuf);
  image.stride = static_cast<std::size_t>(gdk_pixbuf_get_rowstride(pixbuf));
  g_object_ref(pixbuf);
  image.pixels = {gdk_pixbuf_get_pixels(pixbuf), [pixbuf](std::uint8_t*) { g_object_unref(pixbuf); }};
  if (gdk_pixbuf_get_has_alpha(pixbuf) != FALSE) {
    for (int y = 0; y < image.height; ++y) FlattenRow(image.Row(y).data(), image.width);
  }
  return image;
}

}  // namespace

/// On gdk-pixbuf, the only library here that reads every kind of BMP.
std::optional<DecodedImage> DecodeBmp(PictureBytes& bytes) {
  const auto header = ReadBmpHeader(bytes);
  BmpLoader loader;
  if (!header || !loader.Write(header->bytes)) return std::nullopt;
  GdkPixbuf* const pixbuf = loader.Pixbuf();
  if (pixbuf == nullptr) return std::nullopt;
  while (loader.rows() < gdk_pixbuf_get_height(pixbuf)) {
    const auto block = bytes.Block();
    if (block.empty() || !loader.Write(block)) return std::nullopt;
    bytes.Drop(block.size());
  }
  return DecodedImage{TakePixels(pixbuf), header->bits_per_pixel};
}

}  // namespace qlx::platform
