#include "platform/PictureBytes.h"

#include <algorithm>
#include <utility>

namespace qlx::platform {
namespace {

constexpr std::size_t kBlock = std::size_t{64} << 10;

}  // namespace

PictureBytes::PictureBytes(Source source) : source_(std::move(source)), block_(kBlock) {}

std::span<const std::uint8_t> PictureBytes::Block() {
  if (begin_ == end_) {
    begin_ = 0;
    end_ = source_(block_);
  }
  return std::span(block_).subspan(begin_, end_ - begin_);
}

void PictureBytes::Drop(std::size_t count) {
  begin_ += count;
}

bool PictureBytes::Read(std::span<std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const auto block = Block();
    if (block.empty()) return false;
    const std::size_t count = std::min(block.size(), bytes.size());
    std::ranges::copy(block.first(count), bytes.begin());
    Drop(count);
    bytes = bytes.subspan(count);
  }
  return true;
}

bool PictureBytes::Skip(std::uint64_t count) {
  while (count > 0) {
    const std::uint64_t at_hand = Block().size();
    if (at_hand == 0) return false;
    Drop(static_cast<std::size_t>(std::min(count, at_hand)));
    count -= std::min(count, at_hand);
  }
  return true;
}

}  // namespace qlx::platform
