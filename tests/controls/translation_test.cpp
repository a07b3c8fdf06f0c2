#include "controls/translation.h"

#include <clocale>
#include <string>

#include <gtest/gtest.h>
#include <wx/utils.h>

namespace qlx {
namespace {

/// With the catalogues of the build; the toolkit has none afterwards, as the other tests want it.
class TranslationTest : public testing::Test {
 protected:
  ~TranslationTest() override {
    wxTranslations::Set(nullptr);
    wxUnsetEnv("LANGUAGE");
  }

  static void Load(const wxString& language) {
    wxSetEnv("LANGUAGE", language);
    LoadTranslations(wxString(QLX_LOCALE_FOLDER).ToStdWstring());
  }
};

TEST_F(TranslationTest, TheFirstLanguageThatThereIsCounts) {
  Load("fr:es:de");
  EXPECT_EQ(Translated(L"Not present"), L"No presente");
}

TEST_F(TranslationTest, TheLocaleCNamesEnglish) {
  Load("fr:C:de");
  EXPECT_EQ(Translated(L"Not present"), L"Not present");
}

TEST_F(TranslationTest, EnglishCountsWhereItStands) {
  Load("en_GB:de");
  EXPECT_EQ(Translated(L"Not present"), L"Not present");
}

TEST_F(TranslationTest, ACountrysLanguageIsThatOfItsNeighbours) {
  Load("de_AT.UTF-8@euro");
  EXPECT_EQ(Translated(L"Not present"), L"Nicht vorhanden");
}

TEST_F(TranslationTest, WhatIsInNoCatalogueStaysAsItIs) {
  Load("de");
  EXPECT_EQ(Translated(L"COM3"), L"COM3");
  EXPECT_EQ(Translated(L""), L"");
}

TEST_F(TranslationTest, AValueStandsInTheTranslatedSentenceUntranslated) {
  Load("de");
  EXPECT_EQ(Translated(Message{L"%s Byte(s) Received:", L"3"}), L"3 Byte(s) empfangen:");
  EXPECT_EQ(Translated(Message{{}, L"Not present"}), L"Not present")
      << "a device may send a word of the program's";
}

TEST_F(TranslationTest, TheProcesssLocaleStaysWhatItIs) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  Load("de");
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

TEST_F(TranslationTest, WithoutAFolderEverythingIsEnglish) {
  wxSetEnv("LANGUAGE", "de");
  EXPECT_EQ(Translated(L"Not present"), L"Not present");
}

}  // namespace
}  // namespace qlx
