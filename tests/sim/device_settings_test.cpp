#include <fstream>

#include <gtest/gtest.h>

#include "sim/DeviceSettings.h"
#include "tests/sim/PlayedServices.h"

namespace qlx::sim {
namespace {

DeviceSettings ReadFile(const std::string& text) {
  const ScratchDirectory directory;
  const auto path = directory.path() / "QLXConfig.xml";
  std::ofstream(path) << text;
  return ReadDeviceSettings(path);
}

DeviceSettings Read(const std::string& section, const std::string& settings) {
  return ReadFile("<MZP><" + section + ">" + settings + "</" + section + "></MZP>");
}

void ExpectDefaults(const DeviceSettings& settings) {
  for (const auto& [kind, port] : settings.ports) EXPECT_EQ(port, "") << NameOf(kind);
  EXPECT_TRUE(settings.msr.tracks[0].enabled && settings.msr.tracks[1].enabled &&
              settings.msr.tracks[2].enabled);
  EXPECT_EQ(settings.msr.tracks[0].start_sentinel, "%");
  EXPECT_EQ(settings.msr.tracks[2].start_sentinel, "+");
  EXPECT_EQ(settings.msr.end_sentinel, "?");
  EXPECT_EQ(settings.ibutton.length, 16U);
  EXPECT_EQ(settings.ibutton.delimiter, "\r\n");
  EXPECT_EQ(settings.ibutton.on_remove, std::string(16, '\0'));
}

TEST(DeviceSettings, AreThoseOfANewFileWithoutAFile) {
  ExpectDefaults(ReadDeviceSettings("/nonexistent/QLXConfig.xml"));
}

TEST(DeviceSettings, AreThoseOfANewFileWithADamagedFile) {
  ExpectDefaults(ReadFile("<MZP><Ports_Configuration><MSR_USB>COM3"));
}

TEST(DeviceSettings, AreThoseOfANewFileInEmptySections) {
  ExpectDefaults(ReadFile("<MZP><Ports_Configuration/><MSR_Configuration/><IB_Configuration/></MZP>"));
}

TEST(DeviceSettings, HoldEachDevicesPort) {
  const auto ports =
      Read("Ports_Configuration",
           "<MSR_USB VID=''>COM3</MSR_USB><LD_USB>COM4</LD_USB><IB_USB>COM5</IB_USB><CD_USB>COM6</CD_USB>"
           "<CD_PCI>COM7</CD_PCI><PRINTER_USB>COM8</PRINTER_USB>")
          .ports;
  const std::map<Kind, std::string> expected = {{Kind::kMsr, "COM3"},     {Kind::kDisplay, "COM4"},
                                                {Kind::kIButton, "COM5"}, {Kind::kDrawers, "COM6"},
                                                {Kind::kPci, "COM7"},     {Kind::kPrinter, "COM8"}};
  EXPECT_EQ(ports, expected);
}

TEST(DeviceSettings, HoldTheReadersSwitches) {
  const MsrSettings msr =
      Read("MSR_Configuration",
           "<CR_Enabled>TRUE</CR_Enabled><Track2_Enabled/><Strip_Sentinels>true</Strip_Sentinels>"
           "<Hide_Error_Tracks>true</Hide_Error_Tracks><Track3_CR_Enabled>true</Track3_CR_Enabled>")
          .msr;
  EXPECT_TRUE(msr.carriage_returns && msr.strip_sentinels && msr.hide_error_tracks);
  EXPECT_TRUE(msr.tracks[0].enabled && !msr.tracks[1].enabled);
  EXPECT_TRUE(msr.tracks[2].carriage_return && !msr.tracks[0].carriage_return);
}

TEST(DeviceSettings, HoldTheReadersTextsAsLatinBytes) {
  const MsrSettings msr =
      Read("MSR_Configuration",
           "<Track1_Start_Sentinel>\xC3\xA4</Track1_Start_Sentinel><End_Sentinel/>"
           "<Head_Wrapper>12345678901234</Head_Wrapper><Tail_Wrapper>\xE2\x82\xAC</Tail_Wrapper>")
          .msr;
  EXPECT_EQ(msr.tracks[0].start_sentinel, "\xE4");
  EXPECT_EQ(msr.end_sentinel, "");
  EXPECT_EQ(msr.head, "12345678901234");
  EXPECT_EQ(msr.tail, "?");
}

TEST(DeviceSettings, TextsThatAreTooLongAreThoseOfANewFile) {
  const MsrSettings msr = Read("MSR_Configuration",
                               "<Track1_Start_Sentinel>%%</Track1_Start_Sentinel>"
                               "<Head_Wrapper>123456789012345</Head_Wrapper>")
                              .msr;
  EXPECT_EQ(msr.tracks[0].start_sentinel, "%");
  EXPECT_EQ(msr.head, "");
}

TEST(DeviceSettings, HoldTheIButtonsSettings) {
  const IButtonSettings ibutton =
      Read("IB_Configuration",
           "<ID_Start>3</ID_Start><ID_Length>8</ID_Length><Prefix>02</Prefix><Suffix>0D0a</Suffix>"
           "<Delimiter>4</Delimiter><OnRemove>FF</OnRemove>")
          .ibutton;
  EXPECT_EQ(ibutton.start, 3U);
  EXPECT_EQ(ibutton.length, 8U);
  EXPECT_EQ(ibutton.prefix, "\x02");
  EXPECT_EQ(ibutton.suffix, "\r\n");
  EXPECT_EQ(ibutton.delimiter, "\t");
  EXPECT_EQ(ibutton.on_remove, "\xFF");
}

TEST(DeviceSettings, TheDelimiterIsCountedFromZero) {
  const char* const delimiters[] = {"", "\r", "\n", "\r\n", "\t"};
  for (int i = 0; i < 5; ++i) {
    const std::string text = "<Delimiter>" + std::to_string(i) + "</Delimiter>";
    EXPECT_EQ(Read("IB_Configuration", text).ibutton.delimiter, delimiters[i]);
  }
}

TEST(DeviceSettings, MalformedNumbersAreThoseOfANewFile) {
  for (const char* text : {"0", "17", "-1", "abc", "1 ", "99999999999999999999", ""}) {
    const std::string all =
        "<ID_Start>" + std::string(text) + "</ID_Start><ID_Length>" + text + "</ID_Length>";
    const IButtonSettings ibutton = Read("IB_Configuration", all).ibutton;
    EXPECT_EQ(ibutton.start, 1U) << text;
    EXPECT_EQ(ibutton.length, 16U) << text;
  }
  EXPECT_EQ(Read("IB_Configuration", "<Delimiter>5</Delimiter>").ibutton.delimiter, "\r\n");
}

TEST(DeviceSettings, MalformedBytesAreThoseOfANewFile) {
  for (const std::string text : {"0", "0G", "0 0", "-1", "+1", "0x", "0000000000000000000000000000000000"}) {
    const IButtonSettings ibutton =
        Read("IB_Configuration", "<Prefix>" + text + "</Prefix><OnRemove>" + text + "</OnRemove>").ibutton;
    EXPECT_EQ(ibutton.prefix, "") << text;
    EXPECT_EQ(ibutton.on_remove, std::string(16, '\0')) << text;
  }
}

TEST(DeviceSettings, ReadingLeavesTheFileAsItIs) {
  const ScratchDirectory directory;
  const auto path = directory.path() / "QLXConfig.xml";
  std::ofstream(path) << "<MZP><Ports";
  ReadDeviceSettings(path);
  EXPECT_EQ(std::filesystem::file_size(path), 11U);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.path()), {}), 1);
}

}  // namespace
}  // namespace qlx::sim
