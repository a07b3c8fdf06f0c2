#include "tests/robustness/linux/faults.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace qlx::faults {
namespace {

constexpr const char* kNames[] = {"open", "read", "write", "fsync", "close", "rename", "chmod", "truncate"};

Fault planned{};
std::atomic<int> left = -1;  // calls of the planned kind until the fault; negative when it is over or unarmed

Call meddled_call{};
std::function<void()> meddle;  // another process's doing; empty when there is none to come

/// The error that this call has to meet, 0 for none.
int Meet(Call call) {
  if (meddle && call == meddled_call) std::exchange(meddle, nullptr)();
  if (left < 0 || call != planned.call) return 0;
  return left-- == 0 ? planned.error : 0;
}

template <typename Real>
auto Run(Call call, Real real) -> decltype(real()) {
  const int error = Meet(call);
  if (error == 0) return real();
  errno = error;
  return -1;
}

/// `real` takes the number of bytes to move.
template <typename Real>
ssize_t RunSized(Call call, std::size_t size, Real real) {
  const int error = Meet(call);
  if (error == 0) return real(size);
  if (error == kCutShort) return real((size + 1) / 2);
  errno = error;
  return -1;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Fault& fault) {
  return out << kNames[static_cast<int>(fault.call)] << " number " << fault.index << ": "
             << (fault.error == kCutShort ? "cut short" : strerrorname_np(fault.error));
}

void Before(Call call, std::function<void()> act) {
  meddled_call = call;
  meddle = std::move(act);
}

void Arm(const Fault& fault) {
  planned = fault;
  left = fault.index;
}

bool Disarm() {
  return left.exchange(-1) < 0;
}

}  // namespace qlx::faults

using qlx::faults::Call;

// The C library's names for what the kernel does; a static library finds these before the C library's own.
// Its headers give the parameters reserved names.
// NOLINTBEGIN(readability-identifier-naming,readability-inconsistent-declaration-parameter-name)
extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return qlx::faults::Run(Call::kOpen,
                          [&] { return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode)); });
}

ssize_t read(int descriptor, void* bytes, std::size_t size) {
  return qlx::faults::RunSized(Call::kRead, size,
                               [&](std::size_t n) { return syscall(SYS_read, descriptor, bytes, n); });
}

ssize_t write(int descriptor, const void* bytes, std::size_t size) {
  return qlx::faults::RunSized(Call::kWrite, size,
                               [&](std::size_t n) { return syscall(SYS_write, descriptor, bytes, n); });
}

int fsync(int descriptor) {
  return qlx::faults::Run(Call::kFsync, [&] { return static_cast<int>(syscall(SYS_fsync, descriptor)); });
}

int close(int descriptor) {
  const auto closed = static_cast<int>(syscall(SYS_close, descriptor));
  return qlx::faults::Run(Call::kClose, [&] { return closed; });
}

int rename(const char* from, const char* to) noexcept {
  return qlx::faults::Run(Call::kRename, [&] { return static_cast<int>(syscall(SYS_rename, from, to)); });
}

int fchmod(int descriptor, mode_t mode) noexcept {
  return qlx::faults::Run(Call::kChmod,
                          [&] { return static_cast<int>(syscall(SYS_fchmod, descriptor, mode)); });
}

int ftruncate(int descriptor, off_t size) noexcept {
  return qlx::faults::Run(Call::kTruncate,
                          [&] { return static_cast<int>(syscall(SYS_ftruncate, descriptor, size)); });
}

}  // extern "C"
// NOLINTEND(readability-identifier-naming,readability-inconsistent-declaration-parameter-name)
