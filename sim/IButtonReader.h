// The iButton reader.
#pragma once

#include <string>

#include "sim/Device.h"
#include "sim/DeviceSettings.h"

namespace qlx::sim {

class IButtonReader : public Device {
 public:
  static constexpr std::size_t kIdDigits = 16;

  void Configure(const IButtonSettings& settings) { settings_ = settings; }

  /// What the driver sends for a key with the identifier `id`, 16 hexadecimal digits: the prefix, the
  /// configured digits in upper case, the suffix, the delimiter. Digits past the last one are not there.
  std::string Touch(const std::string& id) const;
  /// What the driver sends for the key's removal.
  const std::string& Remove() const { return settings_.on_remove; }

 private:
  IButtonSettings settings_;
};

}  // namespace qlx::sim
