#include "ports/supported_devices.h"

#include <fstream>

#include <gtest/gtest.h>
#include <stdlib.h>

#include "tests/support/TemporaryDirectory.h"

namespace qlx {
namespace {

TEST(InstalledSupportedDevices, AreLookedForBesideTheSuitesSettings) {
  const test::TemporaryDirectory directory;
  std::ofstream(directory.path() / "supported_devices") << "<supported_devices V1=\"0x1234\"/>";
  setenv("QUILLON_SETTINGS", (directory.path() / "quillon.conf").c_str(), 1);
  const SupportedDevices installed = InstalledSupportedDevices();
  unsetenv("QUILLON_SETTINGS");
  EXPECT_EQ(installed.vendors[0], 0x1234);
}

}  // namespace
}  // namespace qlx
