// Two cash drawers behind one port.
#pragma once

#include <array>
#include <string>

#include "sim/Device.h"

namespace qlx::sim {

struct Drawer {
  bool present = true;
  bool open = false;
};

/// Opens both drawers on 07 1B 07 and answers the status byte on 06.
class CashDrawers : public Device {
 public:
  /// `name` stands before what it says.
  CashDrawers(std::string name, const std::array<Drawer, 2>& drawers)
      : name_(std::move(name)), drawers_(drawers) {}

  Reaction Receive(std::string_view bytes) override;

  /// 0x10 drawer 1 is present, 0x40 open; 0x08 drawer 2 is present, 0x20 open.
  unsigned char Status() const;
  /// The drawer of number 1 or 2.
  Drawer& drawer(int number) { return drawers_.at(static_cast<std::size_t>(number - 1)); }

 private:
  std::string Open();

  std::string name_;
  std::array<Drawer, 2> drawers_;
  std::string command_;  ///< the beginning of one
};

}  // namespace qlx::sim
