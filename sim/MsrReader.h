// The magnetic stripe reader.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "sim/Device.h"
#include "sim/DeviceSettings.h"

namespace qlx::sim {

/// The data of the three tracks between their sentinels; an unreadable one is empty.
using Tracks = std::array<std::string, 3>;

/// A card as shops see them.
Tracks TestCard();

class MsrReader : public Device {
 public:
  void Configure(const MsrSettings& settings) { settings_ = settings; }

  /// What the driver sends: the head, the enabled tracks, the tail. A track that cannot be read has the data
  /// "E". Nothing at all when no track is sent.
  std::string Swipe(const Tracks& tracks) const;

 private:
  std::string Track(const TrackSettings& track, const std::string& data) const;

  MsrSettings settings_;
};

}  // namespace qlx::sim
