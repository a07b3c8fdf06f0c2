// The bytes that a receipt printer is sent, read as print operations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "sim/receipt/print_operations.h"

namespace qlx::receipt {

/// Reads any bytes: a command that prints nothing is skipped with its parameters, one that is not known
/// becomes a note with its bytes, and one that the end cuts off is dropped or does what it can with what
/// there is of its data. Reverse feeds, page mode, rotation and macros are skipped.
class PrintStream {
 public:
  /// `bytes` must outlive it.
  explicit PrintStream(std::string_view bytes) : rest_(bytes) {}

  /// Empty at the end.
  std::optional<PrintOperation> Next();

 private:
  using Parameters = std::string_view;
  struct Command {
    char lead;
    std::string_view name;
    std::size_t parameters;                           ///< bytes
    void (PrintStream::*read)(Parameters) = nullptr;  ///< null for what leaves no mark on the paper
  };
  static const Command kCommands[];
  static const Command* FindCommand(std::string_view bytes);

  void ReadOne();
  void ReadText();
  void ReadUnknown();
  /// Up to `count` bytes, fewer at the end.
  std::string_view Take(std::size_t count);
  std::string_view TakeUntilNul(std::size_t most);

  void Reset(Parameters);
  void LineFeed(Parameters);
  void FormFeed(Parameters);
  void HorizontalTab(Parameters);
  void SelectMode(Parameters mode);
  void SelectSize(Parameters size);
  void SelectFont(Parameters font);
  void Embolden(Parameters on);
  void Underline(Parameters thickness);
  void Reverse(Parameters on);
  void SelectTable(Parameters table);
  void SelectAlignment(Parameters alignment);
  void DefaultSpacing(Parameters);
  void SetSpacing(Parameters dots);
  void FeedDots(Parameters dots);
  void FeedLines(Parameters lines);
  void MoveAbsolute(Parameters dots);
  void MoveRelative(Parameters dots);
  void SetLeftMargin(Parameters dots);
  void SetAreaWidth(Parameters dots);
  void FullCut(Parameters);
  void PartialCut(Parameters);
  void CutPaper(Parameters mode);

  void SkipToNul(Parameters);
  void SkipCharacters(Parameters range);
  void SkipBlock(Parameters name_and_length);
  void SkipUserData(Parameters address_and_length);

  void BitImage(Parameters mode_and_columns);
  void RasterImage(Parameters mode_and_size);
  void DefineImage(Parameters size);
  void PrintImage(Parameters scale);
  void DefineLogos(Parameters count);
  void PrintLogo(Parameters number_and_scale);
  void Block(Parameters name_and_length);
  void LongBlock(Parameters name_and_length);
  void Graphics(std::string_view data);

  void SetBarHeight(Parameters dots);
  void SetModuleWidth(Parameters dots);
  void SetBarText(Parameters position);
  void SetBarFont(Parameters font);
  void PrintBarCode(Parameters kind);
  void MatrixCode(std::string_view data);

  std::string_view rest_;
  std::optional<PrintOperation> next_;

  TextStyle style_;
  int line_spacing_ = 30;
  PrintArea area_{0, 576};
  BarCode bar_{Symbology::kUpcA, {}, 3, 162, false, false, false};
  std::string matrix_data_;
  int matrix_module_ = 3;
  std::optional<Image> image_;     ///< defined by GS *
  std::optional<Image> graphics_;  ///< stored by GS ( L
  std::map<int, Image> logos_;     ///< defined by FS q, from 1 on
};

}  // namespace qlx::receipt
