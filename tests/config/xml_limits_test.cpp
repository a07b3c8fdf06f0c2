#include "platform/xml_limits.h"

#include <gtest/gtest.h>

#include "platform/xml_dom.h"

namespace qlx::platform {
namespace {

std::string Repeated(int times, const std::string& before, const std::string& after) {
  std::string text;
  for (int i = 0; i < times; ++i) text += before + std::to_string(i) + after;
  return text;
}

std::string Utf16(std::string_view ascii, bool little) {
  std::string bytes;
  for (const char c : ascii) bytes += little ? std::string{c, '\0'} : std::string{'\0', c};
  return bytes;
}

std::string WithAttributes(int count, const std::string& after = "='' ") {
  return "<MZP " + Repeated(count, "a", after) + "/>";
}

constexpr int kMany = kXmlAttributeLimit + 1;

TEST(XmlLimits, AnElementMayHaveAThousandAttributesAndNotOneMore) {
  EXPECT_TRUE(WithinXmlLimits(WithAttributes(kXmlAttributeLimit)));
  EXPECT_FALSE(WithinXmlLimits(WithAttributes(kMany)));
}

TEST(XmlLimits, AttributesAreCountedHoweverTheyAreWritten) {
  for (const char* after : {"=\"\" ", " = '' ", "\n=\t\r\n'x'\n", "='>' ", "=\">'\" ", "='/>' "}) {
    EXPECT_FALSE(WithinXmlLimits(WithAttributes(kMany, after))) << after;
    EXPECT_TRUE(WithinXmlLimits(WithAttributes(10, after))) << after;
  }
}

TEST(XmlLimits, AttributesAreCountedInEitherOrderOfUtf16) {
  EXPECT_FALSE(WithinXmlLimits("\xFF\xFE" + Utf16(WithAttributes(kMany), true)));
  EXPECT_FALSE(WithinXmlLimits("\xFE\xFF" + Utf16(WithAttributes(kMany), false)));
  EXPECT_TRUE(WithinXmlLimits("\xFF\xFE" + Utf16(WithAttributes(10), true)));
  EXPECT_TRUE(WithinXmlLimits("\xFE\xFF" + Utf16(WithAttributes(10), false)));
}

TEST(XmlLimits, WideEncodingsWithoutAMarkAreRefused) {
  EXPECT_FALSE(WithinXmlLimits(Utf16("<?xml version='1.0'?><MZP/>", true)));
  EXPECT_FALSE(WithinXmlLimits(Utf16("<?xml version='1.0'?><MZP/>", false)));
  EXPECT_FALSE(WithinXmlLimits(Utf16(Utf16("<MZP/>", true), true)));
}

TEST(XmlLimits, EncodingsInWhichAMarkupCharacterIsAnotherByteAreRefused) {
  for (const char* encoding : {"IBM037", "ibm1047", "IBM871", "UTF-7", "UTF-16", "UTF-16LE", "UTF-32",
                               "EBCDIC-US", "ISO-2022-JP", "UCS-4", "Shift_JIS", ""}) {
    EXPECT_FALSE(WithinXmlLimits("<?xml version='1.0' encoding='" + std::string(encoding) + "'?><MZP/>"))
        << encoding;
  }
  EXPECT_FALSE(WithinXmlLimits("\x4C\x6F\xA7\x94\x93"));  // "<?xml" in EBCDIC
}

TEST(XmlLimits, TheEncodingsThatTheToolReadsAreTaken) {
  for (const char* encoding : {"utf-8", "UTF-8", "us-ascii", "ISO-8859-1", "iso-8859-15", "windows-1252",
                               "KOI8-R", "IBM437", "IBM850"}) {
    EXPECT_TRUE(WithinXmlLimits("<?xml version='1.0' encoding='" + std::string(encoding) + "'?><MZP/>"))
        << encoding;
  }
}

TEST(XmlLimits, AnEncodingCannotHideBehindALongDeclaration) {
  const std::string blanks(5000, ' ');
  EXPECT_FALSE(WithinXmlLimits("<?xml version='1.0'" + blanks + "encoding='IBM037'?><MZP/>"));
  EXPECT_FALSE(WithinXmlLimits("<?xml version=\"1.0 encoding='utf-8'\" encoding='IBM037'?><MZP/>"));
}

TEST(XmlLimits, AUtf16DocumentCannotChangeItsEncodingOnTheWay) {
  EXPECT_FALSE(
      WithinXmlLimits("\xFF\xFE" + Utf16("<?xml version='1.0' encoding='ISO-8859-1'?><MZP/>", true)));
  EXPECT_TRUE(WithinXmlLimits("\xFF\xFE" + Utf16("<?xml version='1.0' encoding='UTF-16'?><MZP/>", true)));
}

TEST(XmlLimits, Utf16WithHalfAUnitAtItsEndIsRefused) {
  EXPECT_TRUE(WithinXmlLimits("\xFF\xFE" + Utf16("<MZP/>", true)));
  EXPECT_FALSE(WithinXmlLimits("\xFF\xFE" + Utf16("<MZP/>", true) + " "));
}

TEST(XmlLimits, AnotherVersionOfXmlIsRefused) {
  EXPECT_TRUE(WithinXmlLimits("<?xml version=\"1.0\"?><MZP/>"));
  EXPECT_FALSE(WithinXmlLimits("<?xml version=\"1.1\"?><MZP/>"));
  EXPECT_FALSE(WithinXmlLimits("<?xml version='2.0' encoding='UTF-8'?><MZP/>"));
}

TEST(XmlLimits, AttributesCannotHideInAnEntitysCharacterReferences) {
  const std::string tag = "&#60;a " + Repeated(kMany, "x", "&#61;&#39;&#x27; ") + "/&#62;";
  EXPECT_FALSE(WithinXmlLimits("<!DOCTYPE MZP [<!ENTITY e \"" + tag + "\">]><MZP>&e;</MZP>"));
}

TEST(XmlLimits, ParameterEntitiesAreRefused) {
  EXPECT_FALSE(WithinXmlLimits("<!DOCTYPE MZP [<!ENTITY % q \"x\"> %q;]><MZP/>"));
  EXPECT_FALSE(WithinXmlLimits("<!DOCTYPE MZP [<!ENTITY\n\t% q SYSTEM 'x'> %q;]><MZP/>"));
}

TEST(XmlLimits, ASmallDocumentTypeWithItsOwnEntityIsTaken) {
  EXPECT_TRUE(WithinXmlLimits("<!DOCTYPE MZP [<!ENTITY e \"it&#39;s\">]><MZP>&e; 5 % of</MZP>"));
}

TEST(XmlLimits, TextAndCommentsMayHoldAnyNumberOfQuotedPairs) {
  const std::string pairs = Repeated(kMany, "a", "=\"b\" ");
  EXPECT_TRUE(WithinXmlLimits("<MZP>" + pairs + "</MZP>"));
  EXPECT_TRUE(WithinXmlLimits("<MZP><!-- " + pairs + " --></MZP>"));
}

TEST(XmlLimits, ADocumentMayNotConsistOfMoreThanHalfAMillionNodes) {
  std::string tags;
  for (int i = 0; i <= kXmlNodeLimit; ++i) tags += "<a/>";
  EXPECT_FALSE(WithinXmlLimits("<MZP>" + tags + "</MZP>"));
  EXPECT_TRUE(WithinXmlLimits("<MZP>" + tags.substr(8) + "</MZP>"));
}

TEST(XmlLimits, NoBeginningOfADocumentIsReadPastItsEnd) {
  const std::string whole = "\xFF\xFE" + Utf16("<?xml version='1.0' encoding='UTF-16'?><MZP a='b'/>", true);
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const std::vector<char> exact(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    WithinXmlLimits({exact.data(), exact.size()});
  }
}

}  // namespace
}  // namespace qlx::platform
