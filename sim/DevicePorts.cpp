#include "sim/DevicePorts.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "sim/printable.h"
#include "sim/receipt/receipt_picture.h"

namespace qlx::sim {
namespace {

using std::chrono::milliseconds;

/// A receipt ends where the program pauses: the bytes behind its form feed put the printer back and are still
/// part of it.
constexpr milliseconds kReceiptPause{500};
constexpr std::size_t kLongestReceipt = std::size_t{1} << 20;
constexpr std::string_view kLinkStart = "MZP_";

/// Of a simulator that was killed.
void RemoveLinks(const std::filesystem::path& directory) {
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    if (entry.is_symlink() && entry.path().filename().native().starts_with(kLinkStart)) {
      std::filesystem::remove(entry.path());
    }
  }
}

std::string Text(Kind kind) {
  return std::string(NameOf(kind));
}

}  // namespace

Device& Devices::Of(Kind kind) {
  Device* const all[] = {&msr, &display, &ibutton, &drawers, &pci, &printer};
  return *all[static_cast<std::size_t>(kind)];
}

DevicePorts::Port::Port(EventLoop& loop, DevicePorts& owner, const std::string& port_name)
    : name(port_name),
      tty(loop, owner.links_ / (std::string(kLinkStart) + port_name),
          [this, &owner](std::string_view bytes) { owner.Receive(*this, bytes); }),
      answers(loop, [this, &owner](std::string_view bytes) { owner.Send(*kind, bytes); }) {
  tty.Plug();
}

DevicePorts::DevicePorts(EventLoop& loop, Places places, std::function<DeviceSettings()> read_settings,
                         Say say)
    : loop_(loop),
      links_(std::move(places.links)),
      read_settings_(std::move(read_settings)),
      say_(std::move(say)),
      receipts_(std::move(places.receipts)) {
  std::filesystem::create_directories(links_);
  RemoveLinks(links_);
  for (const std::string& name : places.names) ports_.emplace_back(loop, *this, name);
}

DevicePorts::~DevicePorts() {
  Stop();
  ports_.clear();
  std::error_code left;
  std::filesystem::remove(links_, left);
}

void DevicePorts::Start() {
  const DeviceSettings settings = read_settings_();
  devices_.msr.Configure(settings.msr);
  devices_.ibutton.Configure(settings.ibutton);
  Assign(settings);
  running_ = true;
}

void DevicePorts::Stop() {
  running_ = false;
  dripping_.clear();
  KeepReceipt();
  for (Port& port : ports_) {
    port.answers.Clear();
    port.tty.Quiet();
  }
}

void DevicePorts::Assign(const DeviceSettings& settings) {
  for (Port& port : ports_) port.kind.reset();
  for (const auto& [kind, name] : settings.ports) {
    if (!name.empty()) AssignOne(kind, name);
  }
  for (Port& port : ports_) {
    if (const Refusal refusal = SettlePort(port); !refusal.empty()) say_(refusal);
  }
}

void DevicePorts::AssignOne(Kind kind, const std::string& name) {
  const auto port = std::ranges::find(ports_, name, &Port::name);
  if (port == ports_.end()) {
    say_(Text(kind) + " has no port: there is no " + Printable(name));
  } else if (port->kind) {
    say_(Text(kind) + " has no port: " + name + " is the port of " + Text(*port->kind));
  } else {
    port->kind = kind;
    say_(Text(kind) + " is on " + name);
  }
}

Refusal DevicePorts::SettlePort(Port& port) {
  try {
    if (port.kind && unplugged_.contains(*port.kind)) {
      port.tty.Unplug();
    } else {
      port.tty.Plug();
    }
    return {};
  } catch (const std::system_error& failure) {
    return port.name + " cannot be made: " + failure.what();
  }
}

DevicePorts::Port* DevicePorts::PortOf(Kind kind) {
  const auto port = std::ranges::find(ports_, kind, &Port::kind);
  return port == ports_.end() ? nullptr : &*port;
}

