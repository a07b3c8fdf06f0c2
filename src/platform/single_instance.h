// The named lock that keeps the tool to one copy per user session.
#pragma once

#include <memory>
#include <string_view>

namespace qlx::platform {

/// Holds the lock as long as it lives; the system frees it when the process ends, however it ends.
class SingleInstance {
 public:
  virtual ~SingleInstance() = default;
};

/// Takes the lock `name`. Null only when another process holds it. When the place of the lock cannot be used
/// at all, the tool runs without one rather than not at all.
std::unique_ptr<SingleInstance> TakeSingleInstance(std::string_view name);

}  // namespace qlx::platform
