#include "sim/receipt/bar_code.h"

#include <gmock/gmock.h>

namespace qlx::receipt {
namespace {

std::optional<Symbol> Encode(Symbology symbology, const std::string& data) {
  return EncodeBarCode({symbology, data, 3, 100, false, false, false});
}

/// The modules of the first row, '#' for black.
std::string Bars(const Symbol& symbol) {
  std::string bars;
  for (int x = 0; x < symbol.modules.width; ++x) {
    bars += symbol.modules.black[static_cast<std::size_t>(x)] ? '#' : '.';
  }
  return bars;
}

TEST(BarCode, UpcAIsTheWellKnownPattern) {
  const auto symbol = Encode(Symbology::kUpcA, "750101739438");
  ASSERT_TRUE(symbol);
  EXPECT_EQ(symbol->modules.height, 1);
  EXPECT_EQ(Bars(*symbol),
            "#.#.###.##.##...#...##.#..##..#...##.#..##..#"
            ".#.#."
            "#...#..#....#.###.#..#.###..#....#.#..#...#.#");
  EXPECT_EQ(symbol->text, "750101739438");
}

TEST(BarCode, TheCheckDigitIsAddedWhereItIsLeftOutAndWrongOnesAreRefused) {
  EXPECT_EQ(Encode(Symbology::kUpcA, "75010173943")->text, "750101739438");
  EXPECT_FALSE(Encode(Symbology::kUpcA, "750101739437"));
}

TEST(BarCode, EachSymbologyTakesItsData) {
  EXPECT_TRUE(Encode(Symbology::kUpcE, "0123456"));
  EXPECT_EQ(Encode(Symbology::kEan13, "4006381333931")->modules.width, 95);
  EXPECT_EQ(Encode(Symbology::kEan8, "96385074")->modules.width, 67);
  EXPECT_EQ(Encode(Symbology::kEan8, "9638507")->text, "96385074");
  EXPECT_TRUE(Encode(Symbology::kItf, "1234"));
  EXPECT_TRUE(Encode(Symbology::kCodabar, "A123B"));
  EXPECT_TRUE(Encode(Symbology::kCode93, "CODE93"));
  EXPECT_EQ(Encode(Symbology::kQr, "https://example.com")->modules.height, 25);
}

TEST(BarCode, Code39IsTheSameWithAndWithoutItsAsterisks) {
  EXPECT_EQ(Encode(Symbology::kCode39, "*ABC*")->modules, Encode(Symbology::kCode39, "ABC")->modules);
}

TEST(BarCode, Code128IsGivenItsCodeSets) {
  EXPECT_EQ(Encode(Symbology::kCode128, "{BNo.{C\x0C\x22\x38")->text, "No.123456");
  EXPECT_EQ(Encode(Symbology::kCode128, "{B{{1}")->text, "{1}");
}

TEST(BarCode, DataThatIsNoneOfItsSymbologyIsRefused) {
  EXPECT_FALSE(Encode(Symbology::kUpcA, "12"));
  EXPECT_FALSE(Encode(Symbology::kEan13, "letters"));
  EXPECT_FALSE(Encode(Symbology::kCode39, ""));
  EXPECT_FALSE(Encode(Symbology::kCode128, std::string(255, 'x')));
}

}  // namespace
}  // namespace qlx::receipt
