// What the receipt printer answers, without its port.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace qlx {

/// Most bytes of one block.
inline constexpr std::size_t kAnswerBytes = 2048;

/// GS I 1 of ESC/POS: what the printer is.
inline constexpr std::uint8_t kInformationRequest[] = {0x1D, 0x49, 0x01};
/// The printer's own command for the code pages that it holds.
inline constexpr std::uint8_t kCodePagesRequest[] = {0x1D, 0x4E, 0x05, 0x02};

/// Which list of code pages an answer brings into the page.
enum class CodePageList { kNone, kStandard, kPrinter };

/// Takes one received block after the other; a block is one answer, whatever its length. Used on one thread.
class PrinterAnswers {
 public:
  /// True when the request may be made: an earlier one has its answer. From now on the next block is that
  /// answer.
  bool ExpectInformation();

  bool waiting_for_information() const { return waiting_for_information_; }

  /// Takes a block. Empty ones and ones above kAnswerBytes change nothing.
  CodePageList Process(std::span<const std::uint8_t> block);

  /// Every code page that the printer has told of, with the default behind each answer's; never cleared, so
  /// that a second answer adds its own to the first one's. At most 10,000.
  const std::vector<std::wstring>& code_pages() const { return code_pages_; }

 private:
  void AddCodePages(std::span<const std::uint8_t> block);

  bool waiting_for_information_ = false;
  bool expecting_code_pages_ = false;
  std::vector<std::wstring> code_pages_;
};

/// The 15 bytes of a block that tell what the printer is, zero where the block has ended.
std::vector<std::uint8_t> InformationBytes(std::span<const std::uint8_t> block);

}  // namespace qlx
