// The receipt printer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sim/Device.h"
#include "sim/described_printers.h"

namespace qlx::sim {

/// Answers two queries, device information (1D 49 01) and code page list (1D 4E 05 02), as the printer that
/// it is; everything else is printed.
class ReceiptPrinter : public Device {
 public:
  ReceiptPrinter() { Become(kDescribedPrinters[0]); }

  /// Says how many bytes came.
  Reaction Receive(std::string_view bytes) override;

  /// From the next query on it is `printer`, which must outlive it.
  void Become(const DescribedPrinter& printer);
  /// Departures from it, until it becomes another.
  void SetType(std::uint8_t type) { type_ = type; }
  void SetCodePages(std::vector<CodePage> pages) { pages_ = std::move(pages); }

  /// What has been printed and not yet been taken.
  const std::string& paper() const { return paper_; }
  std::string TakePaper();

 private:
  void Answer(const std::string& proper, Reaction& reaction) const;
  std::string DeviceInformation() const;
  std::string CodePageList() const;

  std::string paper_;
  const DescribedPrinter* printer_ = nullptr;
  std::uint8_t type_ = 0;
  std::vector<CodePage> pages_;
};

}  // namespace qlx::sim
