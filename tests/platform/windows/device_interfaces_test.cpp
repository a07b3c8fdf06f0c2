#include "platform/device_interfaces.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "tests/platform/windows/RegisteredInterface.h"

namespace qlx::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::Presence;
using testing::RegisteredInterface;

/// What the paths end in, in alphabetical order.
std::vector<std::wstring> References(const DeviceInterfaces& interfaces) {
  std::vector<std::wstring> references;
  for (const std::wstring& path : interfaces.PresentPaths()) {
    EXPECT_TRUE(path.starts_with(L"\\\\?\\")) << path;
    references.push_back(path.substr(path.rfind(L'\\') + 1));
  }
  for (std::wstring& reference : references) CharUpperW(reference.data());
  std::ranges::sort(references);
  return references;
}

std::vector<std::wstring> References() {
  return References(*VirtualPortInterfaces());
}

TEST(PresentInterfaces, AreListedByTheirPaths) {
  const RegisteredInterface seven(L"MZP_COM7");
  const RegisteredInterface twelve(L"MZP_COM12");
  EXPECT_THAT(References(), ElementsAre(L"MZP_COM12", L"MZP_COM7"));
}

TEST(PresentInterfaces, AreThereAtOnceAndGoneAtOnce) {
  const auto interfaces = VirtualPortInterfaces();
  EXPECT_THAT(References(*interfaces), IsEmpty());
  {
    const RegisteredInterface port(L"MZP_COM7");
    EXPECT_THAT(References(*interfaces), ElementsAre(L"MZP_COM7"));
  }
  EXPECT_THAT(References(*interfaces), IsEmpty());
}

TEST(PresentInterfaces, AreNoneWhoseDeviceIsNotStarted) {
  const RegisteredInterface absent(L"MZP_COM7", Presence::kAbsent);
  const RegisteredInterface present(L"MZP_COM8");
  EXPECT_THAT(References(), ElementsAre(L"MZP_COM8"));
}

TEST(PresentInterfaces, MayBeOfAnotherKind) {
  const RegisteredInterface other(L"OTHER");
  EXPECT_THAT(References(), ElementsAre(L"OTHER"));
}

}  // namespace
}  // namespace qlx::platform
