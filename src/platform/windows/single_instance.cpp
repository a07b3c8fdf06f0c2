#include "platform/single_instance.h"

#include <utility>

#include <windows.h>

#include "platform/text.h"
#include "platform/windows/Handle.h"

namespace qlx::platform {
namespace {

/// The name exists as long as a handle to it does. Nothing waits on the mutex or owns it.
class NamedMutex final : public SingleInstance {
 public:
  explicit NamedMutex(Handle mutex) : mutex_(std::move(mutex)) {}

 private:
  Handle mutex_;
};

}  // namespace

std::unique_ptr<SingleInstance> TakeSingleInstance(std::string_view name) {
  Handle mutex(CreateMutexW(nullptr, FALSE, FromUtf8(name).c_str()));
  const DWORD error = GetLastError();
  // Denied: the mutex is there and belongs to a copy with more rights than ours.
  if (error == ERROR_ALREADY_EXISTS || error == ERROR_ACCESS_DENIED) return nullptr;
  return std::make_unique<NamedMutex>(std::move(mutex));
}

}  // namespace qlx::platform
