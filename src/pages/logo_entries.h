// The printer's logos as the configuration file lists them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/ConfigDocument.h"
#include "pages/logo_station.h"
#include "platform/program.h"

namespace qlx {

/// Slots are numbered from 1; a file's name has room for three digits.
inline constexpr int kMostSlots = 999;

/// One used slot of the printer.
struct LogoRecord {
  int slot = 0;
  std::wstring path;  ///< the picture that the user picked, a working copy of it, or the printer's bitmap
  Station station = Station::kCustomerReceipt;

  bool operator==(const LogoRecord&) const = default;
};

/// The logos in the order of the file. An entry without a path, a slot of 1 to 999 or a known station is
/// none, nor is one whose slot an earlier entry has.
std::vector<LogoRecord> ReadLogos(ConfigDocument& document);

/// Puts `records` and `timestamp` in the place of the logos that `document` lists. Does not write the file.
void ListLogos(const std::vector<LogoRecord>& records, const std::wstring& timestamp,
               ConfigDocument& document);

/// `time` as 16 lower-case hexadecimal digits of the 100 ns units since 1601-01-01 00:00 UTC, which is how
/// Windows counts file times.
std::wstring TimestampText(platform::WallTime time);

}  // namespace qlx
