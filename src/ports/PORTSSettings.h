// The COM Ports page without its window.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "config/ConfigDocument.h"
#include "config/DeviceKind.h"
#include "ports/UsbIdentity.h"

namespace qlx {

/// One row of the page.
struct PortRow {
  std::wstring port;  ///< "COM" and a number, empty when none is assigned
  UsbIdentity usb;
  bool operator==(const PortRow&) const = default;
};

/// A port that a row is bound to and that the terminal does not have.
struct AbsentPort {
  DeviceKind kind;
  std::wstring port;
  bool kept;  ///< by a save; false for one that was absent when the file was loaded
  bool operator==(const AbsentPort&) const = default;
};

/// Section Ports_Configuration: one row a device kind. User-interface thread.
class PORTSSettings {
 public:
  /// `ports` are the names that a row may be given, as discovered when the tool started.
  explicit PORTSSettings(std::vector<std::wstring> ports) : ports_(std::move(ports)) {}

  const std::vector<std::wstring>& ports() const { return ports_; }
  const PortRow& row(DeviceKind kind) const { return rows_[static_cast<std::size_t>(kind)]; }
  /// The port that serves `kind`: the second USB drawer shares the first one's.
  const std::wstring& PortOf(DeviceKind kind) const;

  /// Takes the ports that are present, and the identities of the two USB drawers. The other identities are
  /// not read back on purpose: the drivers find those devices by themselves, and a save without a new choice
  /// hands them back to that.
  void Load(const std::vector<ConfigNode>& elements);

  /// Writes every row and saves the file.
  void Save(ConfigDocument& document);

  /// Whether a row is another than when it was last loaded or saved.
  bool changed() const { return rows_ != stored_; }

  /// Empties every row; nothing is saved.
  void Clear() { rows_ = {}; }

  /// Takes a choice for `kind`; `second` is the second drawer's and counts for the USB drawers only. Another
  /// row that had the port loses it. A port that has been plugged in since the start may be chosen again.
  void Configure(DeviceKind kind, const PortRow& choice, const UsbIdentity& second);

  /// In the order of the rows: of those with a port, whose port is not among `present`; of those without,
  /// whose port in the file was not there when the tool started, until a save has cleared it.
  std::vector<AbsentPort> AbsentPorts(const std::vector<std::wstring>& present) const;

 private:
  PortRow& Row(DeviceKind kind) { return rows_[static_cast<std::size_t>(kind)]; }

  std::vector<std::wstring> ports_;
  std::array<PortRow, kDeviceKinds> rows_;
  std::array<PortRow, kDeviceKinds> stored_;
  std::array<std::wstring, kDeviceKinds> left_in_file_;  ///< ports that no row could take
};

}  // namespace qlx
