#include "serial/SerialLink.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace qlx {
namespace {

using platform::IoStart;
using platform::IoWait;
using std::chrono::milliseconds;

constexpr platform::SerialTimeouts kTimeouts = {milliseconds(1), milliseconds(1), milliseconds(1)};
constexpr milliseconds kWriteLimit{1000};
constexpr milliseconds kReadLimit{3000};
/// Short enough for a window that is painted meanwhile to look alive.
constexpr milliseconds kWriteSlice{10};

}  // namespace

SerialLink::SerialLink(OpenPort open_port, LinkReceiver receiver, std::function<void()> while_waiting)
    : open_port_(std::move(open_port)),
      receiver_(std::move(receiver)),
      while_waiting_(std::move(while_waiting)) {}

std::optional<platform::SerialOpenError> SerialLink::Open(const std::wstring& name) {
  platform::SerialOpening opening = open_port_(name, kTimeouts);
  if (!opening.port) return opening.error;
  port_ = std::move(opening.port);
  try {
    reader_ = std::thread([this] { Read(); });
  } catch (const std::system_error&) {
    port_.reset();
    return platform::SerialOpenError::kDevice;
  }
  return std::nullopt;
}

WriteEnd SerialLink::Write(std::span<const std::uint8_t> bytes) {
  if (!port_) return WriteEnd::kAbandoned;
  const IoStart start = port_->StartWrite(bytes);
  if (start == IoStart::kCompleted) return WriteEnd::kWritten;
  if (start == IoStart::kFailed) return WriteEnd::kFailed;
  switch (WaitForWrite()) {
    case IoWait::kEnded:
      return port_->WriteResult() ? WriteEnd::kWritten : WriteEnd::kFailed;
    case IoWait::kTimedOut:
      if (port_->WriteResult()) return WriteEnd::kWritten;
      port_->CancelWrite();
      return WriteEnd::kFailed;
    case IoWait::kStopped:
      port_->CancelWrite();
      break;
    case IoWait::kFailed:
      break;
  }
  return WriteEnd::kAbandoned;
}

IoWait SerialLink::WaitForWrite() {
  for (milliseconds waited{0};;) {
    const IoWait end = port_->WaitWrite(kWriteSlice);
    waited += kWriteSlice;
    if (end != IoWait::kTimedOut || waited >= kWriteLimit) return end;
    if (while_waiting_) while_waiting_();
  }
}

void SerialLink::Stop() {
  if (port_) port_->Stop();
}

void SerialLink::Close() {
  Stop();
  if (reader_.joinable()) reader_.join();
  port_.reset();
}

void SerialLink::Read() {
  for (;;) {
    buffer_.fill(0);
    switch (port_->StartRead(buffer_)) {
      case IoStart::kPending:
        if (!FinishRead()) return;
        break;
      case IoStart::kCompleted:
        // Wanted: reads normally go pending, and one that does not is the reader's last.
        if (const auto count = port_->ReadResult()) Deliver(*count);
        return;
      case IoStart::kFailed:
        receiver_.failed(ReadFailure::kAtStart, 0);
        return;
    }
  }
}

bool SerialLink::FinishRead() {
  const IoWait end = port_->WaitRead(kReadLimit);
  if (end == IoWait::kStopped) {
    port_->CancelRead();
    return false;
  }
  if (end == IoWait::kFailed) return true;
  if (const auto count = port_->ReadResult()) {
    Deliver(*count);
  } else {
    receiver_.failed(ReadFailure::kDuringWait, port_->ReadError());
    if (end == IoWait::kTimedOut) port_->CancelRead();
  }
  return true;
}

void SerialLink::Deliver(std::size_t count) {
  receiver_.received(std::span(buffer_).first(std::min(count, buffer_.size())));
}

}  // namespace qlx
