#include "pages/PrinterPort.h"

#include <utility>

#include "log/levels.h"

namespace qlx {
namespace {

/// A printer that sends without end is made to wait instead of filling the memory.
constexpr std::size_t kMostBlocks = 256;

std::string OpenErrorText(platform::SerialOpenError error) {
  switch (error) {
    case platform::SerialOpenError::kReadEvent:
      return "Error Creating Read Event";
    case platform::SerialOpenError::kWriteEvent:
      return "Error Creating Write Event";
    case platform::SerialOpenError::kStopEvent:
      return "Error Creating Terminate Event";
    case platform::SerialOpenError::kTimeouts:
      return "Error Setting Timeouts";
    case platform::SerialOpenError::kDevice:
      break;
  }
  return "Invalid Handle Value";
}

}  // namespace

PrinterPort::PrinterPort(SerialLink::OpenPort open_port, PrinterLog log, std::function<void()> wake,
                         std::function<void()> while_waiting)
    : open_port_(std::move(open_port)),
      log_(std::move(log)),
      wake_(std::move(wake)),
      while_waiting_(std::move(while_waiting)) {}

bool PrinterPort::Open(const std::wstring& name) {
  if (name.empty()) {
    log_.line(LEVEL_ERROR, "PRINTERDialog::OpenPort - COM Port string is empty");
    return false;
  }
  closing_ = false;
  link_.emplace(open_port_,
                LinkReceiver{[this](std::span<const std::uint8_t> block) { Receive(block); },
                             [this](ReadFailure failure, int error) { LogReadFailure(failure, error); }},
                while_waiting_);
  if (const auto error = link_->Open(name)) {
    link_.reset();
    log_.line(LEVEL_ERROR, "PRINTERDialog::OpenPort - " + OpenErrorText(*error));
    return false;
  }
  log_.line(LEVEL_INFO, "PRINTERDialog::OpenPort - COM Port Opened");
  return true;
}

void PrinterPort::Send(std::span<const std::uint8_t> bytes) {
  if (link_ && link_->Write(bytes) == WriteEnd::kFailed) {
    log_.line(LEVEL_ERROR, "PRINTERDialog::SendData - Error Writing to Port");
  }
}

std::deque<std::vector<std::uint8_t>> PrinterPort::TakeBlocks() {
  const std::lock_guard guard(lock_);
  room_.notify_one();
  return std::exchange(blocks_, {});
}

void PrinterPort::Close() {
  if (!link_) return;
  {
    const std::lock_guard guard(lock_);
    closing_ = true;
  }
  room_.notify_one();
  link_.reset();
}

void PrinterPort::Receive(std::span<const std::uint8_t> block) {
  if (block.empty()) return;
  bool first = false;
  {
    std::unique_lock guard(lock_);
    room_.wait(guard, [this] { return closing_ || blocks_.size() < kMostBlocks; });
    if (closing_) return;
    first = blocks_.empty();
    blocks_.emplace_back(block.begin(), block.end());
  }
  if (first) wake_();
}

void PrinterPort::LogReadFailure(ReadFailure failure, int error) {
  const std::string what = failure == ReadFailure::kAtStart ? "Error Reading Port" : std::to_string(error);
  log_.line(LEVEL_ERROR, "PRINTERDialog::ReceiveDataWorker - " + what);
}

}  // namespace qlx
