#include "pages/PrinterAnswers.h"

#include <algorithm>

#include "pages/code_pages.h"

namespace qlx {
namespace {

constexpr std::size_t kData = 18;  // where the data of every answer begins
constexpr std::size_t kInformationBytes = 15;
constexpr std::size_t kTypeAt = 19;
constexpr std::uint8_t kTypeWithCodePages = 9;
constexpr std::size_t kEntryBytes = 3;
constexpr std::uint8_t kFirstKeptKind = 0x80;
constexpr std::uint8_t kLastKeptKind = 0x82;
constexpr std::size_t kMostCodePages = 10'000;

/// Zero behind the block's end.
std::uint8_t ByteAt(std::span<const std::uint8_t> block, std::size_t at) {
  return at < block.size() ? block[at] : 0;
}

/// An entry that has begun counts whole, on purpose, even when the block ends in it.
std::size_t CountEntries(std::size_t length) {
  return length > kData ? (length - kData - 1) / kEntryBytes + 1 : 0;
}

}  // namespace

bool PrinterAnswers::ExpectInformation() {
  if (waiting_for_information_) return false;
  waiting_for_information_ = true;
  return true;
}

CodePageList PrinterAnswers::Process(std::span<const std::uint8_t> block) {
  if (block.empty() || block.size() > kAnswerBytes) return CodePageList::kNone;
  if (waiting_for_information_) {
    waiting_for_information_ = false;
    if (ByteAt(block, kTypeAt) != kTypeWithCodePages) return CodePageList::kStandard;
    expecting_code_pages_ = true;
    return CodePageList::kNone;
  }
  if (!expecting_code_pages_) return CodePageList::kNone;
  AddCodePages(block);
  return CodePageList::kPrinter;
}

void PrinterAnswers::AddCodePages(std::span<const std::uint8_t> block) {
  for (std::size_t entry = 0; entry < CountEntries(block.size()); ++entry) {
    const std::size_t at = kData + entry * kEntryBytes;
    const std::uint8_t kind = ByteAt(block, at);
    std::wstring text = std::to_wstring(ByteAt(block, at + 1) << 8 | ByteAt(block, at + 2));
    const bool kept = kind >= kFirstKeptKind && kind <= kLastKeptKind;
    if (kept || CodePageNumber(text)) code_pages_.push_back(std::move(text));
  }
  code_pages_.emplace_back(kPrinterDefault);
  code_pages_.resize(std::min(code_pages_.size(), kMostCodePages));
}

std::vector<std::uint8_t> InformationBytes(std::span<const std::uint8_t> block) {
  std::vector<std::uint8_t> bytes(kInformationBytes);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = ByteAt(block, kData + i);
  return bytes;
}

}  // namespace qlx
