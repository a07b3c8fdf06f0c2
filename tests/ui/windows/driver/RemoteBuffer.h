// Memory of another process, for messages that take a pointer.
#pragma once

#include <cstddef>

#include <windows.h>

namespace qlx::driver {

/// `Head` in the memory of a window's process, with room for a text behind it.
template <typename Head>
class RemoteBuffer {
 public:
  static constexpr int kTextLength = 1024;

  explicit RemoteBuffer(HWND window) {
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    process_ = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id);
    memory_ = static_cast<std::byte*>(VirtualAllocEx(process_, nullptr,
                                                     sizeof(Head) + kTextLength * sizeof(wchar_t),
                                                     MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
  }
  RemoteBuffer(const RemoteBuffer&) = delete;
  RemoteBuffer& operator=(const RemoteBuffer&) = delete;
  ~RemoteBuffer() {
    VirtualFreeEx(process_, memory_, 0, MEM_RELEASE);
    CloseHandle(process_);
  }

  LPARAM address() const { return reinterpret_cast<LPARAM>(memory_); }
  /// Where `Head` may point to for its text.
  wchar_t* text_address() const { return reinterpret_cast<wchar_t*>(memory_ + sizeof(Head)); }

  void Write(const Head& head) { WriteProcessMemory(process_, memory_, &head, sizeof head, nullptr); }

  Head Read() const {
    Head head{};
    ReadProcessMemory(process_, memory_, &head, sizeof head, nullptr);
    return head;
  }

  std::wstring ReadText() const {
    wchar_t text[kTextLength + 1] = L"";
    ReadProcessMemory(process_, text_address(), text, kTextLength * sizeof(wchar_t), nullptr);
    return text;
  }

 private:
  HANDLE process_;
  std::byte* memory_;
};

}  // namespace qlx::driver
