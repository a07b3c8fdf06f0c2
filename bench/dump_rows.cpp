// What a row of a dump costs to format: the log's rows against a table-driven loop over one buffer.
#include <array>
#include <cstddef>
#include <vector>

#include "bench/rounds.h"
#include "log/HexRows.h"

namespace {

using qlx::bench::Rounds;
using qlx::bench::Seconds;
using qlx::bench::Use;

constexpr std::size_t kDumpBytes = 1 << 20;

using Digits = std::array<std::array<char, 2>, 256>;

constexpr Digits TableOfDigits() {
  Digits table{};
  for (std::size_t byte = 0; byte < table.size(); ++byte)
    table[byte] = {"0123456789abcdef"[byte / 16], "0123456789abcdef"[byte % 16]};
  return table;
}

constexpr Digits kDigits = TableOfDigits();

/// The floor of a dump: one buffer made once, digits by table, labels counted up in place.
void DumpByTable(const std::vector<unsigned char>& bytes) {
  std::array<char, 80> row{};
  row.fill(' ');
  row[3] = ')';
  unsigned number = 0;
  for (std::size_t start = 0; start + 16 <= bytes.size(); start += 16) {
    ++number;
    row[0] = char('0' + number / 100 % 10);
    row[1] = char('0' + number / 10 % 10);
    row[2] = char('0' + number % 10);
    for (std::size_t i = 0; i < 16; ++i) {
      const unsigned char byte = bytes[start + i];
      row[5 + i * 3 + i / 4 * 2] = kDigits[byte][0];
      row[6 + i * 3 + i / 4 * 2] = kDigits[byte][1];
      row[61 + i] = byte < 0x21 ? '.' : static_cast<char>(byte);
    }
    Use(row.data());
  }
}

void DumpByRows(const std::vector<unsigned char>& bytes) {
  qlx::HexRows rows(bytes);
  while (!rows.done()) Use(rows.Next().data());
}

bool DumpRows() {
  // 999 rows at most a dump, so that every label has three digits, as the floor's have.
  std::vector<unsigned char> bytes(999 * 16);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i * 37);
  const auto rate = [&](auto&& dump) {
    return double(kDumpBytes) / Seconds([&] {
             for (std::size_t done = 0; done < kDumpBytes; done += bytes.size()) dump(bytes);
           }) /
           16;
  };
  Rounds rounds("rows of a dump, in memory", "rows/s");
  rounds.Add("table-driven one-buffer loop", [&] { return rate(DumpByTable); });
  rounds.Add("LogHexDump's rows", [&] { return rate(DumpByRows); });
  rounds.Run(15);
  return rounds.AtLeast(0.5, "LogHexDump's rows", "table-driven one-buffer loop");
}

}  // namespace

int main() {
  return DumpRows() ? 0 : 1;
}
