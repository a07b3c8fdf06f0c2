// How much memory a piece of work takes.
#pragma once

#include <functional>
#include <optional>

namespace qlx::test {

/// By how many KiB the address space of this process grows at its peak while `work` is done, however much is
/// given back in the end. Empty when `work` answers false.
std::optional<long> MemoryGrowth(const std::function<bool()>& work);

}  // namespace qlx::test
