// A system that has no thread to give.
#pragma once

#include <cstddef>
#include <system_error>

#include <pthread.h>

namespace qlx::test {

/// While it lives no thread can be started: the stack of a new one would fill the whole address space. One at
/// a time.
class NoThreads {
 public:
  NoThreads() {
    pthread_getattr_default_np(&usual_);
    pthread_attr_t unusual = usual_;
    pthread_attr_setstacksize(&unusual, std::size_t{1} << 47);
    if (const int error = pthread_setattr_default_np(&unusual)) {
      throw std::system_error(error, std::generic_category(), "pthread_setattr_default_np");
    }
  }
  NoThreads(const NoThreads&) = delete;
  NoThreads& operator=(const NoThreads&) = delete;
  ~NoThreads() {
    pthread_setattr_default_np(&usual_);
    pthread_attr_destroy(&usual_);
  }

 private:
  pthread_attr_t usual_{};
};

}  // namespace qlx::test
