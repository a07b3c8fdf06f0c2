// Files made to break the tool: each is replaced or refused, and nothing hangs, crashes or grows.
#include <functional>
#include <random>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/xml_dom.h"
#include "tests/config/Installation.h"
#include "tests/support/growth_in_child.h"

namespace qlx {
namespace {

using Names = std::vector<std::string>;

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

class HostileFile : public Installation {
 protected:
  void ExpectDefaults(const ConfigDocument& document) {
    EXPECT_TRUE(document.changed());
    EXPECT_EQ(const_cast<ConfigDocument&>(document).ReadSection(L"IB_Configuration").size(), 6U);
    EXPECT_TRUE(Reopened()->Contains(L"MZP//MSR_Configuration/End_Sentinel"));
  }

  /// Not well-formed: the defaults take the file's place and its bytes stay beside them.
  void ExpectReplaced(const std::string& bytes) {
    SCOPED_TRACE(bytes.substr(0, 200));
    Write(bytes);
    ExpectDefaults(*Started());
    EXPECT_TRUE(Bytes(".unreadable") == bytes);
    EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml", "QLXConfig.xml.unreadable"}));
  }

  /// What cannot be replaced: the tool goes on with the defaults, says that it could not save and touches
  /// nothing.
  void ExpectSaveError() {
    const auto document = Started();
    ASSERT_EQ(boxes_.size(), 1U);
    EXPECT_EQ(boxes_[0].first, L"Save File Error!");
    EXPECT_FALSE(document->changed());
    EXPECT_EQ(document->ReadSection(L"IB_Configuration").size(), 6U);
    EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml"}));
  }

  /// Bytes by which a start on `bytes` makes a process grow at its peak.
  std::size_t GrowthOfStart(const std::string& bytes) {
    Write(bytes);
    const long growth = testing::GrowthInChild(PeakKilobytes, [&] { Started(); });
    return static_cast<std::size_t>(growth) * 1024;
  }

  static long PeakKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
  }

  void ExpectSmallGrowth(const std::string& bytes) {
#ifdef __SANITIZE_ADDRESS__
    GrowthOfStart(bytes);  // the sanitizer's own memory says nothing
#else
    constexpr std::size_t kConstant = std::size_t{128} << 20;
    const std::size_t growth = GrowthOfStart(bytes);
    EXPECT_LE(growth, 12 * bytes.size() + kConstant) << bytes.substr(0, 100);
    RecordProperty("growth", std::to_string(growth));
#endif
  }
};

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
  Write("<!DOCTYPE MZP SYSTEM '" + (directory_ / "x.dtd").native() + "'><MZP/>");
  Started()->Save();
  EXPECT_EQ(Bytes().find("read"), std::string::npos);
}

TEST_F(HostileFile, AnEntityOfAnExternalDocumentTypeIsUndefined) {
  std::ofstream(directory_ / "x.dtd") << "<!ENTITY e 'read'>";
  const std::string type = "<!DOCTYPE MZP SYSTEM '" + (directory_ / "x.dtd").native() + "'>";
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

TEST_F(HostileFile, APipeInItsPlaceIsASaveErrorAndNeverWaitedFor) {
  ASSERT_EQ(mkfifo(Path().c_str(), 0666), 0);
  ExpectSaveError();
  EXPECT_TRUE(std::filesystem::is_fifo(Path()));
}

TEST_F(HostileFile, ASocketInItsPlaceIsASaveError) {
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  Path().native().copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ExpectSaveError();
  EXPECT_TRUE(std::filesystem::is_socket(Path()));
  close(socket);
}

TEST_F(HostileFile, ADeviceInItsPlaceIsASaveError) {
  std::filesystem::create_symlink("/dev/zero", Path());
  ExpectSaveError();
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/zero"));
}

TEST_F(HostileFile, ALinkToItselfIsASaveErrorAndStays) {
  std::filesystem::create_symlink("QLXConfig.xml", Path());
  ExpectSaveError();
  EXPECT_TRUE(std::filesystem::is_symlink(Path()));
}

TEST_F(HostileFile, AFileThatMayNotBeReadIsASaveErrorAndStays) {
  Write("<MZP><!-- mine --></MZP>");
  ASSERT_EQ(chmod(Path().c_str(), 0), 0);
  ASSERT_EQ(chmod(directory_.c_str(), 0755), 0);
  const uid_t user = geteuid();
  ASSERT_EQ(seteuid(user == 0 ? 65534 : user), 0);
  ExpectSaveError();
  ASSERT_EQ(seteuid(user), 0);
  ASSERT_EQ(chmod(Path().c_str(), 0600), 0);
  EXPECT_EQ(Bytes(), "<MZP><!-- mine --></MZP>");
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
