#include "platform/windows/Transfer.h"

#include <iterator>

namespace qlx::platform {
namespace {

/// The port's time-outs end a transfer well, with what it has. The call for the result should say so itself,
/// and not everywhere does.
bool EndedByTimeOut(const OVERLAPPED& overlapped) {
  return overlapped.Internal == STATUS_TIMEOUT;
}

}  // namespace

void Transfer::Prepare() {
  Cancel();
  ResetEvent(event_.get());
  overlapped_ = {};
  overlapped_.hEvent = event_.get();
}

IoStart Transfer::Started(BOOL completed) {
  if (completed != FALSE) return IoStart::kCompleted;
  pending_ = GetLastError() == ERROR_IO_PENDING;
  return pending_ ? IoStart::kPending : IoStart::kFailed;
}

IoWait Transfer::Wait(HANDLE stop, std::chrono::milliseconds limit) const {
  const HANDLE events[] = {stop, event_.get()};
  switch (WaitForMultipleObjects(std::size(events), events, FALSE, static_cast<DWORD>(limit.count()))) {
    case WAIT_OBJECT_0:
      return IoWait::kStopped;
    case WAIT_OBJECT_0 + 1:
      return IoWait::kEnded;
    case WAIT_TIMEOUT:
      return IoWait::kTimedOut;
    default:
      return IoWait::kFailed;
  }
}

std::optional<DWORD> Transfer::Result() {
  DWORD count = 0;
  const bool ended_well =
      GetOverlappedResult(file_, &overlapped_, &count, FALSE) != FALSE || EndedByTimeOut(overlapped_);
  error_ = ended_well ? ERROR_SUCCESS : GetLastError();
  pending_ = pending_ && error_ == ERROR_IO_INCOMPLETE;
  return ended_well ? std::optional(count) : std::nullopt;
}

/// By this transfer, not by thread as CancelIo does it: the port may be closed by another one.
void Transfer::Cancel() {
  if (!pending_) return;
  CancelIoEx(file_, &overlapped_);
  DWORD count = 0;
  GetOverlappedResult(file_, &overlapped_, &count, TRUE);
  pending_ = false;
}

}  // namespace qlx::platform
