// How much memory a piece of work takes.
#pragma once

#include <cstddef>
#include <functional>

namespace qlx {

/// Bytes by which `work` raises the peak of a process's memory: of this one, or of a copy of it where the
/// system makes such. For one measurement a process.
std::size_t PeakGrowth(const std::function<void()>& work);

}  // namespace qlx
