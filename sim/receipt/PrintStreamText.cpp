// The commands that style text, place it, and move and cut the paper.
#include <algorithm>

#include "sim/receipt/PrintStream.h"
#include "sim/receipt/command_parameters.h"

namespace qlx::receipt {
namespace {

constexpr int kDefaultSpacing = 30;
/// From the print head to the knife: a form feed brings the last line there.
constexpr int kToKnife = 90;

}  // namespace

void PrintStream::Reset(Parameters) {
  const PrintStream fresh({});
  style_ = fresh.style_;
  line_spacing_ = fresh.line_spacing_;
  area_ = fresh.area_;
  bar_ = fresh.bar_;
  next_ = receipt::Reset{};
}

void PrintStream::LineFeed(Parameters) {
  next_ = Feed{line_spacing_};
}

void PrintStream::FormFeed(Parameters) {
  next_ = Cut{kToKnife, false};
}

void PrintStream::HorizontalTab(Parameters) {
  next_ = Tab{};
}

void PrintStream::SelectMode(Parameters mode) {
  const int bits = ByteAt(mode, 0);
  style_.font_b = (bits & 0x01) != 0;
  style_.bold = (bits & 0x08) != 0;
  style_.height = (bits & 0x10) != 0 ? 2 : 1;
  style_.width = (bits & 0x20) != 0 ? 2 : 1;
  style_.underline = (bits & 0x80) != 0 ? 1 : 0;
}

void PrintStream::SelectSize(Parameters size) {
  const int bits = ByteAt(size, 0);
  style_.height = (bits & 0x07) + 1;
  style_.width = ((bits >> 4) & 0x07) + 1;
}

void PrintStream::SelectFont(Parameters font) {
  style_.font_b = DigitAt(font, 0) == 1;
}

void PrintStream::Embolden(Parameters on) {
  style_.bold = (ByteAt(on, 0) & 1) != 0;
}

void PrintStream::Underline(Parameters thickness) {
  style_.underline = std::min(DigitAt(thickness, 0), 2);
}

void PrintStream::Reverse(Parameters on) {
  style_.reverse = (ByteAt(on, 0) & 1) != 0;
}

void PrintStream::SelectTable(Parameters table) {
  style_.table = static_cast<std::uint8_t>(ByteAt(table, 0));
}

void PrintStream::SelectAlignment(Parameters alignment) {
  const int number = DigitAt(alignment, 0);
  if (number <= 2) next_ = Align{static_cast<Alignment>(number)};
}

void PrintStream::DefaultSpacing(Parameters) {
  line_spacing_ = kDefaultSpacing;
}

void PrintStream::SetSpacing(Parameters dots) {
  line_spacing_ = ByteAt(dots, 0);
}

void PrintStream::FeedDots(Parameters dots) {
  next_ = Feed{ByteAt(dots, 0)};
}

void PrintStream::FeedLines(Parameters lines) {
  next_ = Feed{ByteAt(lines, 0) * line_spacing_};
}

void PrintStream::MoveAbsolute(Parameters dots) {
  next_ = MoveTo{WordAt(dots, 0), false};
}

void PrintStream::MoveRelative(Parameters dots) {
  next_ = MoveTo{static_cast<std::int16_t>(WordAt(dots, 0)), true};
}

void PrintStream::SetLeftMargin(Parameters dots) {
  area_.left = WordAt(dots, 0);
  next_ = area_;
}

void PrintStream::SetAreaWidth(Parameters dots) {
  area_.width = WordAt(dots, 0);
  next_ = area_;
}

void PrintStream::FullCut(Parameters) {
  next_ = Cut{0, false};
}

void PrintStream::PartialCut(Parameters) {
  next_ = Cut{0, true};
}

/// 0 and 1 cut where the paper is; 65, 66 and their companions feed it by one more byte first.
void PrintStream::CutPaper(Parameters mode) {
  const int number = ByteAt(mode, 0);
  const bool feeds = number > '9';
  const int feed = feeds ? kToKnife + ByteAt(Take(1), 0) : 0;
  const bool partial = feeds ? number % 2 == 0 : number % 2 == 1;
  next_ = Cut{feed, partial};
}

void PrintStream::SkipToNul(Parameters) {
  constexpr std::size_t kMostTabs = 32;
  TakeUntilNul(kMostTabs);
}

/// Own characters: each has its width, and so many columns of as many bytes as all are high.
void PrintStream::SkipCharacters(Parameters range) {
  const auto height = static_cast<std::size_t>(ByteAt(range, 0));
  for (int code = ByteAt(range, 1); code <= ByteAt(range, 2); ++code) {
    Take(static_cast<std::size_t>(ByteAt(Take(1), 0)) * height);
  }
}

void PrintStream::SkipBlock(Parameters name_and_length) {
  Take(static_cast<std::size_t>(WordAt(name_and_length, 1)));
}

void PrintStream::SkipUserData(Parameters address_and_length) {
  Take(static_cast<std::size_t>(WordAt(address_and_length, 5)));
}

}  // namespace qlx::receipt
