#include "sim/MsrReader.h"

namespace qlx::sim {

Tracks TestCard() {
  return {"B5999990000000001^HARLUNE/TEST CARD^29121010000000000000", "5999990000000001=29121010000000000000",
          "015999990000000001=978100000000000000003000000000000000291210=1"};
}

std::string MsrReader::Swipe(const Tracks& tracks) const {
  std::string sent;
  for (std::size_t i = 0; i < tracks.size(); ++i) sent += Track(settings_.tracks[i], tracks[i]);
  if (sent.empty()) return {};
  return settings_.head + sent + settings_.tail;
}

std::string MsrReader::Track(const TrackSettings& track, const std::string& data) const {
  if (!track.enabled) return {};
  if (data.empty() && settings_.hide_error_tracks) return {};
  std::string sent = data.empty() ? "E" : data;
  if (!settings_.strip_sentinels) sent = track.start_sentinel + sent + settings_.end_sentinel;
  if (settings_.carriage_returns || track.carriage_return) sent += '\r';
  return sent;
}

}  // namespace qlx::sim
