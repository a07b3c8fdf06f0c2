#include "pages/PrinterQuery.h"

#include <utility>

#include "log/levels.h"

namespace qlx {

PrinterQuery::PrinterQuery(PRINTERSettings& settings, SerialLink::OpenPort open_port, PrinterLog log,
                           std::function<void()> wake, std::function<void()> while_waiting)
    : settings_(settings),
      log_(log),
      port_(std::move(open_port), std::move(log), std::move(wake), std::move(while_waiting)) {}

void PrinterQuery::RequestInformation() {
  if (answers_.ExpectInformation() && settings_.stored_native()) port_.Send(kInformationRequest);
}

void PrinterQuery::RequestCodePages() {
  if (settings_.stored_native()) {
    port_.Send(kCodePagesRequest);
  } else {
    settings_.ShowWithoutAsking();
  }
}

bool PrinterQuery::TakeAnswers() {
  bool changed = false;
  for (const auto& block : port_.TakeBlocks()) changed = Take(block) || changed;
  return changed;
}

bool PrinterQuery::Take(std::span<const std::uint8_t> block) {
  log_.dump(LEVEL_VERBOSE, "PRINTERDialog::ProcessReceiveData - Printer Status Bytes", block);
  if (answers_.waiting_for_information()) {
    log_.dump(LEVEL_INFO, "Printer Device Information", InformationBytes(block));
  }
  switch (answers_.Process(block)) {
    case CodePageList::kNone:
      return false;
    case CodePageList::kStandard:
      settings_.ShowStandardCodePages();
      break;
    case CodePageList::kPrinter:
      settings_.ShowPrinterCodePages(answers_.code_pages());
      break;
  }
  return true;
}

}  // namespace qlx
