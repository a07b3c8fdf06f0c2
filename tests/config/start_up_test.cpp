#include "config/start_up.h"

#include "config/schema.h"
#include "tests/config/Installation.h"

namespace qlx {
namespace {

using StartUp = Installation;
using Names = std::vector<std::string>;

constexpr char kLoadError[] = "Error loading QLXConfig.xml!\nExiting program.";

constexpr char kNewFile[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<MZP>
  <Ports_Configuration>
    <MSR_USB PID="" Serial_Number="" VID=""/>
    <LD_USB PID="" Serial_Number="" VID=""/>
    <IB_USB PID="" Serial_Number="" VID=""/>
    <CD_USB PID="" Serial_Number="" VID=""/>
    <CD_PCI/>
    <PRINTER_USB PID="" Serial_Number="" VID=""/>
  </Ports_Configuration>
  <Logging_Configuration>
    <File_Name>C:\Program Files\Harlune\QLX\LOG\qlx.log</File_Name>
    <File_Size>10240</File_Size>
    <Log_Level>0</Log_Level>
    <TCP_Port>38674</TCP_Port>
    <Module_Service>true</Module_Service>
    <Module_MSR>true</Module_MSR>
    <Module_LD>true</Module_LD>
    <Module_IB>true</Module_IB>
    <Module_CD>true</Module_CD>
    <Module_CD_PCI>true</Module_CD_PCI>
    <Module_PRINTER_USB>true</Module_PRINTER_USB>
  </Logging_Configuration>
  <MSR_Configuration>
    <CR_Enabled/>
    <Track1_Enabled>true</Track1_Enabled>
    <Track2_Enabled>true</Track2_Enabled>
    <Track3_Enabled>true</Track3_Enabled>
    <Strip_Sentinels/>
    <Hide_Error_Tracks/>
    <Track1_Start_Sentinel>%</Track1_Start_Sentinel>
    <Track2_Start_Sentinel>;</Track2_Start_Sentinel>
    <Track3_Start_Sentinel>+</Track3_Start_Sentinel>
    <End_Sentinel>?</End_Sentinel>
    <Head_Wrapper/>
    <Tail_Wrapper/>
    <Track1_CR_Enabled/>
    <Track2_CR_Enabled/>
    <Track3_CR_Enabled/>
  </MSR_Configuration>
  <IB_Configuration>
    <ID_Start>1</ID_Start>
    <ID_Length>16</ID_Length>
    <Prefix/>
    <Suffix/>
    <Delimiter>3</Delimiter>
    <OnRemove>00000000000000000000000000000000</OnRemove>
  </IB_Configuration>
  <Printer_Configuration>
    <Code_Page>1</Code_Page>
    <Emulation_Mode>0</Emulation_Mode>
  </Printer_Configuration>
</MZP>
)";

TEST_F(StartUp, WithoutAFileANewOneHoldsExactlyTheDefaultsAndCountsAsChanged) {
  EXPECT_TRUE(Started()->changed());
  EXPECT_EQ(Bytes(), kNewFile);
  EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml"}));
}

TEST_F(StartUp, TheStartAfterThatWritesNothing) {
  Started();
  EXPECT_FALSE(Started()->changed());
  EXPECT_EQ(Bytes(), kNewFile);
  EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml"}));
}

TEST_F(StartUp, OnlyThePciDrawerIsCreatedWithoutAttributes) {
  for (const ConfigNode& device : Started()->ReadSection(L"Ports_Configuration")) {
    const AttributeMap identity{{L"PID", L""}, {L"Serial_Number", L""}, {L"VID", L""}};
    EXPECT_EQ(device.attributes, device.name == L"CD_PCI" ? AttributeMap() : identity);
    EXPECT_EQ(device.text, L"");
  }
}

TEST_F(StartUp, TheSentinelsOfTrack2And3AreSemicolonAndPlusTheEndIsAQuestionMark) {
  EXPECT_EQ(DefaultText(L"MSR_Configuration", L"Track2_Start_Sentinel"), L";");
  EXPECT_EQ(DefaultText(L"MSR_Configuration", L"Track3_Start_Sentinel"), L"+");
  EXPECT_EQ(DefaultText(L"MSR_Configuration", L"End_Sentinel"), L"?");
}

TEST_F(StartUp, AKeyThatNoNewFileHoldsHasTheEmptyDefault) {
  EXPECT_EQ(DefaultText(L"Printer_Configuration", L"Unsolicited_Status"), L"");
  EXPECT_EQ(DefaultText(L"None", L"End_Sentinel"), L"");
}

TEST_F(StartUp, AnotherRootEndsTheProgramAndKeepsTheFile) {
  Write("<QLX><Logging_Configuration/></QLX>");
  try {
    Started();
    FAIL();
  } catch (const Ended& end) {
    EXPECT_STREQ(end.what(), kLoadError);
  }
  EXPECT_EQ(Bytes(), "<QLX><Logging_Configuration/></QLX>");
  EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml"}));
}

TEST_F(StartUp, AnMzpInADefaultNamespaceIsNone) {
  Write("<MZP xmlns='urn:x'/>");
  EXPECT_THROW(Started(), Ended);
  EXPECT_EQ(Bytes(), "<MZP xmlns='urn:x'/>");
}

TEST_F(StartUp, AnEmptyMzpGainsTheFiveSectionsAsEmptyElementsAndIsSaved) {
  Write("<MZP/>");
  EXPECT_TRUE(Started()->changed());
  EXPECT_EQ(Bytes(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<MZP>\n  <Ports_Configuration/>\n  "
            "<Logging_Configuration/>\n"
            "  <MSR_Configuration/>\n  <IB_Configuration/>\n  <Printer_Configuration/>\n</MZP>\n");
  EXPECT_EQ(Bytes(".bak"), "<MZP/>");
}

TEST_F(StartUp, AMissingIButtonSectionIsAddedEmptyAtTheEndAndTheOthersStay) {
  std::string file = kNewFile;
  const std::size_t begin = file.find("  <IB_Configuration>");
  const std::size_t end = file.find("  <Printer_Configuration>");
  Write(file.replace(begin, end - begin, ""));
  EXPECT_TRUE(Started()->changed());
  EXPECT_EQ(Bytes(), file.insert(file.find("</MZP>"), "  <IB_Configuration/>\n"));
}

TEST_F(StartUp, AFileWithAllFiveSectionsIsNotWritten) {
  const std::string file =
      "<MZP><Printer_Configuration/><IB_Configuration/><x><MSR_Configuration/></x><Logging_Configuration/>"
      "<Ports_Configuration/></MZP>";
  Write(file);
  EXPECT_FALSE(Started()->changed());
  EXPECT_EQ(Bytes(), file);
}

TEST_F(StartUp, AnMzpBelowAnotherRootCounts) {
  Write("<suite><MZP/></suite>");
  EXPECT_TRUE(Started()->Contains(L"MZP//IB_Configuration"));
}

TEST_F(StartUp, ASectionOutsideMzpIsMissing) {
  Write("<suite><IB_Configuration/><MZP/></suite>");
  EXPECT_TRUE(Started()->Contains(L"MZP//IB_Configuration"));
}

TEST_F(StartUp, MissingKeysOfAPresentSectionAreNotRestored) {
  Write("<MZP><Logging_Configuration/></MZP>");
  EXPECT_TRUE(Started()->ReadSection(L"Logging_Configuration").empty());
}

TEST_F(StartUp, AnUnparsableFileIsReplacedByTheDefaultsAndKeptBesideThem) {
  Write("<MZP><broken></MZP>");
  EXPECT_TRUE(Started()->changed());
  EXPECT_EQ(Bytes(), kNewFile);
  EXPECT_EQ(Bytes(".unreadable"), "<MZP><broken></MZP>");
  EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml", "QLXConfig.xml.unreadable"}));
}

TEST_F(StartUp, TheSavesAfterAReplacementLeaveTheUnreadableFileAlone) {
  Write("broken");
  const auto document = Started();
  document->SetValue(L"IB_Configuration", L"Prefix", L"v");
  document->Save();
  EXPECT_EQ(Bytes(".unreadable"), "broken");
}

TEST_F(StartUp, ThePathIsToldToTheDebuggersChannel) {
  Started();
  EXPECT_EQ(debug_output_.lines,
            (std::vector<std::wstring>{L"[MZP]: MZP Config XML File Path = " + Path().wstring()}));
}

TEST_F(StartUp, TheFileStandsBesideTheProgram) {
  EXPECT_EQ(ConfigurationPath(ProgramBeside(L"/opt/QLXConfig.xml")), L"/opt/QLXConfig.xml");
  EXPECT_EQ(ConfigurationPath(ProgramBeside(std::nullopt)),
            L"C:\\Program Files\\Harlune\\MZP\\BIN\\QLXConfig.xml");
}

TEST_F(StartUp, AnEndThatReturnsReadsAndWritesNothingMore) {
  Write("<QLX/>");
  const auto document = Document();
  int ends = 0;
  StartUpLoad(*document, ProgramBeside(Path().wstring()), debug_output_,
              [&](const std::wstring&) { ++ends; });
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(Bytes(), "<QLX/>");
}

}  // namespace
}  // namespace qlx
