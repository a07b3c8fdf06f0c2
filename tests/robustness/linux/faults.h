// System calls that fail once, on order: the program that links this has its own open, write, fsync and so on
// in front of the C library's.
#pragma once

#include <functional>
#include <ostream>

namespace qlx::faults {

enum class Call { kOpen, kRead, kWrite, kFsync, kClose, kRename, kChmod, kTruncate };
inline constexpr Call kEveryCall[] = {Call::kOpen,  Call::kRead,   Call::kWrite, Call::kFsync,
                                      Call::kClose, Call::kRename, Call::kChmod, Call::kTruncate};

/// In place of an error number: the call does half of what it was asked for.
inline constexpr int kCutShort = -1;

/// One call that fails.
struct Fault {
  Call call;
  int index;  ///< 0 is the first call of its kind after Arm
  int error;  ///< an errno value or kCutShort (reads and writes only)
};

std::ostream& operator<<(std::ostream& out, const Fault& fault);

/// Runs `act` once, before the next call of the kind: what another process does just then.
void Before(Call call, std::function<void()> act);

/// From now until Disarm, in every thread. A close that fails has closed its descriptor all the same.
void Arm(const Fault& fault);
/// True when the fault was met.
bool Disarm();

}  // namespace qlx::faults
