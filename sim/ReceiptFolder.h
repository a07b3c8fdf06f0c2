// Where the printer's receipts are kept: one file each, receipt-<n>.bin, beside which its picture is drawn.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace qlx::sim {

class ReceiptFolder {
 public:
  /// `directory` exists. Receipts and pictures that it holds already stay as they are.
  explicit ReceiptFolder(std::filesystem::path directory) : directory_(std::move(directory)) {}

  /// The new file, or empty when it cannot be written.
  std::optional<std::filesystem::path> Keep(std::string_view receipt);

 private:
  std::filesystem::path directory_;
  int last_number_ = 0;
};

}  // namespace qlx::sim
