#include "sim/receipt/bar_code.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>

#include <zint.h>

namespace qlx::receipt {
namespace {

constexpr std::size_t kAnyLength = 8192;

struct SymbologyFacts {
  Symbology symbology;
  const char* name;
  int zint;
  std::size_t least = 1;  ///< bytes of data
  std::size_t most = kAnyLength;
  std::size_t without_check = kAnyLength;  ///< bytes of data before the check digit, which may be left out
};

constexpr SymbologyFacts kSymbologies[] = {
    {Symbology::kUpcA, "UPC-A", BARCODE_UPCA, 11, 12, 11},
    {Symbology::kUpcE, "UPC-E", BARCODE_UPCE, 6, 8},
    {Symbology::kEan13, "EAN-13", BARCODE_EANX, 12, 13, 12},
    {Symbology::kEan8, "EAN-8", BARCODE_EANX, 7, 8, 7},
    {Symbology::kCode39, "Code 39", BARCODE_CODE39},
    {Symbology::kItf, "ITF", BARCODE_C25INTER},
    {Symbology::kCodabar, "Codabar", BARCODE_CODABAR},
    {Symbology::kCode93, "Code 93", BARCODE_CODE93},
    {Symbology::kCode128, "Code 128", BARCODE_CODE128},
    {Symbology::kQr, "QR", BARCODE_QRCODE},
};

const SymbologyFacts& FactsOf(Symbology symbology) {
  return *std::ranges::find(kSymbologies, symbology, &SymbologyFacts::symbology);
}

/// Printers take Code 39 with or without the asterisks at its ends; the library adds them.
std::string WithoutAsterisks(std::string data) {
  if (data.size() >= 2 && data.front() == '*' && data.back() == '*') return data.substr(1, data.size() - 2);
  return data;
}

/// Printers are told the code sets, "{A" to "{C", in set C each byte being two digits; the library chooses
/// its own.
std::string WithoutCodeSets(const std::string& data) {
  std::string plain;
  bool pairs = false;
  for (std::size_t i = 0; i < data.size(); ++i) {
    const auto byte = static_cast<unsigned char>(data[i]);
    if (byte == '{' && i + 1 < data.size()) {
      ++i;
      if (data[i] == '{') plain += '{';
      if (data[i] >= 'A' && data[i] <= 'C') pairs = data[i] == 'C';
    } else if (pairs && byte < 100) {
      plain += static_cast<char>('0' + byte / 10);
      plain += static_cast<char>('0' + byte % 10);
    } else {
      plain += data[i];
    }
  }
  return plain;
}

std::string PlainData(const BarCode& code) {
  if (code.symbology == Symbology::kCode39) return WithoutAsterisks(code.data);
  if (code.symbology == Symbology::kCode128) return WithoutCodeSets(code.data);
  return code.data;
}

Dots ModulesOf(const zint_symbol& symbol) {
  Dots dots{symbol.width, symbol.rows};
  for (int y = 0; y < dots.height; ++y) {
    for (int x = 0; x < dots.width; ++x) {
      dots.black.push_back(((symbol.encoded_data[y][x / 8] >> (x % 8)) & 1) != 0);
    }
  }
  return dots;
}

}  // namespace

std::optional<Symbol> EncodeBarCode(const BarCode& code) {
  const SymbologyFacts& facts = FactsOf(code.symbology);
  const std::string data = PlainData(code);
  if (data.size() < facts.least || data.size() > facts.most) return std::nullopt;
  // The library adds the check digit: how long the data is tells it EAN-8 from EAN-13.
  const std::string checked = data.substr(0, facts.without_check);
  const std::unique_ptr<zint_symbol, decltype(&ZBarcode_Delete)> symbol(ZBarcode_Create(), ZBarcode_Delete);
  symbol->symbology = facts.zint;
  const auto* const bytes = reinterpret_cast<const unsigned char*>(checked.data());
  const int result = ZBarcode_Encode(symbol.get(), bytes, static_cast<int>(checked.size()));
  const std::string text = reinterpret_cast<const char*>(symbol->text);
  if (result >= ZINT_ERROR || (checked != data && text != data)) return std::nullopt;
  return Symbol{ModulesOf(*symbol), text};
}

std::string NameOf(Symbology symbology) {
  return FactsOf(symbology).name;
}

}  // namespace qlx::receipt
