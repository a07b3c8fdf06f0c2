// The kinds of device that the suite serves, by the numbers that rows, files and dialogs share.
#pragma once

namespace qlx {

enum DeviceKind : int {
  kMsr = 0,
  kLineDisplay = 1,
  kIButton = 2,
  kCashDrawer1 = 3,  ///< USB; its port serves the second drawer too
  kCashDrawer2 = 4,  ///< USB; has an identity, but no port of its own
  kCashDrawerPci = 5,
  kPrinter = 6,
};

inline constexpr int kDeviceKinds = 7;

}  // namespace qlx
