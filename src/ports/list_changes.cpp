#include "ports/list_changes.h"

#include <algorithm>

namespace qlx {

std::vector<ListChange> ChangesBetween(std::vector<std::wstring> from, const std::vector<std::wstring>& to) {
  std::vector<ListChange> changes;
  for (std::size_t at = 0; at < to.size(); ++at) {
    const auto here = from.begin() + static_cast<std::ptrdiff_t>(std::min(at, from.size()));
    const auto found = std::find(here, from.end(), to[at]);
    if (found == from.end()) {
      changes.push_back({ListChange::Kind::kInsert, at, to[at]});
      from.insert(here, to[at]);
      continue;
    }
    changes.insert(changes.end(), static_cast<std::size_t>(found - here), {ListChange::Kind::kDelete, at});
    from.erase(here, found);
  }
  changes.insert(changes.end(), from.size() - to.size(), {ListChange::Kind::kDelete, to.size()});
  return changes;
}

}  // namespace qlx
