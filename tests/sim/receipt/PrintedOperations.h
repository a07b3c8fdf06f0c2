// All that a stream of bytes asks a receipt printer to do.
#pragma once

#include <string_view>
#include <vector>

#include "sim/receipt/PrintStream.h"

namespace qlx::receipt {

inline std::vector<PrintOperation> Operations(std::string_view bytes) {
  PrintStream stream(bytes);
  std::vector<PrintOperation> all;
  while (const auto operation = stream.Next()) all.push_back(*operation);
  return all;
}

}  // namespace qlx::receipt
