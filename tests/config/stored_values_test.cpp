#include "tests/config/StoredValues.h"

namespace qlx {
namespace {

struct Sample {
  const char* name;
  std::wstring value;
};

class EveryValue : public StoredValues, public testing::WithParamInterface<Sample> {};

TEST_P(EveryValue, SurvivesAsTextAndAsAttribute) {
  const ConfigNode node = Stored(GetParam().value);
  EXPECT_EQ(node.text, GetParam().value);
  EXPECT_EQ(node.attributes, (AttributeMap{{L"a", GetParam().value}}));
}

INSTANTIATE_TEST_SUITE_P(
    Samples, EveryValue,
    testing::Values(
        Sample{"Empty", L""}, Sample{"OneBlank", L" "}, Sample{"OnlyBlanks", L"   "},
        Sample{"OnlyTabsAndLines", L"\t\n \r"}, Sample{"BlanksAround", L"  a  "},
        Sample{"BlanksInside", L"a   b"}, Sample{"DoubleQuotes", L"\"a\"\""}, Sample{"SingleQuotes", L"'a''"},
        Sample{"Less", L"<b>&lt;</b>"}, Sample{"Ampersand", L"a&b&amp;&#65;&"}, Sample{"SectionEnd", L"]]>"},
        Sample{"SectionStart", L"<![CDATA[x]]>"}, Sample{"Comment", L"<!-- x -->"},
        Sample{"CarriageReturn", L"a\rb"}, Sample{"LineFeed", L"a\nb"}, Sample{"BothEnds", L"\r\na\r\n"},
        Sample{"Tab", L"\ta\t"}, Sample{"Greek", L"\u03b1\u03b2\u03b3"},
        Sample{"Arabic", L"\u0645\u0644\u0641"}, Sample{"Japanese", L"\u8a2d\u5b9a"},
        Sample{"NextLine", L"a\u0085b\u2028c"}, Sample{"NoBreakSpace", L"\u00a0"},
        Sample{"ByteOrderMark", L"\ufeffa\ufeff"}, Sample{"AboveU_FFFF", L"\U0001F5A8\U0010FFFD"},
        Sample{"Delete", L"\u007f\u009f"}, Sample{"Replacement", L"\ufffd"},
        Sample{"Backslashes", L"C:\\a\\b\\"}, Sample{"Percent", L"%s%n%%"},
        Sample{"Long", std::wstring(260, L'x')}, Sample{"LongMarks", std::wstring(260, L'<')},
        Sample{"LongAboveU_FFFF", Times(260, L"\U0001F5A8")}, Sample{"LongBlanks", std::wstring(260, L' ')},
        Sample{"ManyPairs",
               [] {
                 std::wstring pairs;
                 for (int i = 0; i < 3000; ++i) pairs += L"=\"=' ";
                 return pairs;
               }()}),
    [](const auto& sample) { return sample.param.name; });

TEST_F(StoredValues, CharactersThatXmlCannotHoldAreDropped) {
  const std::wstring bad(
      L"\0a\x01\x08\x0b\x0c\x0e\x1f\ufffe\uffff"
      L"b",
      11);
  EXPECT_EQ(Stored(bad).text, L"ab");
  EXPECT_EQ(Stored(bad).attributes.at(L"a"), L"ab");
}

TEST_F(StoredValues, HalvesOfACharacterAreDropped) {
  constexpr auto kHigh = static_cast<wchar_t>(0xD800);
  constexpr auto kLow = static_cast<wchar_t>(0xDC00);
  EXPECT_EQ(Stored({L'a', kHigh, L'b', kLow, L'c', kLow, kHigh}).text, L"abc");
}

}  // namespace
}  // namespace qlx
