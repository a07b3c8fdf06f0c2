// What a stand-in for hid.dll answers, and what it saw.
#pragma once

#include <cstdint>

namespace qlx::testing {

struct StandInHid {
  bool gives_attributes = true;
  bool gives_preparsed_data = true;
  bool gives_caps = true;
  bool gives_serial_number = true;
  bool gives_product = true;
  wchar_t text[160] = L"text";  ///< of both texts; more than 127 units end nowhere in the caller's buffer
  int preparsed_data = 0;       ///< that were given and not taken back
  bool short_buffer = false;    ///< whether a text was ever asked for with another size than 256 bytes
};

}  // namespace qlx::testing

/// The stand-in's one state, for as long as the library is loaded.
extern "C" qlx::testing::StandInHid* StandInHidState();
