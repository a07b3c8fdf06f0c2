// The kinds of device that the simulator plays, by the names that its commands and the suite's file use.
#pragma once

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

namespace qlx::sim {

enum class Kind { kMsr, kDisplay, kIButton, kDrawers, kPci, kPrinter };

struct KindFacts {
  Kind kind;
  std::string_view name;
  std::wstring_view element;  ///< in Ports_Configuration
};

/// In the order in which two kinds that claim one port get it.
inline constexpr KindFacts kKinds[] = {
    {Kind::kMsr, "msr", L"MSR_USB"},        {Kind::kDisplay, "display", L"LD_USB"},
    {Kind::kIButton, "ibutton", L"IB_USB"}, {Kind::kDrawers, "drawers", L"CD_USB"},
    {Kind::kPci, "pci", L"CD_PCI"},         {Kind::kPrinter, "printer", L"PRINTER_USB"},
};

constexpr std::string_view NameOf(Kind kind) {
  return std::ranges::find(kKinds, kind, &KindFacts::kind)->name;
}

constexpr std::optional<Kind> KindOf(std::string_view name) {
  const auto* const found = std::ranges::find(kKinds, name, &KindFacts::name);
  if (found == std::end(kKinds)) return std::nullopt;
  return found->kind;
}

}  // namespace qlx::sim
