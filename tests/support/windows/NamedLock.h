// A mutex that every process of the session knows by its name, for what there is only one of.
#pragma once

#include <stdexcept>

#include "platform/windows/Handle.h"

namespace qlx::test {

/// Held as long as this object lives.
class NamedLock {
 public:
  /// Throws when it is not free within a minute. A holder that crashed counts as having released it.
  explicit NamedLock(const wchar_t* name) : mutex_(CreateMutexW(nullptr, FALSE, name)) {
    constexpr DWORD kLimitMs = 60000;
    const DWORD end = WaitForSingleObject(mutex_.get(), kLimitMs);
    if (end != WAIT_OBJECT_0 && end != WAIT_ABANDONED) throw std::runtime_error("the lock is not free");
  }
  NamedLock(const NamedLock&) = delete;
  NamedLock& operator=(const NamedLock&) = delete;
  ~NamedLock() { ReleaseMutex(mutex_.get()); }

 private:
  platform::Handle mutex_;
};

}  // namespace qlx::test
