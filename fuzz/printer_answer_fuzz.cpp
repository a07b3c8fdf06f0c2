// Any blocks from a printer, asked for or not: the page's lists keep their word.
#include <algorithm>
#include <stdexcept>

#include "fuzz/require.h"
#include "pages/PRINTERSettings.h"
#include "pages/PrinterAnswers.h"
#include "pages/code_pages.h"

namespace {

using qlx::CodePageList;
using qlx::ItemList;
using qlx::PrinterAnswers;
using qlx::PRINTERSettings;
using qlx::Require;

/// Takes a block off the front of `bytes`: a byte whose lowest bit says whether information is asked for
/// before it, two bytes of length, and that many bytes or as many as there are.
std::span<const std::uint8_t> TakeBlock(std::span<const std::uint8_t>& bytes, bool& ask) {
  ask = (bytes[0] & 1) != 0;
  const std::size_t length = static_cast<std::size_t>(bytes[1]) << 8 | bytes[2];
  bytes = bytes.subspan(3);
  const auto block = bytes.first(std::min(length, bytes.size()));
  bytes = bytes.subspan(block.size());
  return block;
}

bool IsCodePage(const std::wstring& item) {
  return item == qlx::kPrinterDefault || (!item.empty() && item.size() <= 5 && std::stoi(item) <= 0xFFFF);
}

void RequireSound(const ItemList& list) {
  Require(list.chosen >= ItemList::kNoItem && list.chosen < static_cast<int>(list.items.size()));
}

/// A number of more than two characters is the one way in which a save may end.
void RequireStorable(const PRINTERSettings& settings) {
  try {
    const auto values = settings.Values([](const std::wstring&) { throw std::range_error("too long"); });
    Require(!values.code_page.empty() && values.code_page.size() <= 2);
  } catch (const std::range_error&) {
    Require(settings.code_page().chosen >= 99);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  PrinterAnswers answers;
  PRINTERSettings settings;
  for (std::span<const std::uint8_t> bytes(data, size); bytes.size() >= 3;) {
    bool ask = false;
    const auto block = TakeBlock(bytes, ask);
    if (ask) answers.ExpectInformation();
    Require(qlx::InformationBytes(block).size() == 15);
    const CodePageList list = answers.Process(block);
    if (list == CodePageList::kStandard) settings.ShowStandardCodePages();
    if (list == CodePageList::kPrinter) settings.ShowPrinterCodePages(answers.code_pages());
    RequireSound(settings.code_page());
  }
  Require(answers.code_pages().size() <= 10'000);
  Require(std::ranges::all_of(answers.code_pages(), IsCodePage));
  settings.ChooseCodePage(static_cast<int>(size % 200));
  RequireStorable(settings);
  return 0;
}
