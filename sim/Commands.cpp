#include "sim/Commands.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <limits>
#include <sstream>

#include "sim/command_arguments.h"
#include "sim/hex_bytes.h"
#include "sim/printable.h"

namespace qlx::sim {
namespace {

constexpr int kMostGarbage = 65536;
constexpr int kLongestPause = 60'000;
constexpr std::size_t kMostCodePages = 512;
constexpr std::string_view kPrinterArguments = "NAME | type N | pages [[KIND:]NUMBER...]";
constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();

/// Calls `action` with the device that `word` names.
Refusal WithKind(const std::string& word, const std::function<Refusal(Kind)>& action) {
  const auto kind = KindOf(word);
  return kind ? action(*kind) : NoKind(word);
}

/// "[pci] N" to that drawer.
Refusal WithDrawer(Devices& devices, const std::vector<std::string>& words,
                   const std::function<Refusal(Drawer&)>& action) {
  const bool pci = words.front() == "pci" && words.size() == 2;
  if (!pci && words.size() == 2) return "only pci can stand before the drawer's number";
  const auto number = ReadNumber(words.back(), 1, 2);
  if (!number) return NoNumber(words.back(), 1, 2);
  return action((pci ? devices.pci : devices.drawers).drawer(*number));
}

Refusal SetOpen(Drawer& drawer, bool open) {
  if (!drawer.present) return "that drawer is not present";
  drawer.open = open;
  return {};
}

}  // namespace

struct Commands::Row {
  std::string_view word;
  std::string_view arguments;
  std::size_t least;
  std::size_t most;
  Refusal (Commands::*execute)(const Arguments&);
};

const Commands::Row Commands::kRows[] = {
    {"help", "", 0, 0, &Commands::Help},
    {"status", "", 0, 0, &Commands::Status},
    {"swipe", "[TRACK1|TRACK2|TRACK3]", 0, kAnyNumber, &Commands::Swipe},
    {"touch", "ID", 1, 1, &Commands::Touch},
    {"remove", "", 0, 0, &Commands::Remove},
    {"open", "[pci] N", 1, 2, &Commands::Open},
    {"close", "[pci] N", 1, 2, &Commands::Close},
    {"absent", "[pci] N", 1, 2, &Commands::Absent},
    {"present", "[pci] N", 1, 2, &Commands::Present},
    {"unplug", "KIND", 1, 1, &Commands::Unplug},
    {"plug", "KIND", 1, 1, &Commands::Plug},
    {"printer", kPrinterArguments, 1, kAnyNumber, &Commands::Printer},
    {"garbage", "N [KIND]", 1, 2, &Commands::Garbage},
    {"flood", "KIND on|off", 2, 2, &Commands::Flood},
    {"send", "KIND HEXBYTES", 2, 2, &Commands::SendBytes},
    {"trickle", "KIND HEXBYTES MS", 3, 3, &Commands::Trickle},
};

std::string Commands::Execute(const std::string& line) {
  lines_.clear();
  std::istringstream rest(line);
  std::string word;
  if (!(rest >> word)) return "ok\n";
  const auto* const row = std::ranges::find(kRows, word, &Row::word);
  if (row == std::end(kRows)) return "error: there is no command " + Printable(word) + ": try help\n";

  Arguments arguments;
  std::getline(rest >> std::ws, arguments.text);
  std::istringstream text(arguments.text);
  arguments.words.assign(std::istream_iterator<std::string>(text), {});
  if (arguments.words.size() < row->least || arguments.words.size() > row->most) {
    return "error: usage: " + word + " " + std::string(row->arguments) + "\n";
  }
  const Refusal refusal = (this->*row->execute)(arguments);
  return lines_ + (refusal.empty() ? "ok\n" : "error: " + refusal + "\n");
}

Refusal Commands::Help(const Arguments&) {
  for (const Row& row : kRows) {
    lines_ += std::string(row.word) + (row.arguments.empty() ? "" : " ") + std::string(row.arguments) + "\n";
  }
  lines_ += "KIND:" + KindNames() + "\nNAME:" + PrinterNames() + "\n";
  return {};
}

Refusal Commands::Status(const Arguments&) {
  for (const std::string& line : ports_.Status()) lines_ += line + "\n";
  return {};
}

Refusal Commands::Swipe(const Arguments& arguments) {
  const auto tracks = arguments.text.empty() ? TestCard() : ReadTracks(arguments.text);
  if (!tracks) return "a card has three tracks";
  return ports_.Send(Kind::kMsr, ports_.devices().msr.Swipe(*tracks));
}

Refusal Commands::Touch(const Arguments& arguments) {
  const std::string& id = arguments.words.front();
  if (id.size() != IButtonReader::kIdDigits || !FromHex(id)) {
    return Printable(id) + " is no identifier of 16 hexadecimal digits";
  }
  touched_ = true;
  return ports_.Send(Kind::kIButton, ports_.devices().ibutton.Touch(id));
}

Refusal Commands::Remove(const Arguments&) {
  if (!touched_) return "no key touches the reader";
  touched_ = false;
  return ports_.Send(Kind::kIButton, ports_.devices().ibutton.Remove());
}

Refusal Commands::Open(const Arguments& arguments) {
  return WithDrawer(ports_.devices(), arguments.words, [](Drawer& drawer) { return SetOpen(drawer, true); });
}

Refusal Commands::Close(const Arguments& arguments) {
  return WithDrawer(ports_.devices(), arguments.words, [](Drawer& drawer) { return SetOpen(drawer, false); });
}

Refusal Commands::Absent(const Arguments& arguments) {
  return WithDrawer(ports_.devices(), arguments.words, [](Drawer& drawer) {
    drawer.present = false;
    return Refusal();
  });
}

Refusal Commands::Present(const Arguments& arguments) {
  return WithDrawer(ports_.devices(), arguments.words, [](Drawer& drawer) {
    drawer.present = true;
    return Refusal();
  });
}

Refusal Commands::Unplug(const Arguments& arguments) {
  return WithKind(arguments.words[0], [this](Kind kind) { return ports_.Unplug(kind); });
}

Refusal Commands::Plug(const Arguments& arguments) {
  return WithKind(arguments.words[0], [this](Kind kind) { return ports_.Plug(kind); });
}

Refusal Commands::Printer(const Arguments& arguments) {
  const auto& words = arguments.words;
  if (words[0] == "pages") return PrinterPages({words.begin() + 1, words.end()});
  if (words[0] == "type" && words.size() == 2) return PrinterType(words[1]);
  if (words.size() != 1) return "usage: printer " + std::string(kPrinterArguments);
  const auto* const printer = FindDescribedPrinter(words[0]);
  if (printer == nullptr) return NoPrinter(words[0]);
  ports_.devices().printer.Become(*printer);
  return {};
}

Refusal Commands::PrinterType(const std::string& word) {
  const auto type = ReadNumber(word, 0, 0xFF);
  if (!type) return NoNumber(word, 0, 0xFF);
  ports_.devices().printer.SetType(static_cast<std::uint8_t>(*type));
  return {};
}

Refusal Commands::PrinterPages(const std::vector<std::string>& words) {
  if (words.size() > kMostCodePages) return "that is more than " + std::to_string(kMostCodePages);
  std::vector<CodePage> pages;
  for (const std::string& word : words) {
    const auto page = ReadCodePage(word);
    if (!page) return Printable(word) + " is no code page: 437, or 80:850 with its kind in hexadecimal";
    pages.push_back(*page);
  }
  ports_.devices().printer.SetCodePages(std::move(pages));
  return {};
}

Refusal Commands::Garbage(const Arguments& arguments) {
  const auto& words = arguments.words;
  const auto count = ReadNumber(words[0], 0, kMostGarbage);
  if (!count) return NoNumber(words[0], 0, kMostGarbage);
  const auto send = [&](Kind kind) {
    std::string bytes(static_cast<std::size_t>(*count), '\0');
    std::ranges::generate(bytes, [this] { return static_cast<char>(random_()); });
    return ports_.Send(kind, bytes);
  };
  if (words.size() == 2) return WithKind(words[1], send);
  for (const KindFacts& facts : kKinds) {
    if (!ports_.WhyMute(facts.kind).empty()) continue;
    if (Refusal refusal = send(facts.kind); !refusal.empty()) return refusal;
  }
  return {};
}

Refusal Commands::Flood(const Arguments& arguments) {
  const std::string& state = arguments.words[1];
  if (state != "on" && state != "off") return "usage: flood KIND on|off";
  return WithKind(arguments.words[0], [&](Kind kind) { return ports_.Flood(kind, state == "on"); });
}

Refusal Commands::SendBytes(const Arguments& arguments) {
  const auto bytes = FromHex(arguments.words[1]);
  if (!bytes) return "the bytes must be pairs of hexadecimal digits";
  return WithKind(arguments.words[0], [&](Kind kind) { return ports_.Send(kind, *bytes); });
}

Refusal Commands::Trickle(const Arguments& arguments) {
  const auto bytes = FromHex(arguments.words[1]);
  if (!bytes) return "the bytes must be pairs of hexadecimal digits";
  const auto pause = ReadNumber(arguments.words[2], 0, kLongestPause);
  if (!pause) return NoNumber(arguments.words[2], 0, kLongestPause);
  return WithKind(arguments.words[0],
                  [&](Kind kind) { return ports_.Trickle(kind, *bytes, std::chrono::milliseconds(*pause)); });
}

}  // namespace qlx::sim
