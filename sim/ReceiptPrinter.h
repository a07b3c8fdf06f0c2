// The receipt printer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sim/Device.h"

namespace qlx::sim {

struct CodePage {
  std::uint8_t kind;
  std::uint16_t number;
};

/// Answers two queries, device information (1D 49 01) and code page list (1D 4E 05 02); everything else is
/// printed.
class ReceiptPrinter : public Device {
 public:
  static constexpr std::uint8_t kTypeWithCodePages = 9;

  /// Says how many bytes came.
  Reaction Receive(std::string_view bytes) override;

  void SetType(std::uint8_t type) { type_ = type; }
  void SetCodePages(std::vector<CodePage> pages) { pages_ = std::move(pages); }

  /// What has been printed and not yet been taken.
  const std::string& paper() const { return paper_; }
  std::string TakePaper();

 private:
  std::string DeviceInformation() const;
  std::string CodePageList() const;

  std::string paper_;
  std::uint8_t type_ = kTypeWithCodePages;
  std::vector<CodePage> pages_{{1, 437}, {1, 858}, {1, 863}, {1, 860},
                               {1, 865}, {1, 852}, {1, 866}, {1, 1252}};
};

}  // namespace qlx::sim
