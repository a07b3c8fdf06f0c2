// A lock of the test's own, and further processes that want it.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "platform/single_instance.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/environment.h"

namespace qlx::test {

class SingleInstanceTest : public testing::Test {
 protected:
  SingleInstanceTest() { SetEnvironment("XDG_RUNTIME_DIR", directory_.path().string()); }

  std::unique_ptr<platform::SingleInstance> Take() const { return platform::TakeSingleInstance(name_); }

  bool OtherProcessGetsIt() const { return ChildProcess(QLX_INSTANCE_CHILD, {name_}).ReadLine() == "taken"; }

  const TemporaryDirectory directory_;
  const std::string name_ = "__MZPCONFIG__" + directory_.path().filename().string();
};

}  // namespace qlx::test
