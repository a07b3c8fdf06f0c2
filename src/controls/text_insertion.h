// Which part of an insertion a text field takes: the rule of the field, without any window.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

namespace qlx {

/// What a single-line field takes from the keyboard, the clipboard or any other source. Text that the program
/// sets itself is not bound by it.
struct InsertionRule {
  /// Most UTF-16 code units that the field may hold.
  std::size_t limit = std::numeric_limits<std::size_t>::max();
  bool digits_only = false;
};

/// The part of `inserted` that fits into a field that holds `held_units` UTF-16 code units besides it: up to
/// the first line break, without characters that XML 1.0 cannot hold, without other than ASCII digits where
/// the rule says so, cut at the limit.
std::wstring AcceptedInsertion(const InsertionRule& rule, std::size_t held_units, std::wstring_view inserted);

}  // namespace qlx
