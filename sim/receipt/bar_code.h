// Bar codes as dots.
#pragma once

#include <optional>
#include <string>

#include "sim/receipt/print_operations.h"

namespace qlx::receipt {

struct Symbol {
  Dots modules;      ///< one row for bars, a square for a matrix
  std::string text;  ///< for people, ASCII
};

/// Empty when the data is none for its symbology: wrong characters, length or check digit.
std::optional<Symbol> EncodeBarCode(const BarCode& code);

/// Such as "UPC-A".
std::string NameOf(Symbology symbology);

}  // namespace qlx::receipt
