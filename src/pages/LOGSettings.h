// The Logging page without its window.
#pragma once

#include "pages/PageSettings.h"

namespace qlx {

/// Section Logging_Configuration: the log file, the logging service's port, the level and the modules.
class LOGSettings : public PageSettings {
 public:
  static constexpr int kFileName = 1025;
  static constexpr int kFileSize = 1023;
  static constexpr int kTcpPort = 1022;
  static constexpr int kLogLevel = 1019;
  static constexpr int kService = 1020;
  static constexpr int kMsr = 1021;
  static constexpr int kLineDisplay = 1032;
  static constexpr int kIButton = 1035;
  static constexpr int kCashDrawerUsb = 1036;
  static constexpr int kCashDrawerPci = 1037;
  static constexpr int kPrinter = 1039;

  LOGSettings();
};

}  // namespace qlx
