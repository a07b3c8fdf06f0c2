// Asks the receipt printer what it is and which code pages it holds, for the printer page's lists.
#pragma once

#include "pages/PRINTERSettings.h"
#include "pages/PrinterAnswers.h"
#include "pages/PrinterPort.h"

namespace qlx {

/// The main window decides when to open, ask and close. User-interface thread.
class PrinterQuery {
 public:
  /// `settings` get what the printer answers. The rest is PrinterPort's: `wake` says that TakeAnswers has
  /// something to take.
  PrinterQuery(PRINTERSettings& settings, SerialLink::OpenPort open_port, PrinterLog log,
               std::function<void()> wake, std::function<void()> while_waiting = {});

  /// Opens the printer's port; a failure is logged.
  bool Open() { return port_.Open(settings_.port()); }
  bool is_open() const { return port_.is_open(); }
  void Close() { port_.Close(); }

  /// Nothing while an earlier request has no answer. Only a native printer is really asked, but the next
  /// block counts as the answer in every mode: wanted.
  void RequestInformation();

  /// Asks a native printer; in the other modes the stored values are shown at once.
  void RequestCodePages();

  /// Takes what the printer has answered meanwhile; true when the lists are to be shown anew.
  bool TakeAnswers();

 private:
  bool Take(std::span<const std::uint8_t> block);

  PRINTERSettings& settings_;
  PrinterLog log_;
  PrinterAnswers answers_;
  PrinterPort port_;
};

}  // namespace qlx
