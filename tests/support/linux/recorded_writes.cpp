#include "tests/support/linux/recorded_writes.h"

#include <mutex>

#include <sys/syscall.h>
#include <unistd.h>

namespace qlx::testing {
namespace {

std::mutex lock;
bool recording = false;
std::vector<std::string> taken;

}  // namespace

RecordedWrites::RecordedWrites() {
  const std::lock_guard guard(lock);
  recording = true;
  taken.clear();
}

RecordedWrites::~RecordedWrites() {
  const std::lock_guard guard(lock);
  recording = false;
}

std::vector<std::string> RecordedWrites::Taken() const {
  const std::lock_guard guard(lock);
  return taken;
}

}  // namespace qlx::testing

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the C library's are reserved names
extern "C" ssize_t write(int descriptor, const void* bytes, size_t size) {
  {
    const std::lock_guard guard(qlx::testing::lock);
    if (qlx::testing::recording) qlx::testing::taken.emplace_back(static_cast<const char*>(bytes), size);
  }
  return syscall(SYS_write, descriptor, bytes, size);
}
