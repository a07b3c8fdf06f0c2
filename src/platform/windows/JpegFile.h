// A JPEG file (ISO/IEC 10918-1) from its first marker to its last.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/windows/JpegScan.h"

namespace qlx::platform {

/// Checks a file by reading it once. Takes what GDI+ reads: Huffman coded pictures of 8 bits a sample, in one
/// go or progressive, of one, three or four components.
class JpegFile {
 public:
  explicit JpegFile(PictureBytes& file) : file_(file) {}

  /// False when the file is damaged, cut short, of another kind, or of a size that is not allowed.
  bool Read();

  int width() const { return frame_.width; }
  int height() const { return frame_.height; }
  int bits_per_pixel() const { return static_cast<int>(frame_.components.size()) * 8; }
  /// The file without what is not part of the picture: comments, thumbnails, profiles and what follows its
  /// end.
  std::span<const std::uint8_t> bytes() const { return bytes_; }

 private:
  using Codes = std::array<std::optional<HuffmanCode>, 4>;

  std::optional<std::uint8_t> NextMarker();
  bool ReadSegment(std::uint8_t marker);
  void Keep(std::uint8_t marker, std::span<const std::uint8_t> segment);
  bool ReadTable(std::uint8_t marker, std::span<const std::uint8_t> segment);
  bool ReadQuantisation(std::span<const std::uint8_t> segment);
  bool TakeUsualCodes();
  bool ReadCodes(std::span<const std::uint8_t> segment);
  bool ReadFrame(std::span<const std::uint8_t> segment);
  bool SetSizes();
  bool ReadScan(std::span<const std::uint8_t> segment);
  bool AddPart(std::uint8_t id, std::uint8_t tables, JpegScan& scan);
  bool IsWhole() const;

  PictureBytes& file_;
  std::vector<std::uint8_t> bytes_;
  JpegFrame frame_;
  std::array<bool, 4> quantisation_{};  ///< which tables there are
  bool has_codes_ = false;
  Codes dc_;
  Codes ac_;
  int restart_every_ = 0;
  int scans_ = 0;
  std::optional<std::uint8_t> marker_;  ///< met at the end of a scan
};

}  // namespace qlx::platform
