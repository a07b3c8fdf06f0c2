// A new directory that is gone with the test.
#pragma once

#include <filesystem>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace qlx::test {

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::random_device random;
    do {
      path_ = std::filesystem::path(testing::TempDir()) / ("qlx" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory() {
    std::error_code kept;
    std::filesystem::remove_all(path_, kept);
  }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace qlx::test
