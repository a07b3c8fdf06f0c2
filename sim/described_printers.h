// The receipt printers that the simulator can be, by name.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <span>
#include <string_view>

namespace qlx::sim {

struct CodePage {
  std::uint8_t kind;
  std::uint16_t number;
};

enum class AnswerManner {
  kProper,
  kNone,      ///< queries are swallowed
  kNonsense,  ///< every byte value once, in ascending order
};

struct DescribedPrinter {
  static constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();

  std::string_view name;
  std::uint8_t type = 9;
  std::span<const CodePage> pages{};
  AnswerManner manner = AnswerManner::kProper;
  std::size_t first_burst = kUnlimited;  ///< bytes of an answer before the pause
  std::size_t list_size = 0;             ///< bytes that the code page list is filled up to by repeating it
};

inline constexpr CodePage kUsualCodePages[] = {
    {1, 437}, {1, 858}, {1, 863}, {1, 860}, {1, 865}, {1, 852}, {1, 866}, {1, 1252},
};

/// 22 that programs know, in the order of their numbers there; then two that only their kind lets pass, and
/// one that nothing does.
inline constexpr CodePage kManyCodePages[] = {
    {0x00, 437}, {0x00, 858},  {0x00, 863},  {0x00, 860},  {0x00, 865},  {0x00, 869},  {0x00, 857},
    {0x00, 864}, {0x00, 867},  {0x00, 852},  {0x00, 848},  {0x00, 866},  {0x00, 872},  {0x00, 775},
    {0x00, 861}, {0x80, 1250}, {0x80, 1251}, {0x80, 1252}, {0x81, 1253}, {0x81, 1254}, {0x82, 1255},
    {0x00, 897}, {0x80, 850},  {0x82, 874},  {0x00, 851},
};

/// The first one is there unless another is named.
inline constexpr DescribedPrinter kDescribedPrinters[] = {
    {.name = "usual", .pages = kUsualCodePages},
    {.name = "many-pages", .pages = kManyCodePages},
    {.name = "no-pages"},
    {.name = "other-type", .type = 8, .pages = kUsualCodePages},
    {.name = "silent", .manner = AnswerManner::kNone},
    {.name = "garbage", .manner = AnswerManner::kNonsense},
    {.name = "split", .pages = kManyCodePages, .first_burst = 20},
    {.name = "split-early", .pages = kManyCodePages, .first_burst = 10},
    {.name = "long-list", .pages = kManyCodePages, .list_size = 4096},
};

/// Null when no printer has that name.
constexpr const DescribedPrinter* FindDescribedPrinter(std::string_view name) {
  const auto* const found = std::ranges::find(kDescribedPrinters, name, &DescribedPrinter::name);
  return found == std::end(kDescribedPrinters) ? nullptr : found;
}

}  // namespace qlx::sim
