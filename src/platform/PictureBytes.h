// The bytes of a picture file, in order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace qlx::platform {

/// Hands out a file's bytes through one block of memory, so that no file is ever held whole.
class PictureBytes {
 public:
  /// Fills its argument from the front and says how far; short of it only at the end of the file.
  using Source = std::function<std::size_t(std::span<std::uint8_t>)>;

  explicit PictureBytes(Source source);

  /// The bytes at hand, read anew when there are none; none at the end of the file.
  std::span<const std::uint8_t> Block();
  /// Goes past `count` bytes, at most those at hand.
  void Drop(std::size_t count);

  /// False when the file ends before `bytes` is full.
  bool Read(std::span<std::uint8_t> bytes);
  /// False when the file ends before.
  bool Skip(std::uint64_t count);

 private:
  Source source_;
  std::vector<std::uint8_t> block_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

}  // namespace qlx::platform
