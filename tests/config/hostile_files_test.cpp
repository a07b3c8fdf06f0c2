// Files made to break the tool: each is replaced or refused, and nothing hangs, crashes or grows.
#include <random>

#include "platform/xml_dom.h"
#include "tests/config/HostileFile.h"

namespace qlx {
namespace {

std::string Repeated(int times, std::string_view text) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

std::string Numbered(int times, const std::string& before, const std::string& after) {
  std::string all;
  for (int i = 0; i < times; ++i) all += before + std::to_string(i) + after;
  return all;
}

std::string Nested(int depth, const std::string& inner = {}) {
  return Repeated(depth, "<MZP>") + inner + Repeated(depth, "</MZP>");
}

TEST_F(HostileFile, AnEntityBombIsReplaced) {
  std::string bomb = "<!DOCTYPE MZP [<!ENTITY l0 \"lol lol lol lol\">";
  for (int i = 1; i < 12; ++i) {
    bomb +=
        "<!ENTITY l" + std::to_string(i) + " \"" + Repeated(10, "&l" + std::to_string(i - 1) + ";") + "\">";
  }
  bomb += "]>";
  ExpectReplaced(bomb + "<MZP>&l11;</MZP>");
  std::filesystem::remove(Path(".unreadable"));
  ExpectReplaced(bomb + "<MZP a='&l11;'/>");
  ExpectSmallGrowth(bomb + "<MZP>&l11;</MZP>");
  ExpectSmallGrowth(bomb + "<MZP a='&l11;'/>");
}

TEST_F(HostileFile, AnEntityThatNamesItselfIsReplaced) {
  ExpectReplaced("<!DOCTYPE MZP [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><MZP>&a;</MZP>");
}

TEST_F(HostileFile, OneLongEntityUsedManyTimesDoesNotGrow) {
  const std::string entity = "<!DOCTYPE MZP [<!ENTITY e '" + std::string(100'000, 'x') + "'>]>";
  ExpectReplaced(entity + "<MZP>" + Repeated(20'000, "&e;") + "</MZP>");
  ExpectSmallGrowth(entity + "<MZP>" + Repeated(20'000, "&e;") + "</MZP>");
  ExpectSmallGrowth(entity + "<MZP>" + Repeated(20'000, "<a>&e;</a>") + "</MZP>");
  ExpectSmallGrowth(entity + "<MZP a='" + Repeated(20'000, "&e;") + "'/>");
}

TEST_F(HostileFile, AnEntityOfElementsUsedManyTimesDoesNotGrow) {
  const std::string entity = "<!DOCTYPE MZP [<!ENTITY e '" + Repeated(10'000, "<a/>") + "'>]>";
  ExpectSmallGrowth(entity + "<MZP>" + Repeated(20'000, "&e;") + "</MZP>");
  const std::string comments = "<!DOCTYPE MZP [<!ENTITY e '" + Repeated(10'000, "<!-- -->") + "'>]>";
  ExpectSmallGrowth(comments + "<MZP>" + Repeated(20'000, "&e;") + "</MZP>");
}

TEST_F(HostileFile, AnEntityOfElementsIsReadOnceAndATextAsOftenAsWanted) {
  Write("<!DOCTYPE MZP [<!ENTITY e '<a/>t'><!ENTITY t 'x'>]><MZP>&e;&t;&t;<b>&t;</b></MZP>");
  EXPECT_TRUE(Document()->Open(Path().wstring(), false));
  ExpectReplaced("<!DOCTYPE MZP [<!ENTITY e '<a/>t'>]><MZP>&e;&e;</MZP>");
}

TEST_F(HostileFile, AnEntityOfElementsInEntitiesDoesNotGrow) {
  std::string bomb = "<!DOCTYPE MZP [<!ENTITY l0 \"<a/>\">";
  for (int i = 1; i < 8; ++i) {
    bomb +=
        "<!ENTITY l" + std::to_string(i) + " \"" + Repeated(10, "&l" + std::to_string(i - 1) + ";") + "\">";
  }
  ExpectReplaced(bomb + "]><MZP>&l7;</MZP>");
  ExpectSmallGrowth(bomb + "]><MZP>&l7;</MZP>");
}

TEST_F(HostileFile, ShortEntitiesInTheirThousandsAreReplaced) {
  const std::string entity = "<!DOCTYPE MZP [<!ENTITY e '" + std::string(9'000, 'x') + "'>]>";
  Write(entity + "<MZP>" + Repeated(1'000, "&e;") + "</MZP>");
  EXPECT_TRUE(Document()->Open(Path().wstring(), false));
  ExpectReplaced(entity + "<MZP>" + Repeated(1'001, "&e;") + "</MZP>");
  ExpectSmallGrowth(entity + "<MZP>" + Repeated(1'000, "&e;") + "</MZP>");
}

TEST_F(HostileFile, AnExternalEntityIsNeverRead) {
  for (const char* use : {"<MZP>&e;</MZP>", "<MZP a='&e;'/>"}) {
    ExpectReplaced(std::string("<!DOCTYPE MZP [<!ENTITY e SYSTEM 'file:///etc/passwd'>]>") + use);
    EXPECT_EQ(Bytes().find("root:"), std::string::npos);
  }
}

TEST_F(HostileFile, AnExternalParameterEntityIsReplaced) {
  ExpectReplaced("<!DOCTYPE MZP [<!ENTITY % e SYSTEM 'file:///etc/passwd'> %e;]><MZP/>");
}

TEST_F(HostileFile, AnExternalDocumentTypeIsNotFetched) {
  std::ofstream(directory_ / "x.dtd") << "<!ENTITY e 'read'><!ATTLIST MZP a CDATA 'read'>";
  Write("<!DOCTYPE MZP SYSTEM '" + (directory_ / "x.dtd").string() + "'><MZP/>");
  Started()->Save();
  EXPECT_EQ(Bytes().find("read"), std::string::npos);
}

TEST_F(HostileFile, AnEntityOfAnExternalDocumentTypeIsUndefined) {
  std::ofstream(directory_ / "x.dtd") << "<!ENTITY e 'read'>";
  const std::string type = "<!DOCTYPE MZP SYSTEM '" + (directory_ / "x.dtd").string() + "'>";
  for (const char* use : {"<MZP>&e;</MZP>", "<MZP a='x&e;'/>"}) {
    Write(type + use);
    Started();
    EXPECT_EQ(Bytes(".unreadable"), type + use);
  }
}

TEST_F(HostileFile, AHundredThousandLevelsAreReplaced) {
  ExpectReplaced(Nested(100'000));
  ExpectSmallGrowth(Nested(100'000));
  ExpectSmallGrowth(Repeated(1'000'000, "<MZP>"));
}

TEST_F(HostileFile, AttributesThatADocumentTypeGivesEveryElementAreBounded) {
  const auto type = [](int attributes) {
    return "<!DOCTYPE MZP [" + Numbered(attributes, "<!ATTLIST a x", " CDATA ''>") + "]>";
  };
  const std::string elements = "<MZP>" + Repeated(20'000, "<a/>") + "</MZP>";
  ExpectReplaced(type(5'000) + elements);
  ExpectSmallGrowth(type(1'000) + elements);
  EXPECT_TRUE(Opened(type(10) + elements)->Contains(L"MZP//a"));
}

TEST_F(HostileFile, AByteThatItsEncodingLacksIsReplacedWithoutAWordOnStandardError) {
  ::testing::internal::CaptureStderr();
  ExpectReplaced("<?xml version='1.0' encoding='windows-1252'?><MZP>\x81</MZP>");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(HostileFile, TwoHundredLevelsAreReadAndNotOneMore) {
  Write(Nested(200));
  EXPECT_TRUE(Document()->Open(Path().wstring(), false));
  Write(Nested(200, "text"));
  EXPECT_TRUE(Document()->Open(Path().wstring(), false));
  ExpectReplaced(Nested(201));
}

TEST_F(HostileFile, LevelsThatAnEntityAddsCount) {
  const std::string entity = "<!DOCTYPE MZP [<!ENTITY e '" + Nested(100) + "'>]>";
  Write(entity + Nested(100, "&e;"));
  EXPECT_TRUE(Document()->Open(Path().wstring(), false));
  ExpectReplaced(entity + Nested(101, "&e;"));
}

TEST_F(HostileFile, ATwoHundredLevelFileGrownByItsSectionsIsStillReadAfterwards) {
  Write(Nested(200));
  Started();
  EXPECT_TRUE(boxes_.empty());
  EXPECT_TRUE(Reopened()->Contains(L"MZP//IB_Configuration"));
}

TEST_F(HostileFile, AHundredThousandAttributesAreReplaced) {
  ExpectReplaced("<MZP " + Numbered(100'000, "a", "=\"\" ") + "/>");
  std::filesystem::remove(Path(".unreadable"));
  ExpectReplaced("<MZP " + Numbered(100'000, "a", "\n=\r\t'>'\n") + "/>");
}

TEST_F(HostileFile, AHundredThousandAttributesInUtf16AreReplaced) {
  std::string wide = "\xFF\xFE";
  for (const char c : "<MZP " + Numbered(100'000, "a", "='' ") + "/>") wide += std::string{c, '\0'};
  ExpectReplaced(wide);
  std::filesystem::remove(Path(".unreadable"));
  ExpectReplaced(wide.substr(2));
}

TEST_F(HostileFile, AttributesHiddenInAnEntityAreReplaced) {
  const std::string tag = "&#60;a " + Numbered(100'000, "x", "&#61;&#39;&#39; ") + "/&#62;";
  ExpectReplaced("<!DOCTYPE MZP [<!ENTITY e \"" + tag + "\">]><MZP>&e;</MZP>");
}

TEST_F(HostileFile, OverAMillionAttributesIn16MegabytesAreReplaced) {
  ExpectReplaced("<MZP " + Numbered(1'300'000, "a", "='' ") + "/>");
  ExpectSmallGrowth("<MZP>" + Repeated(2'000, "<a " + Numbered(900, "a", "='' ") + "/>") + "</MZP>");
}

TEST_F(HostileFile, MillionsOfElementsDoNotGrow) {
  ExpectSmallGrowth("<MZP>" + Repeated(4'000'000, "<a/>") + "</MZP>");
  ExpectSmallGrowth("<MZP>" + Repeated(platform::kXmlNodeLimit - 1, "<a> </a>") + "</MZP>");
}

TEST_F(HostileFile, AsManyElementsAsMayBeAreReadInLinearTime) {
  Write("<r>" + Repeated(200'000, "<MZP><S/></MZP>") + "</r>");
  EXPECT_TRUE(Started()->Contains(L"MZP//IB_Configuration"));
}

TEST_F(HostileFile, SectionsNestedInSectionsDoNotGrow) {
  const std::string text(1'000'000, 'x');
  ExpectSmallGrowth(Nested(190, "<k>" + text + "</k>"));
  const std::string sections = Repeated(190, "<S>") + "<k>" + text + "</k>" + Repeated(190, "</S>");
  EXPECT_EQ(Opened("<MZP>" + sections + "</MZP>")->ReadSection(L"S").size(), 190U);
}

TEST_F(HostileFile, WhatIsNotWellFormedIsReplaced) {
  for (const std::string& bytes : Names{"<MZP/><MZP/>",
                                        "<MZP a='1' a='2'/>",
                                        "<MZP>\x01</MZP>",
                                        "<MZP>&#1;</MZP>",
                                        "<MZP a='\x1f'/>",
                                        "<MZP>a & b</MZP>",
                                        "<MZP>&nbsp;</MZP>",
                                        "<MZP a='&nbsp;'/>",
                                        "text<MZP/>",
                                        "<MZP/>text",
                                        "<MZP",
                                        "<MZP>",
                                        "</MZP>",
                                        "<MZP></mzp>",
                                        "<MZP a=1/>",
                                        "<MZP a/>",
                                        "<MZP><!-- -- --></MZP>",
                                        "<MZP>]]></MZP>",
                                        "<MZP>\xFF\xFE</MZP>",
                                        "<MZP>\xC0\x80</MZP>",
                                        "<MZP>\xED\xA0\x80</MZP>",
                                        "<MZP>\xF4\x90\x80\x80</MZP>",
                                        "<MZP>\xE9</MZP>",
                                        "<MZP a='\xE9'/>",
                                        "<MZP>\xEF\xBF\xBF</MZP>",
                                        " <?xml version='1.0'?><MZP/>",
                                        "<?xml version='1.0' encoding='nonesuch'?><MZP/>",
                                        "<?xml?><MZP/>",
                                        "{\"MZP\": 1}",
                                        "MZP"}) {
    ExpectReplaced(bytes);
    std::filesystem::remove(Path(".unreadable"));
  }
}

TEST_F(HostileFile, AFileWithoutADocumentIsReplaced) {
  for (const std::string& bytes :
       Names{"", " ", "\n", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF", "\xFF", "<", "<!-- only -->",
             "<?xml version='1.0'?>", std::string(1, '\0'), std::string(100'000, '\0')}) {
    ExpectReplaced(bytes);
    std::filesystem::remove(Path(".unreadable"));
  }
}

TEST_F(HostileFile, ANulByteIsReplacedWhereverItStands) {
  const std::string good = "<MZP a='1'>text<!-- c --></MZP>";
  for (std::size_t i = 0; i <= good.size(); ++i) {
    ExpectReplaced(std::string(good).insert(i, 1, '\0'));
    std::filesystem::remove(Path(".unreadable"));
  }
}

TEST_F(HostileFile, AFileOf50MegabytesIsReplaced) {
  const std::string bytes = "<MZP>" + Repeated(50'000, "<k>" + std::string(993, 'x') + "</k>") + "</MZP>";
  ExpectReplaced(bytes);
  ExpectSmallGrowth(bytes);
}

TEST_F(HostileFile, SixteenMebibytesAreReadAndNotOneByteMore) {
  std::string bytes = "<MZP>" + Repeated(16'000, "<k>" + std::string(993, 'x') + "</k>");
  const std::string end = "</MZP>";
  bytes += std::string(xmlclass::kLargestFile - bytes.size() - end.size(), ' ') + end;
  Write(bytes);
  EXPECT_TRUE(Document()->Open(Path().wstring(), false));
  ExpectReplaced(bytes + " ");
  ExpectSmallGrowth(bytes);
}

TEST_F(HostileFile, AFileThatItsSectionsWouldMakeTooLargeIsNotSaved) {
  std::string bytes = "<MZP>" + Repeated(16'000, "<k>" + std::string(993, 'x') + "</k>");
  bytes += "<k>" + std::string(xmlclass::kLargestFile - bytes.size() - 13, 'x') + "</k></MZP>";
  ASSERT_EQ(bytes.size(), xmlclass::kLargestFile);
  Write(bytes);
  Started();
  EXPECT_EQ(boxes_.size(), 1U);
  EXPECT_TRUE(Bytes() == bytes);
  EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml"}));
}

TEST_F(HostileFile, ADirectoryInItsPlaceIsASaveError) {
  std::filesystem::create_directory(Path());
  ExpectSaveError();
}

class Mutations : public HostileFile {
 protected:
  Mutations() {
    Started();
    good_ = Bytes();
    good_.insert(good_.find("<IB_"), "<!-- c --><![CDATA[x]]><?pi d?><u z='&lt;&#10;'> t </u>");
  }
  std::string good_;
};

TEST_F(Mutations, NoBeginningOfAGoodFileIsTakenForAWholeOne) {
  const std::size_t whole = good_.rfind('>') + 1;
  for (std::size_t size = 0; size < whole; ++size) {
    EXPECT_FALSE(platform::CreateXmlDom()->Parse(good_.substr(0, size))) << size;
  }
  EXPECT_TRUE(platform::CreateXmlDom()->Parse(good_.substr(0, whole)));
}

TEST_F(Mutations, AStartOnAnyThirtiethBeginningOfAGoodFileGivesTheDefaults) {
  for (std::size_t size = 0; size < good_.rfind('>'); size += 30) {
    ExpectReplaced(good_.substr(0, size));
    std::filesystem::remove(Path(".unreadable"));
  }
}

/// One byte changed, removed or doubled, or a stretch moved elsewhere.
std::string Mutated(std::string bytes, std::mt19937& random) {
  const auto at = [&] { return random() % bytes.size(); };
  for (unsigned i = 0; i <= random() % 3; ++i) {
    switch (random() % 4) {
      case 0:
        bytes[at()] = static_cast<char>(random());
        break;
      case 1:
        bytes.erase(at(), 1);
        break;
      case 2:
        bytes.insert(at(), 1, "<>&'\"=/!?[]-; \r\n"[random() % 16]);
        break;
      case 3:
        bytes.insert(at(), bytes.substr(at(), random() % 40));
        break;
    }
  }
  return bytes;
}

TEST_F(Mutations, WhateverIsTakenCanBeWrittenAndReadAgainTheSame) {
  std::mt19937 random(1);
  int taken = 0;
  for (int i = 0; i < 5'000; ++i) {
    const auto dom = platform::CreateXmlDom();
    const std::string bytes = Mutated(good_, random);
    if (!dom->Parse(bytes)) continue;
    ++taken;
    const std::string once = dom->Serialise();
    ASSERT_TRUE(dom->Parse(once)) << bytes;
    ASSERT_EQ(dom->Serialise(), once) << bytes;
  }
  EXPECT_GT(taken, 100);
}

}  // namespace
}  // namespace qlx
