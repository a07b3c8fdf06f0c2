// A directory of its own for each test of what the platform does with directories.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/directories.h"
#include "tests/support/TemporaryDirectory.h"

namespace qlx::platform {

namespace fs = std::filesystem;

class DirectoryTest : public testing::Test {
 protected:
  std::wstring Path(const char* name) const { return (root_ / name).wstring(); }
  void Put(const char* name) const { std::ofstream(root_ / name) << name; }

  test::TemporaryDirectory temporary_;
  fs::path root_ = temporary_.path();
};

}  // namespace qlx::platform
