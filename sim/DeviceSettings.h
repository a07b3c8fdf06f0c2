// What the devices' drivers take from the suite's configuration file.
#pragma once

#include <array>
#include <filesystem>
#include <map>
#include <string>

#include "sim/Kind.h"

namespace qlx::sim {

struct TrackSettings {
  bool enabled = true;
  bool carriage_return = false;
  std::string start_sentinel;
};

struct MsrSettings {
  std::array<TrackSettings, 3> tracks;
  std::string end_sentinel;
  std::string head;
  std::string tail;
  bool carriage_returns = false;  ///< after every track
  bool strip_sentinels = false;
  bool hide_error_tracks = false;
};

struct IButtonSettings {
  std::size_t start = 1;    ///< first digit of the identifier, 1 to 16
  std::size_t length = 16;  ///< digits, 1 to 16
  std::string prefix{};
  std::string suffix{};
  std::string delimiter{};
  std::string on_remove{};
};

struct DeviceSettings {
  std::map<Kind, std::string> ports;  ///< such as "COM3"; empty when none is assigned
  MsrSettings msr;
  IButtonSettings ibutton;
};

/// Reads the file at `configuration`. A value that is missing or unusable is that of a new file, as all are
/// when there is no such file yet.
DeviceSettings ReadDeviceSettings(const std::filesystem::path& configuration);

}  // namespace qlx::sim
