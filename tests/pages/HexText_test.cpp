#include "pages/HexText.h"

#include <random>

#include <gtest/gtest.h>

namespace qlx {

void PrintTo(const HexText& field, std::ostream* out) {
  std::string picture(field.text.begin(), field.text.end());
  picture.insert(field.end, 1, '|');
  if (field.start != field.end) picture.insert(field.start, 1, '|');
  *out << picture;
}

namespace {

/// A field written as it looks: '|' for the caret, or one '|' at each end of the selection.
HexText Field(std::wstring_view picture) {
  HexText field;
  for (const wchar_t c : picture) {
    if (c != L'|') {
      field.text += c;
    } else if (picture.find(L'|') == field.text.size()) {
      field.start = field.end = field.text.size();
    } else {
      field.end = field.text.size();
    }
  }
  return field;
}

HexText Typed(HexText field, std::wstring_view characters) {
  for (const wchar_t c : characters) field = TypeInto(field, c);
  return field;
}

constexpr wchar_t kFull[] = L"00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF";

TEST(HexText, TypedDigitsAreLaidOutInPairsWithTheCaretAtTheEnd) {
  EXPECT_EQ(Typed({}, L"0"), Field(L"0|"));
  EXPECT_EQ(Typed({}, L"0D"), Field(L"0D|"));
  EXPECT_EQ(Typed({}, L"0D0"), Field(L"0D 0|"));
  EXPECT_EQ(Typed({}, L"0D0A"), Field(L"0D 0A|"));
}

TEST(HexText, TypedLowerCaseLettersBecomeUpperCase) {
  EXPECT_EQ(Typed({}, L"abcdef"), Field(L"AB CD EF|"));
}

TEST(HexText, AnyOtherCharacterChangesNothingNotEvenASelection) {
  for (const wchar_t c : std::wstring_view(L"Gg -\t\r\x7F\x661\xFF11x")) {
    EXPECT_EQ(TypeInto(Field(L"0D |0A|"), c), Field(L"0D |0A|")) << static_cast<int>(c);
  }
}

TEST(HexText, ADigitTypedInTheMiddleMovesTheRestAndLeavesTheCaretBehindItself) {
  EXPECT_EQ(TypeInto(Field(L"0|D 0A"), L'1'), Field(L"01| D0 A"));
  EXPECT_EQ(TypeInto(Field(L"|0D 0A"), L'1'), Field(L"1|0 D0 A"));
  EXPECT_EQ(TypeInto(Field(L"0D 0|A 4"), L'1'), Field(L"0D 01| A4"));
}

TEST(HexText, ADigitTypedBesideABlankGoesOnBehindIt) {
  EXPECT_EQ(TypeInto(Field(L"0D| 0A"), L'1'), Field(L"0D 1|0 A"));
  EXPECT_EQ(TypeInto(Field(L"0D |0A"), L'1'), Field(L"0D 1|0 A"));
}

TEST(HexText, ADigitTypedOverASelectionTakesItsPlace) {
  EXPECT_EQ(TypeInto(Field(L"0D |0A 1|F"), L'4'), Field(L"0D 4|F"));
  EXPECT_EQ(TypeInto(Field(L"|0D 0A|"), L'7'), Field(L"7|"));
}

TEST(HexText, AFullFieldTakesNoFurtherDigit) {
  const HexText full = {kFull, 3, 3};
  EXPECT_EQ(full.text.size(), kHexLength);
  EXPECT_EQ(TypeInto(full, L'1'), full);
}

TEST(HexText, AFullFieldTakesADigitForASelectedOne) {
  EXPECT_EQ(TypeInto({kFull, 0, 1}, L'F').text, L"F0 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF");
}

TEST(HexText, AFullFieldTakesNoDigitInThePlaceOfABlank) {
  const HexText blank = {kFull, 2, 3};
  EXPECT_EQ(TypeInto(blank, L'1'), blank);
}

TEST(HexText, TheLastDigitThatAFieldHasRoomForIsTaken) {
  const std::wstring but_one(std::wstring_view(kFull).substr(0, kHexLength - 1));
  EXPECT_EQ(TypeInto({but_one, but_one.size(), but_one.size()}, L'F').text, kFull);
}

TEST(HexText, BackspaceInTheMiddleRegroupsTheRest) {
  EXPECT_EQ(DeleteBackward(Field(L"0D| 0A")), Field(L"0|0 A"));
  EXPECT_EQ(DeleteBackward(Field(L"0D 0A|")), Field(L"0D 0|"));
  EXPECT_EQ(DeleteBackward(Field(L"0|D 0A")), Field(L"|D0 A"));
}

TEST(HexText, BackspaceBehindABlankStepsOverItAndKeepsTheDigits) {
  EXPECT_EQ(DeleteBackward(Field(L"0D |0A")), Field(L"0D| 0A"));
}

TEST(HexText, BackspaceOfTheDigitAfterABlankStepsOverTheBlankToo) {
  EXPECT_EQ(DeleteBackward(Field(L"0D 1|2 34")), Field(L"0D |23 4"));
}

TEST(HexText, BackspaceThatLeavesTheLayoutKeepsTheCaret) {
  EXPECT_EQ(DeleteBackward(Field(L"0D 0|A")), Field(L"0D |A"));
  EXPECT_EQ(DeleteBackward(Field(L"0D 0A|")), Field(L"0D 0|"));
}

TEST(HexText, BackspaceOfTheOnlyDigitOfAPairTakesTheBlankWithIt) {
  EXPECT_EQ(DeleteBackward(Field(L"0D 0|")), Field(L"0D|"));
}

TEST(HexText, BackspaceAtTheBeginningChangesNothing) {
  EXPECT_EQ(DeleteBackward(Field(L"|0D 0A")), Field(L"|0D 0A"));
  EXPECT_EQ(DeleteBackward({}), HexText());
}

TEST(HexText, BackspaceOverASelectionFromTheBeginningLeavesTheCaretBehindTheFirstDigit) {
  EXPECT_EQ(DeleteBackward(Field(L"|0|D 0A")), Field(L"D|0 A"));
}

TEST(HexText, DeleteInTheMiddleRegroupsTheRest) {
  EXPECT_EQ(DeleteForward(Field(L"0|D 0A")), Field(L"0|0 A"));
  EXPECT_EQ(DeleteForward(Field(L"|0D 0A")), Field(L"|D0 A"));
}

TEST(HexText, DeleteInFrontOfABlankStepsOverItAndKeepsTheDigits) {
  EXPECT_EQ(DeleteForward(Field(L"0D| 0A")), Field(L"0D |0A"));
}

TEST(HexText, DeleteBehindABlankLeavesTheCaretBehindTheBlank) {
  EXPECT_EQ(DeleteForward(Field(L"0D 0A |1F 2")), Field(L"0D 0A |F2"));
}

TEST(HexText, DeleteAtTheEndChangesNothing) {
  EXPECT_EQ(DeleteForward(Field(L"0D 0A|")), Field(L"0D 0A|"));
}

TEST(HexText, DeleteOverASelectionTakesItOut) {
  EXPECT_EQ(DeleteForward(Field(L"0|D 0|A")), Field(L"0|A"));
  EXPECT_EQ(DeleteForward(Field(L"|0D 0A|")), HexText());
}

TEST(HexText, CuttingTakesTheSelectionOutAndRegroupsTheRest) {
  EXPECT_EQ(CutFrom(Field(L"0|D 0|A 1F")), Field(L"0|A 1F"));
  EXPECT_EQ(CutFrom(Field(L"0D 0|A |1F")), Field(L"0D |01 F"));
  EXPECT_EQ(CutFrom(Field(L"0D 0A|")), Field(L"0D 0A|"));
}

TEST(HexText, ClearingTakesTheSelectionOutAndNothingWithoutOne) {
  EXPECT_EQ(ClearIn(Field(L"0|D |0A")), Field(L"0|0 A"));
  EXPECT_EQ(ClearIn(Field(L"0|D 0A")), Field(L"0|D 0A"));
}

TEST(HexText, PastingKeepsTheDigitsAndPutsTheCaretAtTheEnd) {
  EXPECT_EQ(PasteInto({}, L"0D-0A ZZ 41"), Field(L"0D 0A 41|"));
  EXPECT_EQ(PasteInto(Field(L"1|2 34"), L"0a\n0b"), Field(L"10 A0 B2 34|"));
  EXPECT_EQ(PasteInto(Field(L"|0D 0A|"), L"7"), Field(L"7|"));
}

TEST(HexText, PastingTwoDigitsPutsTheCaretAtTheEndToo) {
  EXPECT_EQ(PasteInto({}, L"4 1"), Field(L"41|"));
}

TEST(HexText, PastingNothingHexadecimalTakesTheSelectionOut) {
  EXPECT_EQ(PasteInto(Field(L"0D |0A|"), L"xyz"), Field(L"0D|"));
}

TEST(HexText, PastingIsCutToSixteenBytesAfterTheFilter) {
  EXPECT_EQ(PasteInto({}, std::wstring(40, L'-') + std::wstring(40, L'F')).text.size(), kHexLength);
  const HexText middle = PasteInto(Field(L"12|34"), std::wstring(100, L'0'));
  EXPECT_EQ(middle.text.size(), kHexLength);
  EXPECT_TRUE(middle.text.starts_with(L"12 00")) << "what was there stays";
  EXPECT_TRUE(middle.text.ends_with(L"00 34")) << "what was there stays";
}

TEST(HexText, PastingAMillionCharactersTakesWhatThereIsRoomFor) {
  EXPECT_EQ(PasteInto({}, std::wstring(1'000'000, L'a')).text.size(), kHexLength);
}

TEST(HexText, ValidIsAnEvenNumberOfUpperCaseDigits) {
  for (const wchar_t* valid : {L"", L" ", L"0D", L"0D 0A", L"0D0A", L"0 D", L"9 41 1"}) {
    EXPECT_TRUE(IsValidHex(valid)) << valid;
  }
  for (const wchar_t* invalid : {L"0D 0A 4", L"0d", L"0G", L"4", L"0D\t0A0", L"\x661\x661"}) {
    EXPECT_FALSE(IsValidHex(invalid)) << invalid;
  }
}

TEST(HexText, AStoredTextIsShownLaidOutOrNotAtAll) {
  EXPECT_EQ(LoadedHex(L"0D0A"), L"0D 0A");
  EXPECT_EQ(LoadedHex(L"02"), L"02");
  EXPECT_EQ(LoadedHex(L"0 D0 A"), L"0D 0A");
  for (const wchar_t* text : {L"2", L"0G", L"0d0a", L""}) EXPECT_EQ(LoadedHex(text), L"") << text;
}

TEST(HexText, TheEndModePutsTheCaretAtTheEnd) {
  EXPECT_EQ(Reformat(Field(L"|0D0A"), CaretMode::kEnd), Field(L"0D 0A|"));
}

bool IsLaidOut(const std::wstring& text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if ((i % 3 == 2) != (text[i] == L' ')) return false;
  }
  return !text.ends_with(L' ');
}

HexText AnyEdit(const HexText& field, unsigned choice) {
  switch (choice % 6) {
    case 0:
      return DeleteBackward(field);
    case 1:
      return DeleteForward(field);
    case 2:
      return CutFrom(field);
    case 3:
      return PasteInto(field, L"1f-2");
    default:
      return TypeInto(field, L"0123456789aF"[choice / 6 % 12]);
  }
}

TEST(HexText, EveryEditEndsLaidOutWithTheCaretInTheText) {
  std::mt19937 random(4);
  HexText field;
  for (int edit = 0; edit < 20'000; ++edit) {
    field.start = random() % (field.text.size() + 1);
    field.end = field.start + random() % 4 % (field.text.size() - field.start + 1);
    const HexText before = field;
    field = AnyEdit(before, static_cast<unsigned>(random()));
    ASSERT_TRUE(IsLaidOut(field.text)) << edit;
    ASSERT_LE(field.text.size(), kHexLength);
    ASSERT_LE(field.end, field.text.size());
    ASSERT_TRUE(field.start == field.end || field == before);
  }
}

}  // namespace
}  // namespace qlx
