#include "sim/ReceiptFolder.h"

#include <fstream>
#include <string>

namespace qlx::sim {

std::optional<std::filesystem::path> ReceiptFolder::Keep(std::string_view receipt) {
  std::filesystem::path path;
  std::filesystem::path picture;
  std::error_code unknown;
  do {
    path = directory_ / ("receipt-" + std::to_string(++last_number_) + ".bin");
    picture = std::filesystem::path(path).replace_extension(".png");
  } while (std::filesystem::exists(path, unknown) || std::filesystem::exists(picture, unknown));
  std::ofstream file(path, std::ios::binary);
  file.write(receipt.data(), static_cast<std::streamsize>(receipt.size()));
  file.close();
  if (!file) return std::nullopt;
  return path;
}

}  // namespace qlx::sim
