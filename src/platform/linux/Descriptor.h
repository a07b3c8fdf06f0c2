// File descriptors that close themselves, and the rule for calls that a signal interrupts.
#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace qlx::platform {

/// Calls again while a signal interrupts.
template <typename Call>
auto Retry(Call call) {
  decltype(call()) result;
  do {
    result = call();
  } while (result < 0 && errno == EINTR);
  return result;
}

/// Owns one descriptor; a negative number is none.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() { Close(); }

  explicit operator bool() const { return number_ >= 0; }
  int number() const { return number_; }

  /// False when the system reports a failed write only now. Interrupted counts as closed: Linux frees the
  /// number.
  bool Close() {
    const int number = std::exchange(number_, -1);
    return number < 0 || close(number) == 0 || errno == EINTR;
  }

 private:
  int number_;
};

}  // namespace qlx::platform
