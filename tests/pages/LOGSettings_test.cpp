#include "pages/LOGSettings.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/support/ConfigFile.h"

namespace qlx {
namespace {

const FatalEnd kThrow = [](const std::wstring& message) {
  throw std::runtime_error(platform::ToUtf8(message));
};

LOGSettings Loaded(const std::wstring& key, const std::wstring& text) {
  LOGSettings settings;
  settings.Load({{key, text, {}, {}}});
  return settings;
}

TEST(LOGSettings, StartsWithTheDefaultsOfANewFile) {
  const LOGSettings settings;
  EXPECT_EQ(settings.Text(LOGSettings::kFileName), L"C:\\Program Files\\Harlune\\QLX\\LOG\\qlx.log");
  EXPECT_EQ(settings.Text(LOGSettings::kFileSize), L"10240");
  EXPECT_EQ(settings.Text(LOGSettings::kTcpPort), L"38674");
  EXPECT_EQ(settings.Choice(LOGSettings::kLogLevel), 0);
  for (const int module : {1020, 1021, 1032, 1035, 1036, 1037, 1039}) EXPECT_TRUE(settings.Checked(module));
}

TEST(LOGSettings, ALevelThatIsNoNumberBelowSixLeavesOffSelected) {
  for (const wchar_t* text : {L"7", L"6", L"-1", L"2x", L"", L" 2", L"4294967298"}) {
    EXPECT_EQ(Loaded(L"Log_Level", text).Choice(LOGSettings::kLogLevel), 0) << text;
  }
}

TEST(LOGSettings, ALevelWithALeadingZeroIsADecimalNumber) {
  EXPECT_EQ(Loaded(L"Log_Level", L"05").Choice(LOGSettings::kLogLevel), 5);
}

TEST(LOGSettings, APortOfSixDigitsIsIgnored) {
  EXPECT_EQ(Loaded(L"TCP_Port", L"123456").Text(LOGSettings::kTcpPort), L"38674");
  EXPECT_EQ(Loaded(L"TCP_Port", L"99999").Text(LOGSettings::kTcpPort), L"99999");
}

TEST(LOGSettings, AFileSizeOfSevenDigitsIsIgnored) {
  EXPECT_EQ(Loaded(L"File_Size", L"1234567").Text(LOGSettings::kFileSize), L"10240");
  EXPECT_EQ(Loaded(L"File_Size", L"123456").Text(LOGSettings::kFileSize), L"123456");
}

TEST(LOGSettings, ANumberFieldThatHoldsAnythingButDigitsIsIgnored) {
  for (const wchar_t* text : {L"", L"12a", L"-5", L"+5", L" 5"}) {
    EXPECT_EQ(Loaded(L"TCP_Port", text).Text(LOGSettings::kTcpPort), L"38674") << text;
    EXPECT_EQ(Loaded(L"File_Size", text).Text(LOGSettings::kFileSize), L"10240") << text;
  }
}

TEST(LOGSettings, AFileNameOf261CharactersIsIgnoredAnd260AreShown) {
  const std::wstring longest(260, L'n');
  EXPECT_EQ(Loaded(L"File_Name", longest).Text(LOGSettings::kFileName), longest);
  EXPECT_EQ(Loaded(L"File_Name", longest + L"n").Text(LOGSettings::kFileName), LOGSettings().Text(1025));
}

TEST(LOGSettings, AFileNameIsMeasuredInUtf16Units) {
  const std::wstring fits = std::wstring(258, L'n') + L"\U0001F5A8";
  EXPECT_EQ(Loaded(L"File_Name", fits).Text(LOGSettings::kFileName), fits);
  EXPECT_NE(Loaded(L"File_Name", L"n" + fits).Text(LOGSettings::kFileName), L"n" + fits);
}

TEST(LOGSettings, AnEmptyFileNameIsShownAsItStands) {
  EXPECT_EQ(Loaded(L"File_Name", L"").Text(LOGSettings::kFileName), L"");
}

TEST(LOGSettings, AModuleIsOnExactlyWhenItsValueIsTrueInAnyLetterCase) {
  for (const wchar_t* text : {L"true", L"TRUE", L"True"})
    EXPECT_TRUE(Loaded(L"Module_MSR", text).Checked(1021));
  for (const wchar_t* text : {L"false", L"1", L"", L"yes"})
    EXPECT_FALSE(Loaded(L"Module_MSR", text).Checked(1021));
}

TEST(LOGSettings, UnknownKeysAndOtherLetterCaseAreIgnored) {
  EXPECT_EQ(Loaded(L"tcp_port", L"80").Text(LOGSettings::kTcpPort), L"38674");
  EXPECT_EQ(Loaded(L"Colour", L"80").Text(LOGSettings::kTcpPort), L"38674");
}

TEST(LOGSettings, SavesEveryKeyInOrderAndAnUncheckedModuleAsEmptyText) {
  ConfigFile file(L"<MZP><Logging_Configuration/></MZP>");
  LOGSettings settings;
  settings.SetChecked(LOGSettings::Control(L"Module_MSR"), false);
  settings.SetChoice(LOGSettings::kLogLevel, 3);
  settings.SetText(LOGSettings::kTcpPort, L"");
  settings.Save(file.document(), kThrow);
  EXPECT_EQ(file.Saved(L"Logging_Configuration"),
            (ConfigFile::Pairs{{L"File_Name", L"C:\\Program Files\\Harlune\\QLX\\LOG\\qlx.log"},
                               {L"File_Size", L"10240"},
                               {L"Log_Level", L"3"},
                               {L"TCP_Port", L""},
                               {L"Module_Service", L"true"},
                               {L"Module_MSR", L""},
                               {L"Module_LD", L"true"},
                               {L"Module_IB", L"true"},
                               {L"Module_CD", L"true"},
                               {L"Module_CD_PCI", L"true"},
                               {L"Module_PRINTER_USB", L"true"}}));
}

TEST(LOGSettings, NoSelectionIsStoredAsMinusOne) {
  ConfigFile file(L"<MZP><Logging_Configuration/></MZP>");
  LOGSettings settings;
  settings.SetChoice(LOGSettings::kLogLevel, -1);
  settings.Save(file.document(), kThrow);
  EXPECT_EQ(file.Saved(L"Logging_Configuration")[2].second, L"-1");
}

TEST(LOGSettings, AnIndexThatDoesNotFitItsBufferEndsTheProgram) {
  ConfigFile file(L"<MZP><Logging_Configuration/></MZP>");
  LOGSettings settings;
  settings.SetChoice(LOGSettings::kLogLevel, 100);
  EXPECT_THROW(settings.Save(file.document(), kThrow), std::runtime_error);
}

TEST(LOGSettings, DefaultsTouchNeitherDocumentNorFile) {
  ConfigFile file(L"<MZP><Logging_Configuration><TCP_Port>80</TCP_Port></Logging_Configuration></MZP>");
  LOGSettings settings;
  settings.Load(file.document().ReadSection(L"Logging_Configuration"));
  settings.SetDefaults();
  EXPECT_EQ(settings.Text(LOGSettings::kTcpPort), L"38674");
  EXPECT_EQ(file.document().ReadSection(L"Logging_Configuration")[0].text, L"80");
  EXPECT_FALSE(file.document().changed());
}

TEST(LOGSettings, AreChangedUntilTheValueOfTheFileIsBack) {
  LOGSettings settings = Loaded(L"TCP_Port", L"4000");
  settings.MarkStored();
  EXPECT_FALSE(settings.changed());
  settings.SetText(LOGSettings::kTcpPort, L"4001");
  EXPECT_TRUE(settings.changed());
  settings.SetText(LOGSettings::kTcpPort, L"4000");
  EXPECT_FALSE(settings.changed());
}

TEST(LOGSettings, AreChangedByDefaultsThatAreNotTheFiles) {
  LOGSettings settings = Loaded(L"TCP_Port", L"4000");
  settings.MarkStored();
  settings.SetDefaults();
  EXPECT_TRUE(settings.changed());
  LOGSettings standard;
  standard.SetDefaults();
  EXPECT_FALSE(standard.changed());
}

TEST(LOGSettings, AreUnchangedOnceTheyAreSaved) {
  ConfigFile file(L"<MZP><Logging_Configuration/></MZP>");
  LOGSettings settings;
  settings.SetChecked(LOGSettings::Control(L"Module_MSR"), false);
  EXPECT_TRUE(settings.changed());
  settings.Save(file.document(), kThrow);
  EXPECT_FALSE(settings.changed());
}

TEST(LOGSettings, StayChangedWhenTheFileWasNotWritten) {
  const auto document = MakeConfigDocument([](const std::wstring&) {});
  LOGSettings settings;
  settings.SetChecked(LOGSettings::Control(L"Module_MSR"), false);
  settings.Save(*document, kThrow);  // which nothing has opened
  EXPECT_TRUE(settings.changed());
}

}  // namespace
}  // namespace qlx