const DevicePorts::Port* DevicePorts::PortOf(Kind kind) const {
  const auto port = std::ranges::find(ports_, kind, &Port::kind);
  return port == ports_.end() ? nullptr : &*port;
}

Refusal DevicePorts::WhyMute(Kind kind) const {
  if (!running_) return "the service QLXSVC is not running";
  const Port* port = PortOf(kind);
  if (port == nullptr) return Text(kind) + " has no port";
  return port->tty.plugged() ? "" : Text(kind) + " is unplugged";
}

Refusal DevicePorts::Send(Kind kind, std::string_view bytes) {
  if (Refusal mute = WhyMute(kind); !mute.empty()) return mute;
  Port& port = *PortOf(kind);
  if (port.tty.Send(bytes)) return {};
  std::string dropped = std::to_string(bytes.size()) + " bytes dropped: nobody reads " + port.name;
  say_(Text(kind) + ": " + dropped);
  return dropped;
}

Refusal DevicePorts::Trickle(Kind kind, std::string bytes, milliseconds pause) {
  if (Refusal mute = WhyMute(kind); !mute.empty()) return mute;
  dripping_[kind] = {std::move(bytes), pause, {}};
  Drip(kind);
  return {};
}

void DevicePorts::Drip(Kind kind) {
  Dripping& drops = dripping_.at(kind);
  if (drops.rest.empty() || !Send(kind, drops.rest.substr(0, 1)).empty()) {
    dripping_.erase(kind);
    return;
  }
  drops.rest.erase(0, 1);
  drops.next = loop_.After(drops.pause, [this, kind] { Drip(kind); });
}

Refusal DevicePorts::Flood(Kind kind, bool on) {
  if (Refusal mute = WhyMute(kind); !mute.empty()) return mute;
  PortOf(kind)->tty.Flood(on);
  return {};
}

Refusal DevicePorts::Unplug(Kind kind) {
  Port* port = PortOf(kind);
  if (port == nullptr) return Text(kind) + " has no port";
  if (kind == Kind::kPrinter) KeepReceipt();
  dripping_.erase(kind);
  port->answers.Clear();
  unplugged_.insert(kind);
  return SettlePort(*port);
}

Refusal DevicePorts::Plug(Kind kind) {
  Port* port = PortOf(kind);
  if (port == nullptr) return Text(kind) + " has no port";
  unplugged_.erase(kind);
  return SettlePort(*port);
}

std::vector<std::string> DevicePorts::Status() const {
  std::vector<std::string> lines;
  for (const Port& port : ports_) {
    const std::string device = port.kind ? Text(*port.kind) : "none";
    lines.push_back(port.name + " " + device + (port.tty.plugged() ? " plugged" : " unplugged"));
  }
  return lines;
}

void DevicePorts::Receive(Port& port, std::string_view bytes) {
  if (!running_ || !port.kind) return;
  const Reaction reaction = devices_.Of(*port.kind).Receive(bytes);
  for (const std::string& line : reaction.lines) say_(line);
  port.answers.Add(reaction);
  if (port.kind == Kind::kPrinter) ReceivePrinted();
}

void DevicePorts::ReceivePrinted() {
  receipt_end_ = {};
  const std::size_t length = devices_.printer.paper().size();
  if (length >= kLongestReceipt) return KeepReceipt();
  if (length > 0) receipt_end_ = loop_.After(kReceiptPause, [this] { KeepReceipt(); });
}

void DevicePorts::KeepReceipt() {
  receipt_end_ = {};
  const std::string bytes = devices_.printer.TakePaper();
  if (bytes.empty()) return;
  const auto file = receipts_.Keep(bytes);
  say_("printer: receipt of " + std::to_string(bytes.size()) + " bytes " +
       (file ? "kept as " + file->filename().native() : "cannot be kept"));
  if (!file) return;
  const auto picture = std::filesystem::path(*file).replace_extension(".png");
  const bool drawn = receipt::DrawPaper(receipt::SetReceipt(bytes), picture);
  say_("printer: receipt " + (drawn ? "drawn as " + picture.filename().native() : "cannot be drawn"));
}

}  // namespace qlx::sim
