// The encodings in which a file may come.
#include "tests/config/Installation.h"

namespace qlx {
namespace {

class Encodings : public Installation {
 protected:
  std::wstring TextOf(const std::string& bytes) {
    const auto nodes = Opened(bytes)->ReadSection(L"S");
    return nodes.empty() ? L"(none)" : nodes[0].text;
  }
};

std::string Utf16(std::u16string_view text, bool little) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes += little ? std::string{low, high} : std::string{high, low};
  }
  return bytes;
}

constexpr char16_t kWide[] =
    u"\uFEFF<?xml version='1.0' encoding='UTF-16'?><MZP><S><k>é\u8a2d\U0001F5A8</k></S></MZP>";

TEST_F(Encodings, Utf8IsReadWithAndWithoutMarkAndDeclaration) {
  for (const char* start :
       {"", "\xEF\xBB\xBF", "<?xml version='1.0'?>", "<?xml version='1.0' encoding='UTF-8'?>",
        "\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?>"}) {
    EXPECT_EQ(TextOf(start + std::string("<MZP><S><k>é設\U0001F5A8</k></S></MZP>")), L"é\u8a2d\U0001F5A8");
  }
}

TEST_F(Encodings, Utf16WithMarkIsReadInBothOrders) {
  EXPECT_EQ(TextOf(Utf16(kWide, true)), L"é\u8a2d\U0001F5A8");
  EXPECT_EQ(TextOf(Utf16(kWide, false)), L"é\u8a2d\U0001F5A8");
}

TEST_F(Encodings, DeclaredSingleByteSetsAreRead) {
  EXPECT_EQ(TextOf("<?xml version='1.0' encoding='ISO-8859-1'?><MZP><S><k>\xE9</k></S></MZP>"), L"é");
  EXPECT_EQ(TextOf("<?xml version='1.0' encoding='windows-1252'?><MZP><S><k>\x80\xE9</k></S></MZP>"),
            L"\u20acé");
  EXPECT_EQ(TextOf("<?xml version='1.0' encoding='IBM850'?><MZP><S><k>\x82</k></S></MZP>"), L"é");
}

TEST_F(Encodings, WhateverWasReadIsWrittenInUtf8) {
  const auto document = Opened("<?xml version='1.0' encoding='ISO-8859-1'?><MZP><S><k>\xE9</k></S></MZP>");
  document->SetValue(L"S", L"l", L"\u8a2d");
  document->Save();
  EXPECT_TRUE(Bytes().starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"));
  EXPECT_NE(Bytes().find("<k>\u00e9</k>\n    <l>\u8a2d</l>"), std::string::npos);
  EXPECT_EQ(Reopened()->ReadSection(L"S").at(0).text, L"é");
}

TEST_F(Encodings, ADocumentTypeWithoutExternalPartsIsTaken) {
  EXPECT_EQ(TextOf("<!DOCTYPE MZP><MZP><S><k>v</k></S></MZP>"), L"v");
  EXPECT_EQ(
      TextOf("<!DOCTYPE MZP [<!ELEMENT MZP ANY><!ENTITY e 'in &#38;amp; out'>]><MZP><S><k>&e;</k></S></MZP>"),
      L"in & out");
}

TEST_F(Encodings, AnEntityStaysTheTextItStoodForAfterASave) {
  Opened("<!DOCTYPE MZP [<!ENTITY e 'x'>]><MZP><S><k>a&e;b</k></S></MZP>")->Save();
  EXPECT_EQ(Reopened()->ReadSection(L"S").at(0).text, L"axb");
}

TEST_F(Encodings, ACdataSectionIsTextAlsoAfterASave) {
  Opened("<MZP><S><k>a<![CDATA[ <b> ]]>c</k></S></MZP>")->Save();
  EXPECT_EQ(Reopened()->ReadSection(L"S").at(0).text, L"a <b> c");
}

}  // namespace
}  // namespace qlx
