#include "platform/windows/JpegScan.h"

#include <algorithm>
#include <utility>

namespace qlx::platform {
namespace {

constexpr int kLongRun = 15;  // of zeros: 16 of them with no coefficient behind

class Follower {
 public:
  Follower(const JpegFrame& frame, const JpegScan& scan, EntropyBits& bits)
      : frame_(frame), scan_(scan), bits_(bits) {}

  void Follow() {
    // A scan of one component has no units but its blocks, and leaves out those beside the picture.
    const bool alone = scan_.parts.size() == 1;
    const JpegComponent& component = *scan_.parts.front().component;
    const int wide = alone ? component.blocks_wide : frame_.units_wide;
    const int high = alone ? component.blocks_high : frame_.units_high;
    for (int y = 0; y < high; ++y) {
      for (int x = 0; x < wide && !bits_.broken(); ++x) {
        BeginUnit();
        alone ? FollowBlock(scan_.parts.front(), x, y) : FollowUnit(x, y);
      }
    }
  }

 private:
  void BeginUnit() {
    if (scan_.restart_every > 0 && units_ > 0 && units_ % scan_.restart_every == 0) {
      bits_.Restart(restarts_++);
      blocks_without_more_ = 0;
    }
    ++units_;
  }
  void FollowUnit(int x, int y) {
    for (const JpegScan::Part& part : scan_.parts) {
      const auto& [across, down] = std::pair(part.component->across, part.component->down);
      for (int j = 0; j < down; ++j) {
        for (int i = 0; i < across; ++i) FollowBlock(part, x * across + i, y * down + j);
      }
    }
  }
  void FollowBlock(const JpegScan::Part& part, int x, int y) {
    if (!frame_.progressive) {
      std::uint64_t ignored = 0;
      FollowDc(part);
      FollowAc(*part.ac, ignored);
      return;
    }
    if (scan_.first == 0) {
      scan_.refines ? static_cast<void>(bits_.Take(1)) : FollowDc(part);
      return;
    }
    const auto row = static_cast<std::size_t>(frame_.units_wide * part.component->across);
    auto& nonzero = part.component->nonzero[static_cast<std::size_t>(y) * row + static_cast<std::size_t>(x)];
    scan_.refines ? RefineAc(*part.ac, nonzero) : FollowAc(*part.ac, nonzero);
  }

  void FollowDc(const JpegScan::Part& part) { TakeNumber(part.dc->Decode(bits_)); }
  void TakeNumber(int size) {
    constexpr int kLargest = 15;
    size > kLargest ? bits_.Break() : static_cast<void>(bits_.Take(size));
  }

  /// Whether a symbol of no coefficient ends the band of this block, and maybe of blocks after it.
  bool EndsBand(int run) {
    if (run == kLongRun) return false;
    blocks_without_more_ = frame_.progressive ? (1 << run) + static_cast<int>(bits_.Take(run)) : 1;
    return true;
  }

  void FollowAc(const HuffmanCode& code, std::uint64_t& nonzero) {
    if (blocks_without_more_ > 0) {
      --blocks_without_more_;
      return;
    }
    for (int k = std::max(scan_.first, 1); k <= scan_.last && !bits_.broken(); ++k) {
      const int symbol = code.Decode(bits_);
      const int size = symbol & 0xF;
      k += symbol >> 4;
      if (size == 0 && EndsBand(symbol >> 4)) {
        --blocks_without_more_;
        return;
      }
      bits_.Take(size);
      if (size > 0 && k <= scan_.last) nonzero |= std::uint64_t{1} << k;
    }
  }

  void RefineAc(const HuffmanCode& code, std::uint64_t& nonzero) {
    int k = scan_.first;
    while (blocks_without_more_ == 0 && k <= scan_.last && !bits_.broken()) {
      const int symbol = code.Decode(bits_);
      const int size = symbol & 0xF;
      if (size == 0 && EndsBand(symbol >> 4)) break;
      if (size > 1) return bits_.Break();
      bits_.Take(size);  // the sign of a new coefficient
      k = RefineUpToZero(k, symbol >> 4, nonzero);
      if (size > 0 && k <= scan_.last) nonzero |= std::uint64_t{1} << k;
      ++k;
    }
    if (blocks_without_more_ > 0) {
      RefineUpToZero(k, scan_.last, nonzero);
      --blocks_without_more_;
    }
  }

  /// From coefficient `k` over `zeros` of value 0 to the next such one; those of other values take a bit
  /// each.
  int RefineUpToZero(int k, int zeros, std::uint64_t nonzero) {
    for (; k <= scan_.last; ++k) {
      if ((nonzero >> k & 1) != 0) {
        bits_.Take(1);
      } else if (zeros-- == 0) {
        break;
      }
    }
    return k;
  }

  const JpegFrame& frame_;
  const JpegScan& scan_;
  EntropyBits& bits_;
  std::int64_t units_ = 0;
  int restarts_ = 0;
  int blocks_without_more_ = 0;  ///< in this band: this block and those after it
};

}  // namespace

void FollowScan(const JpegFrame& frame, const JpegScan& scan, EntropyBits& bits) {
  Follower(frame, scan, bits).Follow();
}

}  // namespace qlx::platform
