// The commands that print bar codes and matrix codes.
#include <algorithm>

#include "sim/receipt/PrintStream.h"
#include "sim/receipt/command_parameters.h"

namespace qlx::receipt {
namespace {

constexpr std::size_t kLongestBarCode = 255;
/// The kinds of GS k are numbered from here on as well, and then followed by the length of their data.
constexpr int kWithLength = 65;

/// In the order in which GS k numbers them.
constexpr Symbology kBarCodes[] = {
    Symbology::kUpcA, Symbology::kUpcE,    Symbology::kEan13,  Symbology::kEan8,    Symbology::kCode39,
    Symbology::kItf,  Symbology::kCodabar, Symbology::kCode93, Symbology::kCode128,
};

}  // namespace

void PrintStream::SetBarHeight(Parameters dots) {
  bar_.height = std::max(ByteAt(dots, 0), 1);
}

void PrintStream::SetModuleWidth(Parameters dots) {
  const int width = ByteAt(dots, 0);
  if (width >= 1 && width <= 6) bar_.module_width = width;
}

void PrintStream::SetBarText(Parameters position) {
  const int number = DigitAt(position, 0);
  bar_.text_above = number == 1 || number == 3;
  bar_.text_below = number == 2 || number == 3;
}

void PrintStream::SetBarFont(Parameters font) {
  bar_.text_font_b = DigitAt(font, 0) == 1;
}

void PrintStream::PrintBarCode(Parameters kind) {
  const int number = ByteAt(kind, 0);
  const bool with_length = number >= kWithLength;
  const auto index = static_cast<std::size_t>(with_length ? number - kWithLength : number);
  const std::size_t length = with_length ? static_cast<std::size_t>(ByteAt(Take(1), 0)) : 0;
  const std::string data(with_length ? Take(length) : TakeUntilNul(kLongestBarCode));
  if (index >= std::size(kBarCodes)) {
    next_ = Note{"bar code of kind " + std::to_string(number)};
    return;
  }
  BarCode code = bar_;
  code.symbology = kBarCodes[index];
  code.data = data;
  next_ = code;
}

/// Code 49 is QR: function 67 is its size, 80 stores data, 81 prints it.
void PrintStream::MatrixCode(std::string_view data) {
  const bool is_qr = ByteAt(data, 0) == 49;
  const int function = ByteAt(data, 1);
  if (function == 81 && !is_qr) {
    next_ = Note{"matrix code of kind " + std::to_string(ByteAt(data, 0))};
  } else if (function == 81) {
    next_ = BarCode{Symbology::kQr, matrix_data_, matrix_module_, 0, false, false, false};
  } else if (is_qr && function == 80) {
    matrix_data_ = data.substr(std::min<std::size_t>(data.size(), 3));
  } else if (is_qr && function == 67) {
    matrix_module_ = std::clamp(ByteAt(data, 2), 1, 16);
  }
}

}  // namespace qlx::receipt
