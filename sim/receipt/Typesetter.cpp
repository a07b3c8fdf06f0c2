#include "sim/receipt/Typesetter.h"

#include <algorithm>
#include <utility>

#include "sim/receipt/bar_code.h"

namespace qlx::receipt {
namespace {

constexpr int kTabStop = 8 * 12;
/// Around the line along which the paper is cut.
constexpr int kCutMargin = 16;
/// Between the bars of a code and its text.
constexpr int kTextGap = 6;
constexpr TextStyle kNoteStyle{.font_b = true, .reverse = true};

}  // namespace

int CellWidth(const TextStyle& style) {
  return (style.font_b ? 9 : 12) * style.width;
}

int CellHeight(const TextStyle& style) {
  return (style.font_b ? 17 : 24) * style.height;
}

int CellAscent(const TextStyle& style) {
  return CellHeight(style) * 4 / 5;
}

void Typesetter::Add(const PrintOperation& operation) {
  if (full_) return;
  std::visit([this](const auto& one) { Set(one); }, operation);
  if (paper_.items() + line_.items() >= Paper::kMostItems) full_ = true;
}

Paper Typesetter::Finish() {
  EndLine(0);
  if (std::exchange(full_, false)) {
    paper_.texts.push_back({0, paper_.height, "the rest is not drawn", kNoteStyle});
    paper_.height += CellHeight(kNoteStyle);
  }
  return std::move(paper_);
}

void Typesetter::Set(const Text& text) {
  const int width = CellWidth(text.style);
  for (std::size_t set = 0; set < text.bytes.size() && !full_;) {
    if (Room() < width && cursor_ > 0) EndLine(text.line_spacing);
    const auto fitting = static_cast<std::size_t>(std::max(1, Room() / width));
    SetPiece(text.bytes.substr(set, fitting), text.style);
    set += fitting;
  }
}

void Typesetter::Set(const Feed& feed) {
  EndLine(feed.dots);
}

void Typesetter::Set(const Tab&) {
  cursor_ = std::min((cursor_ / kTabStop + 1) * kTabStop, area_.width);
}

void Typesetter::Set(const MoveTo& move) {
  cursor_ = std::clamp(move.relative ? cursor_ + move.dots : move.dots, 0, area_.width);
}

void Typesetter::Set(const Align& align) {
  alignment_ = align.alignment;
}

void Typesetter::Set(const PrintArea& area) {
  area_.left = std::min(area.left, Paper::kWidth - 1);
  area_.width = std::clamp(area.width, 1, Paper::kWidth - area_.left);
}

void Typesetter::Set(const Reset&) {
  alignment_ = Alignment::kLeft;
  area_ = {0, Paper::kWidth};
}

void Typesetter::Set(const Image& image) {
  if (!image.in_line) EndLine(0);
  SetDots(image.dots, image.scale_x, image.scale_y);
  if (!image.in_line) EndLine(0);
}

void Typesetter::Set(const BarCode& code) {
  EndLine(0);
  const auto symbol = EncodeBarCode(code);
  const int width = symbol ? symbol->modules.width * code.module_width : 0;
  if (!symbol || width > area_.width) {
    const std::string why = symbol ? " is too wide" : " is not printed";
    return SetLineOf(NameOf(code.symbology) + why, kNoteStyle);
  }
  EndLine(kTextGap);
  const TextStyle style{.font_b = code.text_font_b};
  if (code.text_above) SetLineOf(symbol->text, style);
  const int bar_height = code.height > 0 ? code.height : code.module_width;
  SetDots(symbol->modules, code.module_width, bar_height);
  EndLine(symbol->modules.height * bar_height + kTextGap);
  if (code.text_below) SetLineOf(symbol->text, style);
}

void Typesetter::Set(const Cut& cut) {
  EndLine(0);
  EndLine(cut.feed + kCutMargin);
  if (full_) return;
  paper_.cuts.push_back({paper_.height, cut.partial});
  EndLine(kCutMargin);
}

void Typesetter::Set(const Note& note) {
  Set(Text{note.text, kNoteStyle, CellHeight(kNoteStyle)});
}

void Typesetter::SetPiece(const std::string& bytes, const TextStyle& style) {
  line_.texts.push_back({cursor_, -CellAscent(style), bytes, style});
  ReachTo(cursor_ + static_cast<int>(bytes.size()) * CellWidth(style), CellAscent(style),
          CellHeight(style) - CellAscent(style));
}

void Typesetter::SetDots(Dots dots, int scale_x, int scale_y) {
  if (dots.black.empty()) return;
  const int width = dots.width * scale_x;
  const int height = dots.height * scale_y;
  line_.dots.push_back({cursor_, -height, std::move(dots), scale_x, scale_y});
  ReachTo(cursor_ + width, height, 0);
}

void Typesetter::SetLineOf(const std::string& bytes, const TextStyle& style) {
  const int height = CellHeight(style) + kTextGap;
  Set(Text{bytes, style, height});
  EndLine(height);
}

void Typesetter::ReachTo(int x, int ascent, int descent) {
  cursor_ = std::min(x, area_.width);
  reached_ = std::max(reached_, cursor_);
  ascent_ = std::max(ascent_, ascent);
  descent_ = std::max(descent_, descent);
}

/// A line that would go past the end of the paper is not set, but for what of a picture still fits.
void Typesetter::EndLine(int spacing) {
  Paper line = std::exchange(line_, {});
  const int ascent = std::exchange(ascent_, 0);
  const int height = ascent + std::exchange(descent_, 0);
  const int slack = area_.width - std::exchange(reached_, 0);
  cursor_ = 0;
  const int room = Paper::kMostDots - paper_.height;
  if (height > room && !line.texts.empty()) {
    full_ = true;
    return;
  }
  const int x =
      area_.left + (alignment_ == Alignment::kLeft ? 0 : slack / (alignment_ == Alignment::kCentre ? 2 : 1));
  const int base = paper_.height + ascent;
  for (PlacedText& text : line.texts) {
    text.x += x;
    text.y += base;
    paper_.texts.push_back(std::move(text));
  }
  for (PlacedDots& dots : line.dots) {
    dots.x += x;
    dots.y += base;
    paper_.dots.push_back(std::move(dots));
  }
  const int advance = std::max(spacing, height);
  full_ = full_ || advance > room;
  paper_.height += std::min(advance, room);
}

}  // namespace qlx::receipt
