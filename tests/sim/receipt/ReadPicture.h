// A PNG as pixels.
#pragma once

#include <filesystem>
#include <memory>

#include <cairo.h>

namespace qlx::receipt {

class ReadPicture {
 public:
  explicit ReadPicture(const std::filesystem::path& path)
      : surface_(cairo_image_surface_create_from_png(path.c_str()), cairo_surface_destroy) {}

  bool opened() const { return cairo_surface_status(surface_.get()) == CAIRO_STATUS_SUCCESS; }
  int width() const { return cairo_image_surface_get_width(surface_.get()); }
  int height() const { return cairo_image_surface_get_height(surface_.get()); }

  /// The share of dark pixels in a rectangle that lies in the picture.
  double Ink(int x, int y, int width, int height) const {
    int dark = 0;
    for (int row = y; row < y + height; ++row) {
      for (int column = x; column < x + width; ++column) dark += Grey(column, row) < 128 ? 1 : 0;
    }
    return static_cast<double>(dark) / (width * height);
  }

 private:
  /// 0 black to 255 white.
  int Grey(int x, int y) const {
    const unsigned char* const row =
        cairo_image_surface_get_data(surface_.get()) + y * cairo_image_surface_get_stride(surface_.get());
    return cairo_image_surface_get_format(surface_.get()) == CAIRO_FORMAT_A8 ? row[x] : row[4 * x];
  }

  std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface_;
};

}  // namespace qlx::receipt
