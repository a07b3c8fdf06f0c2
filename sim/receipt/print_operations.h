// What a stream of ESC/POS bytes asks the receipt printer to do, one thing after the other. Lengths are dots,
// 203 to the inch.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace qlx::receipt {

enum class Alignment { kLeft, kCentre, kRight };

struct TextStyle {
  bool font_b = false;  ///< narrow: 9 x 17 dots a character instead of 12 x 24
  int width = 1;        ///< 1 to 8 times
  int height = 1;       ///< 1 to 8 times
  bool bold = false;
  bool reverse = false;    ///< white on black
  int underline = 0;       ///< its thickness, 0 to 2
  std::uint8_t table = 0;  ///< of the characters from 0x80 on, as ESC t takes it

  bool operator==(const TextStyle&) const = default;
};

/// A picture or a bar code in black and white.
struct Dots {
  int width = 0;
  int height = 0;
  std::vector<bool> black{};  ///< width x height, row by row

  bool operator==(const Dots&) const = default;
};

struct Text {
  std::string bytes;  ///< one a character
  TextStyle style;
  int line_spacing;  ///< from one line to the next, where it goes past the end of its line

  bool operator==(const Text&) const = default;
};

/// The line ends, and the next one begins so far below its top, or below its highest character if that is
/// more.
struct Feed {
  int dots;

  bool operator==(const Feed&) const = default;
};

/// To the next of the tab stops, eight characters apart.
struct Tab {
  bool operator==(const Tab&) const = default;
};

/// To this distance from the start of the line, or from where it stands.
struct MoveTo {
  int dots;
  bool relative;

  bool operator==(const MoveTo&) const = default;
};

/// For the lines from the next on.
struct Align {
  Alignment alignment;

  bool operator==(const Align&) const = default;
};

/// Where lines begin and how far they go.
struct PrintArea {
  int left;
  int width;

  bool operator==(const PrintArea&) const = default;
};

struct Image {
  Dots dots;
  int scale_x;  ///< paper dots for one of its own, 1 to 8
  int scale_y;
  bool in_line;  ///< stands in the line like a character; otherwise it is a line of its own

  bool operator==(const Image&) const = default;
};

enum class Symbology { kUpcA, kUpcE, kEan13, kEan8, kCode39, kItf, kCodabar, kCode93, kCode128, kQr };

struct BarCode {
  Symbology symbology;
  std::string data;
  int module_width;  ///< of the narrowest bar, or the side of a square
  int height;        ///< of the bars
  bool text_above;
  bool text_below;
  bool text_font_b;

  bool operator==(const BarCode&) const = default;
};

/// As the printer is when it is turned on: aligned left over its whole width.
struct Reset {
  bool operator==(const Reset&) const = default;
};

/// The line ends, the paper is fed and cut.
struct Cut {
  int feed;
  bool partial;

  bool operator==(const Cut&) const = default;
};

/// What cannot be drawn, in words for the one who looks at the receipt.
struct Note {
  std::string text;

  bool operator==(const Note&) const = default;
};

using PrintOperation =
    std::variant<Text, Feed, Tab, MoveTo, Align, PrintArea, Reset, Image, BarCode, Cut, Note>;

}  // namespace qlx::receipt
