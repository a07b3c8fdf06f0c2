#include "platform/single_instance.h"

#include <cerrno>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace qlx::platform {
namespace {

std::string LockDirectory() {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  return runtime != nullptr && *runtime == '/' ? runtime : "/run/lock";
}

/// An flock on an open descriptor: it cannot outlive the process, and close-on-exec keeps it from a child.
class LockFile final : public SingleInstance {
 public:
  explicit LockFile(int descriptor) : descriptor_(descriptor) {}
  LockFile(const LockFile&) = delete;
  LockFile& operator=(const LockFile&) = delete;
  ~LockFile() override {
    if (descriptor_ >= 0) close(descriptor_);
  }

 private:
  int descriptor_;
};

}  // namespace

std::unique_ptr<SingleInstance> TakeSingleInstance(std::string_view name) {
  const std::string path = LockDirectory() + "/" + std::string(name);
  const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
  if (descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    close(descriptor);
    return nullptr;
  }
  return std::make_unique<LockFile>(descriptor);
}

}  // namespace qlx::platform
