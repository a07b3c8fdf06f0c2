// Where the printer prints a logo, and what its head takes there.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "config/Message.h"

namespace qlx {

/// By the numbers that the configuration file and the drivers use.
enum class Station : std::uint8_t { kCustomerReceipt = 0, kDocumentInsert = 1 };

/// Width and height in pixels.
struct PixelSize {
  int width = 0;
  int height = 0;

  bool operator==(const PixelSize&) const = default;
};

/// What one station prints at most, and its number as the configuration file has it.
struct StationRow {
  Station station;
  std::wstring_view stored;
  PixelSize limit;
};

inline constexpr std::array<StationRow, 2> kStations = {{
    {Station::kCustomerReceipt, L"0", {576, 896}},
    {Station::kDocumentInsert, L"1", {472, 40}},
}};

constexpr const StationRow& RowOf(Station station) {
  return kStations[static_cast<std::size_t>(station)];
}

/// How a picture that is too large becomes a logo: scaled down when it is written, or cut at once.
enum class Treatment : std::uint8_t { kShrunken, kTruncated };

struct EncodeChoice {
  std::wstring_view text;
  Station station;
  Treatment treatment;
};

/// What the list "Encode:" offers, by its index.
inline constexpr std::array<EncodeChoice, 4> kEncodeChoices = {{
    {Translatable(L"Customer Receipt Station - Shrunken"), Station::kCustomerReceipt, Treatment::kShrunken},
    {Translatable(L"Customer Receipt Station - Truncated"), Station::kCustomerReceipt, Treatment::kTruncated},
    {Translatable(L"Document Insert Station - Shrunken"), Station::kDocumentInsert, Treatment::kShrunken},
    {Translatable(L"Document Insert Station - Truncated"), Station::kDocumentInsert, Treatment::kTruncated},
}};

}  // namespace qlx
