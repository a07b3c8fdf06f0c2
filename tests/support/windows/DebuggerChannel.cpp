#include "tests/support/windows/DebuggerChannel.h"

#include <cstring>

namespace qlx::test {
namespace {

using platform::Handle;

/// What a writer leaves in the shared memory: its process, then its text in the system's 8-bit set.
constexpr DWORD kBytes = 4096;

}  // namespace

DebuggerChannel::DebuggerChannel()
    : turn_(L"QLXTestDebuggerChannel"),
      memory_(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kBytes, L"DBWIN_BUFFER")),
      ready_(CreateEventW(nullptr, FALSE, TRUE, L"DBWIN_BUFFER_READY")),
      written_(CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_DATA_READY")),
      end_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      listener_([this] { Listen(); }) {}

DebuggerChannel::~DebuggerChannel() {
  End();
}

std::string DebuggerChannel::LinesOf(std::uint32_t process) {
  End();
  std::string lines;
  for (const auto& [writer, piece] : pieces_) {
    if (writer == process) lines += piece + "\n";
  }
  return lines;
}

void DebuggerChannel::Listen() {
  // What was written counts before the end does, so nothing is lost.
  const HANDLE both[] = {written_.get(), end_.get()};
  while (WaitForMultipleObjects(2, both, FALSE, INFINITE) == WAIT_OBJECT_0) Take();
}

void DebuggerChannel::Take() {
  const void* view = MapViewOfFile(memory_.get(), FILE_MAP_READ, 0, 0, kBytes);
  std::uint32_t writer = 0;
  std::memcpy(&writer, view, sizeof writer);
  const char* text = static_cast<const char*>(view) + sizeof writer;
  pieces_.emplace_back(writer, std::string(text, strnlen(text, kBytes - sizeof writer)));
  UnmapViewOfFile(view);
  SetEvent(ready_.get());
}

void DebuggerChannel::End() {
  if (!listener_.joinable()) return;
  SetEvent(end_.get());
  listener_.join();
  // A writer that finds the channel without a listener would wait for one.
  for (Handle* handle : {&memory_, &ready_, &written_}) handle->Close();
}

}  // namespace qlx::test
