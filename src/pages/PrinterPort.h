// The receipt printer's port while it is asked for its settings.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "pages/PrinterLog.h"
#include "serial/SerialLink.h"

namespace qlx {

/// Opens, asks and closes any number of times; what cannot be done is logged and no more. All operations
/// belong to the user-interface thread; blocks arrive on a reader thread of the port's own and wait until
/// they are taken.
class PrinterPort {
 public:
  /// `wake` is called, from any thread, each time that a block is there to take after none was. It must not
  /// wait. `while_waiting` is SerialLink's.
  PrinterPort(SerialLink::OpenPort open_port, PrinterLog log, std::function<void()> wake,
              std::function<void()> while_waiting = {});
  PrinterPort(const PrinterPort&) = delete;
  PrinterPort& operator=(const PrinterPort&) = delete;
  ~PrinterPort() { Close(); }

  /// Opens the port `name`, which must not be open. False when it has no name or cannot be opened.
  bool Open(const std::wstring& name);
  bool is_open() const { return link_.has_value(); }

  /// Writes one block, for at most a second.
  void Send(std::span<const std::uint8_t> bytes);

  /// The blocks that have come, the oldest first.
  std::deque<std::vector<std::uint8_t>> TakeBlocks();

  /// Ends the reader and closes the port; nothing is received afterwards, and what came before can still be
  /// taken. Nothing for a closed port.
  void Close();

 private:
  void Receive(std::span<const std::uint8_t> block);
  void LogReadFailure(ReadFailure failure, int error);

  SerialLink::OpenPort open_port_;
  PrinterLog log_;
  std::function<void()> wake_;
  std::function<void()> while_waiting_;

  std::mutex lock_;
  std::condition_variable room_;
  std::deque<std::vector<std::uint8_t>> blocks_;
  bool closing_ = false;
  std::optional<SerialLink> link_;
};

}  // namespace qlx
