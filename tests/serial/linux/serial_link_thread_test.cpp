#include <memory>

#include <gtest/gtest.h>

#include "serial/SerialLink.h"
#include "tests/support/FakeSerialPort.h"
#include "tests/support/linux/NoThreads.h"

namespace qlx {
namespace {

TEST(SerialLinkThread, WithoutAThreadToReadThePortIsClosedAgain) {
  const auto script = std::make_shared<testing::SerialScript>();
  SerialLink link(
      [&](const std::wstring&, const platform::SerialTimeouts&) -> platform::SerialOpening {
        return {std::make_unique<testing::FakeSerialPort>(script), {}};
      },
      {[](std::span<const std::uint8_t>) {}, [](ReadFailure, int) {}}, [] {});
  const test::NoThreads none;
  EXPECT_EQ(link.Open(L"COM5"), platform::SerialOpenError::kDevice);
  EXPECT_EQ(script.use_count(), 1);
}

}  // namespace
}  // namespace qlx
