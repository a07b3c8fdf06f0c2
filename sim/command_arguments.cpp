#include "sim/command_arguments.h"

#include <algorithm>
#include <charconv>
#include <sstream>

#include "sim/Kind.h"
#include "sim/hex_bytes.h"
#include "sim/printable.h"

namespace qlx::sim {
namespace {

template <typename Rows>
std::string Names(const Rows& rows) {
  std::string names;
  for (const auto& row : rows) names.append(" ").append(row.name);
  return names;
}

}  // namespace

std::optional<int> ReadNumber(std::string_view text, int least, int most) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stopped != end || number < least || number > most) return std::nullopt;
  return number;
}

std::optional<Tracks> ReadTracks(const std::string& text) {
  Tracks tracks;
  std::istringstream rest(text);
  for (std::string& track : tracks) std::getline(rest, track, '|');
  if (std::ranges::count(text, '|') >= static_cast<std::ptrdiff_t>(tracks.size())) return std::nullopt;
  return tracks;
}

std::optional<CodePage> ReadCodePage(const std::string& word) {
  const std::size_t colon = word.find(':');
  const auto kind = colon == std::string::npos ? std::string("\x01") : FromHex(word.substr(0, colon));
  const auto number = ReadNumber(colon == std::string::npos ? word : word.substr(colon + 1), 0, 0xFFFF);
  if (!kind || kind->size() != 1 || !number) return std::nullopt;
  return CodePage{static_cast<std::uint8_t>(kind->front()), static_cast<std::uint16_t>(*number)};
}

std::string KindNames() {
  return Names(kKinds);
}

std::string PrinterNames() {
  return Names(kDescribedPrinters);
}

Refusal NoKind(const std::string& word) {
  return Printable(word) + " is no device: there are" + KindNames();
}

Refusal NoPrinter(const std::string& word) {
  return Printable(word) + " is no printer: there are" + PrinterNames();
}

Refusal NoNumber(const std::string& word, int least, int most) {
  return Printable(word) + " is no number from " + std::to_string(least) + " to " + std::to_string(most);
}

}  // namespace qlx::sim
