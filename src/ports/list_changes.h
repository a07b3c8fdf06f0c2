// The steps from one list of texts to another, so that a list on the screen keeps what stays.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace qlx {

struct ListChange {
  enum class Kind { kInsert, kDelete };
  Kind kind;
  std::size_t at;       ///< index after all steps before this one
  std::wstring text{};  ///< of an inserted item
  bool operator==(const ListChange&) const = default;
};

/// The steps, in order, that make `from` the same as `to`. What stays is not touched as long as it stays in
/// its order.
std::vector<ListChange> ChangesBetween(std::vector<std::wstring> from, const std::vector<std::wstring>& to);

}  // namespace qlx
