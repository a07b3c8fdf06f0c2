// Where on the paper everything stands that a receipt printer is told to print.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "sim/receipt/print_operations.h"

namespace qlx::receipt {

/// Lengths are dots from the upper left corner of what can be printed on.
struct PlacedText {
  int x;
  int y;  ///< of its top
  std::string bytes;
  TextStyle style;
};

struct PlacedDots {
  int x;
  int y;
  Dots dots;
  int scale_x;  ///< paper dots for one of its own
  int scale_y;
};

/// The paper is parted across here.
struct PlacedCut {
  int y;
  bool partial;
};

struct Paper {
  static constexpr int kWidth = 576;
  /// One metre. Nothing is drawn further down.
  static constexpr int kMostDots = 8000;
  static constexpr std::size_t kMostItems = 20'000;

  int height = 0;  ///< at most kMostDots and a note
  std::vector<PlacedText> texts;
  std::vector<PlacedDots> dots;
  std::vector<PlacedCut> cuts;

  std::size_t items() const { return texts.size() + dots.size() + cuts.size(); }
};

/// The size of one character.
int CellWidth(const TextStyle& style);
int CellHeight(const TextStyle& style);
/// From its top to the line that it stands on, together with the others of its line.
int CellAscent(const TextStyle& style);

/// Sets operations on paper, one after the other.
class Typesetter {
 public:
  void Add(const PrintOperation& operation);
  /// Nothing more can be set: the paper is at its end, or too much is on it.
  bool full() const { return full_; }
  /// The paper with what is still in the line; one that became full ends with a note that says so. Once.
  Paper Finish();

 private:
  void Set(const Text& text);
  void Set(const Feed& feed);
  void Set(const Tab& tab);
  void Set(const MoveTo& move);
  void Set(const Align& align);
  void Set(const PrintArea& area);
  void Set(const Reset& reset);
  void Set(const Image& image);
  void Set(const BarCode& code);
  void Set(const Cut& cut);
  void Set(const Note& note);

  void SetPiece(const std::string& bytes, const TextStyle& style);
  void SetDots(Dots dots, int scale_x, int scale_y);
  void SetLineOf(const std::string& bytes, const TextStyle& style);
  void ReachTo(int x, int ascent, int descent);
  void EndLine(int spacing);
  int Room() const { return area_.width - cursor_; }

  Paper paper_;
  Paper line_;  ///< its items stand relative to the start of the line that they stand on
  int ascent_ = 0;
  int descent_ = 0;
  int cursor_ = 0;
  int reached_ = 0;  ///< the furthest end of anything in the line
  Alignment alignment_ = Alignment::kLeft;
  PrintArea area_{0, Paper::kWidth};
  bool full_ = false;
};

}  // namespace qlx::receipt
