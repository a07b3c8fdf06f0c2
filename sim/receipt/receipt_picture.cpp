#include "sim/receipt/receipt_picture.h"

#include <algorithm>

#include "sim/receipt/PaperSurface.h"
#include "sim/receipt/PrintStream.h"

namespace qlx::receipt {
namespace {

constexpr int kPaperWidth = Paper::kWidth + 2 * kPaperMargin;
/// Above the first line and below the last one.
constexpr int kPaperEnds = 24;
constexpr int kDash = 8;
/// What a partial cut leaves in the middle.
constexpr int kUncut = 64;

class PaperDrawing {
 public:
  explicit PaperDrawing(const Paper& paper) : surface_(kPaperWidth, paper.height + 2 * kPaperEnds) {
    for (const PlacedDots& dots : paper.dots) Draw(dots);
    for (const PlacedCut& cut : paper.cuts) Draw(cut);
    for (const PlacedText& text : paper.texts) Draw(text);
  }

  bool Save(const std::filesystem::path& path) const { return surface_.Save(path); }

 private:
  void Draw(const PlacedDots& placed) {
    const Dots& dots = placed.dots;
    auto row = dots.black.begin();
    for (int y = 0; y < dots.height; ++y, row += dots.width) {
      for (auto black = row; (black = std::find(black, row + dots.width, true)) != row + dots.width;) {
        const auto white = std::find(black, row + dots.width, false);
        Fill(placed.x + static_cast<int>(black - row) * placed.scale_x, placed.y + y * placed.scale_y,
             static_cast<int>(white - black) * placed.scale_x, placed.scale_y);
        black = white;
      }
    }
  }

  void Draw(const PlacedCut& cut) {
    for (int x = -kPaperMargin; x < Paper::kWidth + kPaperMargin; x += 2 * kDash) {
      const bool uncut = cut.partial && std::abs(x - Paper::kWidth / 2) < kUncut / 2;
      if (!uncut) surface_.Fill(x + kPaperMargin, cut.y + kPaperEnds, kDash, 1);
    }
  }

  void Draw(const PlacedText& text) {
    const int width = CellWidth(text.style) * static_cast<int>(text.bytes.size());
    const int height = CellHeight(text.style);
    if (text.style.reverse) Fill(text.x, text.y, width, height);
    surface_.Write(text.x + kPaperMargin, text.y + kPaperEnds, text);
    const int line = text.style.underline * text.style.height;
    Fill(text.x, text.y + height - line, width, line);
  }

  /// What can be printed on ends at its margins.
  void Fill(int x, int y, int width, int height) {
    const int right = std::min(x + width, Paper::kWidth);
    surface_.Fill(x + kPaperMargin, y + kPaperEnds, right - x, height);
  }

  PaperSurface surface_;
};

}  // namespace

Paper SetReceipt(std::string_view bytes) {
  PrintStream stream(bytes);
  Typesetter typesetter;
  while (!typesetter.full()) {
    const auto operation = stream.Next();
    if (!operation) break;
    typesetter.Add(*operation);
  }
  return typesetter.Finish();
}

bool DrawPaper(const Paper& paper, const std::filesystem::path& path) {
  if (PaperDrawing(paper).Save(path)) return true;
  std::error_code never_made;
  std::filesystem::remove(path, never_made);
  return false;
}

}  // namespace qlx::receipt
