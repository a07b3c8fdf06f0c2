// The virtual ports with the devices behind them, as the suite's framework service connects the two.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "sim/BurstQueue.h"
#include "sim/CashDrawers.h"
#include "sim/DeviceSettings.h"
#include "sim/EventLoop.h"
#include "sim/IButtonReader.h"
#include "sim/Kind.h"
#include "sim/LineDisplay.h"
#include "sim/MsrReader.h"
#include "sim/ReceiptFolder.h"
#include "sim/ReceiptPrinter.h"
#include "sim/Refusal.h"
#include "sim/Say.h"
#include "sim/VirtualPort.h"

namespace qlx::sim {

struct Devices {
  Device& Of(Kind kind);

  MsrReader msr;
  LineDisplay display;
  IButtonReader ibutton;
  CashDrawers drawers{"drawers", {}};
  CashDrawers pci{"pci", {Drawer{}, Drawer{.present = false}}};
  ReceiptPrinter printer;
};

/// The ports are there as long as the object; devices answer between Start and Stop. Belongs to its loop's
/// thread.
class DevicePorts {
 public:
  struct Places {
    std::filesystem::path links;     ///< directory, made here and gone with the object
    std::vector<std::string> names;  ///< such as "COM3", each once
    std::filesystem::path receipts;  ///< directory, exists
  };

  /// `read_settings` is called by every start. Throws std::system_error when the ports cannot be made.
  DevicePorts(EventLoop& loop, Places places, std::function<DeviceSettings()> read_settings, Say say);
  DevicePorts(const DevicePorts&) = delete;
  DevicePorts& operator=(const DevicePorts&) = delete;
  ~DevicePorts();

  void Start();
  void Stop();

  Devices& devices() { return devices_; }

  /// Sends `bytes` in one piece as the device of `kind`.
  Refusal Send(Kind kind, std::string_view bytes);
  /// Sends them one by one, one each `pause`, in place of what was still to trickle.
  Refusal Trickle(Kind kind, std::string bytes, std::chrono::milliseconds pause);
  Refusal Flood(Kind kind, bool on);
  /// The port of the device goes or comes back. Counts on after a restart, on whichever port it then has.
  Refusal Unplug(Kind kind);
  Refusal Plug(Kind kind);

  /// Why the device of `kind` can send nothing now.
  Refusal WhyMute(Kind kind) const;
  /// One line a port: its name, its device, whether it is plugged.
  std::vector<std::string> Status() const;

 private:
  struct Port {
    Port(EventLoop& loop, DevicePorts& owner, const std::string& name);

    std::string name;
    std::optional<Kind> kind;
    VirtualPort tty;
    BurstQueue answers;
  };
  struct Dripping {
    std::string rest;
    std::chrono::milliseconds pause;
    EventSource next;
  };

  Port* PortOf(Kind kind);
  const Port* PortOf(Kind kind) const;
  void Assign(const DeviceSettings& settings);
  void AssignOne(Kind kind, const std::string& name);
  Refusal SettlePort(Port& port);
  void Receive(Port& port, std::string_view bytes);
  void ReceivePrinted();
  void KeepReceipt();
  void Drip(Kind kind);

  EventLoop& loop_;
  std::filesystem::path links_;
  std::function<DeviceSettings()> read_settings_;
  Say say_;
  ReceiptFolder receipts_;
  Devices devices_;
  bool running_ = false;
  std::set<Kind> unplugged_;
  std::list<Port> ports_;
  std::map<Kind, Dripping> dripping_;
  EventSource receipt_end_;
};

}  // namespace qlx::sim
