#include "platform/windows/JpegFile.h"

#include <algorithm>
#include <utility>

#include "platform/picture_decoders.h"
#include "platform/windows/usual_codes.h"

namespace qlx::platform {
namespace {

enum Marker : std::uint8_t {
  kTemporary = 0x01,
  kSequential = 0xC0,
  kExtended = 0xC1,
  kProgressive = 0xC2,
  kCodes = 0xC4,
  kFirstRestart = 0xD0,
  kStart = 0xD8,
  kEnd = 0xD9,
  kScan = 0xDA,
  kQuantisation = 0xDB,
  kRestartInterval = 0xDD,
  kFirstApplication = 0xE0,
  kAdobe = 0xEE,
  kLastApplication = 0xEF,
  kComment = 0xFE,
};

/// A few bytes can claim any number of scans over 50 million pixels; no encoder writes a tenth of these.
constexpr int kMostScans = 100;
constexpr int kBlock = 8;
constexpr int kMostBlocksOfUnit = 10;

int Number(std::span<const std::uint8_t> bytes, std::size_t at) {
  return bytes[at] << 8 | bytes[at + 1];
}

int Ceiling(int value, int unit) {
  return (value + unit - 1) / unit;
}

/// Markers without a segment; here, restarts that came too late to mean anything.
bool StandsAlone(std::uint8_t marker) {
  return marker == kTemporary || (marker >= kFirstRestart && marker < kStart);
}

}  // namespace

bool JpegFile::Read() {
  if (NextMarker() != kStart) return false;
  bytes_ = {0xFF, kStart};
  for (auto marker = NextMarker(); marker; marker = NextMarker()) {
    if (*marker == kEnd) {
      bytes_.insert(bytes_.end(), {0xFF, kEnd});
      return IsWhole();
    }
    if (!StandsAlone(*marker) && !ReadSegment(*marker)) return false;
  }
  return false;
}

/// Whatever stands in front of a marker is passed over.
std::optional<std::uint8_t> JpegFile::NextMarker() {
  if (marker_) return std::exchange(marker_, std::nullopt);
  std::uint8_t before = 0;
  std::uint8_t byte = 0;
  while (file_.Read({&byte, 1})) {
    if (before == 0xFF && byte != 0xFF && byte != 0) return byte;
    before = byte;
  }
  return std::nullopt;
}

bool JpegFile::ReadSegment(std::uint8_t marker) {
  std::array<std::uint8_t, 2> size{};
  if (!file_.Read(size) || Number(size, 0) < 2) return false;
  std::vector<std::uint8_t> segment(static_cast<std::size_t>(Number(size, 0) - 2));
  if (!file_.Read(segment)) return false;
  if (marker == kComment || (marker >= kFirstApplication && marker <= kLastApplication)) {
    if (marker == kFirstApplication || marker == kAdobe) Keep(marker, segment);
    return true;
  }
  if (marker == kScan && !has_codes_ && !TakeUsualCodes()) return false;
  Keep(marker, segment);
  return ReadTable(marker, segment);
}

void JpegFile::Keep(std::uint8_t marker, std::span<const std::uint8_t> segment) {
  const std::size_t size = segment.size() + 2;
  bytes_.insert(bytes_.end(),
                {0xFF, marker, static_cast<std::uint8_t>(size >> 8), static_cast<std::uint8_t>(size)});
  bytes_.insert(bytes_.end(), segment.begin(), segment.end());
}

bool JpegFile::ReadTable(std::uint8_t marker, std::span<const std::uint8_t> segment) {
  switch (marker) {
    case kQuantisation:
      return ReadQuantisation(segment);
    case kCodes:
      return ReadCodes(segment);
    case kRestartInterval:
      if (segment.size() != 2) return false;
      restart_every_ = Number(segment, 0);
      return true;
    case kSequential:
    case kExtended:
    case kProgressive:
      frame_.progressive = marker == kProgressive;
      return frame_.components.empty() && ReadFrame(segment);
    case kScan:
      return ReadScan(segment);
    default:
      return false;
  }
}

bool JpegFile::ReadQuantisation(std::span<const std::uint8_t> segment) {
  while (!segment.empty()) {
    const std::size_t number = segment[0] & 0xF;
    const std::size_t size = 1 + std::size_t{kBlock * kBlock} * (segment[0] >> 4 == 0 ? 1 : 2);
    if (number >= quantisation_.size() || segment.size() < size) return false;
    quantisation_.at(number) = true;
    segment = segment.subspan(size);
  }
  return true;
}

bool JpegFile::TakeUsualCodes() {
  Keep(kCodes, kUsualCodes);
  return ReadCodes(kUsualCodes);
}

bool JpegFile::ReadCodes(std::span<const std::uint8_t> segment) {
  has_codes_ = true;
  while (segment.size() > HuffmanCode::kLengths) {
    const std::uint8_t place = segment[0];
    const auto counts = segment.subspan<1, HuffmanCode::kLengths>();
    segment = segment.subspan(1 + counts.size());
    std::size_t size = 0;
    for (const std::uint8_t count : counts) size += count;
    if (size > 256 || size > segment.size() || place >> 4 > 1 || (place & 0xF) >= dc_.size()) return false;
    auto code = HuffmanCode::Make(counts, segment.first(size));
    if (!code) return false;
    (place >> 4 == 0 ? dc_ : ac_).at(place & 0xF) = std::move(code);
    segment = segment.subspan(size);
  }
  return segment.empty();
}

bool JpegFile::ReadFrame(std::span<const std::uint8_t> segment) {
  constexpr std::size_t kHeader = 6;
  constexpr std::size_t kComponent = 3;
  if (segment.size() < kHeader || segment[0] != 8) return false;
  frame_.height = Number(segment, 1);
  frame_.width = Number(segment, 3);
  const std::size_t count = segment[5];
  if (!IsSizeAllowed(frame_.width, frame_.height) || (count != 1 && count != 3 && count != 4) ||
      segment.size() != kHeader + count * kComponent) {
    return false;
  }
  for (std::size_t i = 0; i < count; ++i) {
    const auto fields = segment.subspan(kHeader + i * kComponent, kComponent);
    frame_.components.push_back(
        {.id = fields[0], .quantisation = fields[2], .across = fields[1] >> 4, .down = fields[1] & 0xF});
  }
  return SetSizes();
}

/// In blocks and units; false for sampling that does not exist.
bool JpegFile::SetSizes() {
  int most_across = 1;
  int most_down = 1;
  for (const JpegComponent& component : frame_.components) {
    if (component.across < 1 || component.across > 4 || component.down < 1 || component.down > 4)
      return false;
    most_across = std::max(most_across, component.across);
    most_down = std::max(most_down, component.down);
  }
  frame_.units_wide = Ceiling(frame_.width, kBlock * most_across);
  frame_.units_high = Ceiling(frame_.height, kBlock * most_down);
  for (JpegComponent& component : frame_.components) {
    component.blocks_wide = Ceiling(Ceiling(frame_.width * component.across, most_across), kBlock);
    component.blocks_high = Ceiling(Ceiling(frame_.height * component.down, most_down), kBlock);
    if (!frame_.progressive) continue;
    component.nonzero.resize(static_cast<std::size_t>(frame_.units_wide * component.across) *
                             static_cast<std::size_t>(frame_.units_high * component.down));
  }
  return true;
}

bool JpegFile::ReadScan(std::span<const std::uint8_t> segment) {
  const std::size_t count = segment.empty() ? 0 : segment[0];
  if (frame_.components.empty() || count < 1 || count > 4 || segment.size() != 4 + 2 * count) return false;
  const auto band = segment.last(3);
  JpegScan scan{.restart_every = restart_every_};
  if (frame_.progressive) {
    scan.first = band[0];
    scan.last = band[1];
    scan.refines = band[2] >> 4 != 0;
    const bool dc = scan.first == 0;
    if (scan.last > 63 || scan.first > scan.last || (dc ? scan.last != 0 : count != 1)) return false;
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (!AddPart(segment[1 + 2 * i], segment[2 + 2 * i], scan)) return false;
  }
  int blocks = 0;
  for (const auto& part : scan.parts) blocks += part.component->across * part.component->down;
  if ((count > 1 && blocks > kMostBlocksOfUnit) || ++scans_ > kMostScans) return false;

  EntropyBits bits(file_, bytes_);
  FollowScan(frame_, scan, bits);
  marker_ = bits.marker();
  return !bits.broken();
}

bool JpegFile::AddPart(std::uint8_t id, std::uint8_t tables, JpegScan& scan) {
  const auto component = std::ranges::find(frame_.components, id, &JpegComponent::id);
  const std::size_t dc = tables >> 4;
  const std::size_t ac = tables & 0xF;
  if (component == frame_.components.end() || component->quantisation >= quantisation_.size() ||
      !quantisation_.at(component->quantisation) || dc >= dc_.size() || ac >= ac_.size()) {
    return false;
  }
  const bool takes_dc = scan.first == 0 && !scan.refines;
  const bool takes_ac = scan.last > 0;
  if ((takes_dc && !dc_.at(dc)) || (takes_ac && !ac_.at(ac))) return false;
  scan.parts.push_back({&*component, takes_dc ? &*dc_.at(dc) : nullptr, takes_ac ? &*ac_.at(ac) : nullptr});
  component->seen = component->seen || takes_dc;
  return true;
}

bool JpegFile::IsWhole() const {
  return !frame_.components.empty() && std::ranges::all_of(frame_.components, &JpegComponent::seen);
}

}  // namespace qlx::platform
