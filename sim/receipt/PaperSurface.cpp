#include "sim/receipt/PaperSurface.h"

#include <algorithm>
#include <string>

#include "sim/receipt/code_tables.h"

namespace qlx::receipt {
namespace {

constexpr const char* kFamily = "DejaVu Sans Mono,monospace";
/// Characters are scaled to their cells from this size, pixels an em.
constexpr int kSize = 64;

PangoFontDescription* MakeFont(PangoWeight weight) {
  PangoFontDescription* font = pango_font_description_new();
  pango_font_description_set_family_static(font, kFamily);
  pango_font_description_set_absolute_size(font, kSize * PANGO_SCALE);
  pango_font_description_set_weight(font, weight);
  return font;
}

}  // namespace

PaperSurface::PaperSurface(int width, int height)
    : width_(width),
      height_(height),
      surface_(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height)),
      context_(cairo_create(surface_.get())),
      font_(MakeFont(PANGO_WEIGHT_NORMAL)),
      bold_(MakeFont(PANGO_WEIGHT_BOLD)) {
  cairo_paint(context_.get());
  MakeLayout();
}

/// Without hinting, so that every character advances by the same.
void PaperSurface::MakeLayout() {
  const std::unique_ptr<PangoContext, Free<g_object_unref>> context(
      pango_cairo_create_context(context_.get()));
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(context.get(), options);
  cairo_font_options_destroy(options);
  pango_context_set_round_glyph_positions(context.get(), FALSE);
  layout_.reset(pango_layout_new(context.get()));
  pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
  pango_layout_set_font_description(layout_.get(), font_.get());
  pango_layout_set_text(layout_.get(), "0", 1);
  int width = 0;
  pango_layout_get_size(layout_.get(), &width, nullptr);
  advance_ = std::max(width, PANGO_SCALE) / static_cast<double>(PANGO_SCALE);
}

void PaperSurface::Fill(int x, int y, int width, int height) {
  const int left = std::clamp(x, 0, width_);
  const int right = std::clamp(x + width, 0, width_);
  cairo_surface_flush(surface_.get());
  unsigned char* const pixels = cairo_image_surface_get_data(surface_.get());
  if (pixels == nullptr) return;
  const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface_.get());
  for (int row = std::clamp(y, 0, height_); row < std::clamp(y + height, 0, height_); ++row) {
    std::fill_n(pixels + row * stride + left, right - left, static_cast<unsigned char>(0));
  }
  cairo_surface_mark_dirty(surface_.get());
}

void PaperSurface::Write(int x, int y, const PlacedText& text) {
  const TextStyle& style = text.style;
  const int cell_width = CellWidth(style);
  const std::string utf8 = DecodeText(text.bytes, style.table);
  cairo_t* const context = context_.get();
  cairo_save(context);
  cairo_set_operator(context, style.reverse ? CAIRO_OPERATOR_OVER : CAIRO_OPERATOR_DEST_OUT);
  cairo_translate(context, x, y + CellAscent(style));
  // The ratio of the cells' sides is the fonts' own but for the multiples.
  const double scale = cell_width / (advance_ * style.width);
  cairo_scale(context, scale * style.width, scale * style.height);
  pango_layout_set_font_description(layout_.get(), style.bold ? bold_.get() : font_.get());
  pango_layout_set_text(layout_.get(), utf8.data(), static_cast<int>(utf8.size()));
  pango_cairo_show_layout_line(context, pango_layout_get_line_readonly(layout_.get(), 0));
  cairo_restore(context);
}

bool PaperSurface::Save(const std::filesystem::path& path) const {
  return cairo_surface_write_to_png(surface_.get(), path.c_str()) == CAIRO_STATUS_SUCCESS;
}

}  // namespace qlx::receipt
