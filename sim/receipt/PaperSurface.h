// The picture of a receipt while it is drawn.
#pragma once

#include <filesystem>
#include <memory>

#include <cairo.h>
#include <pango/pangocairo.h>

#include "sim/receipt/Typesetter.h"

namespace qlx::receipt {

/// Coverage only, so that the file is grey: what is opaque is paper, and ink takes it away.
class PaperSurface {
 public:
  /// Both in pixels, 1 to 32767. White.
  PaperSurface(int width, int height);

  /// Blackens a rectangle, or what of it is on the surface.
  void Fill(int x, int y, int width, int height);
  /// With its upper left corner at x, y.
  void Write(int x, int y, const PlacedText& text);
  bool Save(const std::filesystem::path& path) const;

 private:
  template <auto kFree>
  struct Free {
    template <typename T>
    void operator()(T* object) const {
      kFree(object);
    }
  };
  using Font = std::unique_ptr<PangoFontDescription, Free<pango_font_description_free>>;

  void MakeLayout();

  int width_;
  int height_;
  std::unique_ptr<cairo_surface_t, Free<cairo_surface_destroy>> surface_;
  std::unique_ptr<cairo_t, Free<cairo_destroy>> context_;
  std::unique_ptr<PangoLayout, Free<g_object_unref>> layout_;
  Font font_;
  Font bold_;
  double advance_ = 1;  ///< of a character at the size that the fonts have
};

}  // namespace qlx::receipt
