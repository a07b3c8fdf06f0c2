#include "sim/receipt/code_tables.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include <glib.h>

namespace qlx::receipt {
namespace {

struct Table {
  std::uint8_t number;
  const char* charset;
};

/// The first one is there when none is chosen.
constexpr Table kTables[] = {
    {0, "CP437"},   {2, "CP850"},   {3, "CP860"},   {4, "CP863"},   {5, "CP865"},
    {13, "CP857"},  {14, "CP737"},  {16, "CP1252"}, {17, "CP866"},  {18, "CP852"},
    {19, "CP858"},  {33, "CP775"},  {34, "CP855"},  {35, "CP861"},  {36, "CP862"},
    {37, "CP864"},  {38, "CP869"},  {45, "CP1250"}, {46, "CP1251"}, {47, "CP1253"},
    {48, "CP1254"}, {49, "CP1255"}, {50, "CP1256"}, {51, "CP1257"}, {52, "CP1258"},
};

constexpr std::string_view kNoCharacter = "\xEF\xBF\xBD";

std::string DecodeByte(char byte, const char* charset) {
  gsize length = 0;
  const std::unique_ptr<char, decltype(&g_free)> text(
      g_convert(&byte, 1, "UTF-8", charset, nullptr, &length, nullptr), g_free);
  return text == nullptr || length == 0 ? std::string(kNoCharacter) : std::string(text.get(), length);
}

}  // namespace

std::string DecodeText(std::string_view bytes, std::uint8_t table) {
  const auto* const found = std::ranges::find(kTables, table, &Table::number);
  const Table& used = found == std::end(kTables) ? kTables[0] : *found;
  std::string text;
  for (const char byte : bytes) {
    const bool ascii = static_cast<unsigned char>(byte) < 0x7F;
    text += ascii ? std::string(1, byte) : DecodeByte(byte, used.charset);
  }
  return text;
}

}  // namespace qlx::receipt
