// The operations of INI stores that are the same for all kinds: sections, keys, cursor, edits.
#include "stores/ini.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "ini_support.h"
#include "support/assert_recorder.h"
#include "support/temp_dir.h"

namespace {

using Texts = std::vector<std::string>;

// Kinds

TEST(IniKinds, HaveTheirNumbers) {
  EXPECT_EQ(iniFILE, 0);
  EXPECT_EQ(iniREG, 1);
  EXPECT_EQ(iniMEM, 2);
  EXPECT_EQ(iniSTRLIST, 3);
}

// Sections

TEST(IniSections, AreFoundWithoutRegardToCase) {
  MemoryStore ini("[First]\na=1\n[Second]\na=2\n");
  EXPECT_TRUE(IniFindSection(ini, "second"));
  EXPECT_EQ(SectionText(ini), "[Second]\na=2\n\n");
  EXPECT_TRUE(IniFindSection(ini, "FIRST"));
  EXPECT_EQ(SectionText(ini), "[First]\na=1\n\n");
}

TEST(IniSections, AccentedLettersHaveCasesToo) {
  MemoryStore ini("[\xc9t\xe9]\n\xc9=1\n");
  EXPECT_EQ(ReadOf(ini, "\xe9T\xc9", "\xe9"), "1");
}

TEST(IniSections, FirstOfSeveralWins) {
  MemoryStore ini("[A]\nk=1\n[a]\nk=2\n");
  EXPECT_EQ(ReadOf(ini, "a", "k"), "1");
}

TEST(IniSections, FailedLookUpLeavesNoCurrentSection) {
  MemoryStore ini("[A]\nk=1\n");
  EXPECT_TRUE(IniFindSection(ini, "A"));
  EXPECT_FALSE(IniFindSection(ini, "B"));
  Str value;
  EXPECT_FALSE(IniReadStr(ini, "k", value));
  EXPECT_EQ(SectionText(ini), "-");
}

TEST(IniSections, BlanksInsideTheBracketsAreNoPartOfTheName) {
  MemoryStore ini("[ Name ]\nk=1\n");
  EXPECT_EQ(ReadOf(ini, "Name", "k"), "1");
}

TEST(IniSections, OpenBracketStartsABlockWithoutName) {
  MemoryStore ini("[A]\na=1\n[never closed\nb=2\n[C]\nc=3\n");
  EXPECT_EQ(Listing(ini), "[A] a=1 [C] c=3");
  IniFindSection(ini, "A");
  EXPECT_EQ(SectionText(ini), "[A]\na=1\n\n");
}

TEST(IniSections, IndentedHeaderStartsNoSection) {
  MemoryStore ini("[A]\na=1\n [B]\nb=2\n");
  EXPECT_EQ(Listing(ini), "[A] a=1 b=2");
}

TEST(IniSections, LinesBeforeTheFirstHeaderAreKept) {
  MemoryStore ini("stray=1\n; note\n[A]\na=1\n");
  EXPECT_EQ(Listing(ini), "[A] a=1");
  EXPECT_EQ(ini.Close(), "stray=1\r\n; note\r\n\r\n[A]\r\na=1\r\n\r\n");
}

TEST(IniSections, EmptyLinesAreDroppedCommentsAndOthersKept) {
  MemoryStore ini("\n\n[A]\n\n  ; note\na=1\n\n\nfile line\n \n\n[B]\n");
  IniFindSection(ini, "A");
  EXPECT_EQ(SectionText(ini), "[A]\n  ; note\na=1\nfile line\n \n\n");
  IniFindSection(ini, "B");
  EXPECT_EQ(SectionText(ini), "[B]\n\n");
}

TEST(IniSections, CreatingAppendsAHeader) {
  MemoryStore ini("[A]\na=1\n");
  EXPECT_TRUE(IniFindSection(ini, "New_1", true));
  EXPECT_EQ(SectionText(ini), "[New_1]\n\n");
  EXPECT_TRUE(IniWriteString(ini, "k", "v"));
  EXPECT_EQ(ReadOf(ini, "new_1", "k"), "v");
  EXPECT_EQ(ini.Close(), "[A]\r\na=1\r\n\r\n[New_1]\r\nk=v\r\n\r\n");
}

TEST(IniSections, CreatingTakesAnExistingOne) {
  MemoryStore ini("[A]\na=1\n");
  EXPECT_TRUE(IniFindSection(ini, "a", true));
  EXPECT_EQ(Listing(ini), "[A] a=1");
}

TEST(IniSections, InvalidNamesAreReportedAndCreated) {
  MemoryStore ini("");
  AssertRecorder recorder;
  EXPECT_TRUE(IniFindSection(ini, "two words", true));
  EXPECT_EQ(recorder.Only(), "KeyIsValid(section)");
  EXPECT_TRUE(IniFindSection(ini, "two words"));
}

TEST(IniSections, LookingUpNeverChecksNames) {
  MemoryStore ini("[two words]\na b=1\n");
  EXPECT_EQ(ReadOf(ini, "two words", "a b"), "1");
}

TEST(IniSections, OnlyAHundredCanBeCreated) {
  MemoryStore ini("");
  for (int i = 0; i < 100; ++i)
    EXPECT_TRUE(IniFindSection(ini, ("S" + std::to_string(i)).c_str(), true)) << i;
  EXPECT_FALSE(IniFindSection(ini, "S100", true));
  EXPECT_EQ(SectionText(ini), "-");
  EXPECT_TRUE(IniFindSection(ini, "S99", true));
  EXPECT_FALSE(IniSetSection(ini, "S100", BlockOf("[S100]\n\n")));
}

TEST(IniSections, MoreThanAHundredCanBeLoaded) {
  std::string text;
  for (int i = 0; i < 150; ++i) text += "[S" + std::to_string(i) + "]\nk=" + std::to_string(i) + "\n";
  MemoryStore ini(text);
  EXPECT_EQ(ReadOf(ini, "S149", "k"), "149");
  EXPECT_FALSE(IniFindSection(ini, "new", true));
}

TEST(IniSections, EnumerationGivesThemInOrder) {
  MemoryStore ini("stray\n[B]\n[open\n[A]\n[b]\n");
  Str name;
  Texts names;
  for (bool first = true; IniNextSection(ini, first, nullptr, name); first = false)
    names.push_back(name.Chars());
  EXPECT_EQ(names, (Texts{"B", "A", "b"}));
  EXPECT_EQ(SectionText(ini), "-");
}

TEST(IniSections, EnumerationGoesOnBehindTheCurrentSection) {
  MemoryStore ini("[A]\n[B]\n[C]\n");
  Str name;
  IniFindSection(ini, "B");
  EXPECT_TRUE(IniNextSection(ini, false, nullptr, name));
  EXPECT_EQ(name, "C");
  EXPECT_TRUE(IniNextSection(ini, true, nullptr, name));
  EXPECT_EQ(name, "A");
}

TEST(IniSections, EnumerationMakesEachOneCurrent) {
  MemoryStore ini("[A]\na=1\n[B]\nb=2\n");
  Str name;
  IniNextSection(ini, true, nullptr, name);
  IniNextSection(ini, false, nullptr, name);
  Str value;
  EXPECT_TRUE(IniReadStr(ini, "b", value));
  EXPECT_EQ(value, "2");
}

TEST(IniSections, EnumerationWithAPrefix) {
  MemoryStore ini("[Font1]\n[Other]\n[fONT2]\n[Fon]\n");
  Str name;
  Texts names;
  for (bool first = true; IniNextSection(ini, first, "font", name); first = false)
    names.push_back(name.Chars());
  EXPECT_EQ(names, (Texts{"Font1", "fONT2"}));
}

TEST(IniSections, EnumerationLeavesOutDeletedOnes) {
  MemoryStore ini("[A]\n[B]\n[a]\n");
  IniDeleteSection(ini, "A");
  EXPECT_EQ(Listing(ini), "[B]");
}

TEST(IniSections, DeletingTakesEveryOneOfTheName) {
  MemoryStore ini("[A]\nk=1\n[B]\nk=2\n[a]\nk=3\n");
  IniFindSection(ini, "A");
  IniDeleteSection(ini, "A");
  EXPECT_FALSE(IniFindSection(ini, "A"));
  EXPECT_EQ(ini.Close(), "[B]\r\nk=2\r\n\r\n");
}

TEST(IniSections, DeletingTheCurrentOneLeavesNone) {
  MemoryStore ini("[A]\nk=1\n[B]\nk=2\n");
  IniFindSection(ini, "A");
  IniDeleteSection(ini, "A");
  EXPECT_EQ(SectionText(ini), "-");
}

TEST(IniSections, DeletingAMissingOneDoesNothing) {
  MemoryStore ini("[A]\nk=1\n");
  IniDeleteSection(ini, "B");
  EXPECT_EQ(Listing(ini), "[A] k=1");
}

TEST(IniSections, DeletedOneCanBeCreatedAnew) {
  MemoryStore ini("[A]\nk=1\n");
  IniDeleteSection(ini, "A");
  EXPECT_TRUE(IniFindSection(ini, "A", true));
  EXPECT_EQ(SectionText(ini), "[A]\n\n");
  EXPECT_EQ(ini.Close(), "[A]\r\n\r\n");
}

TEST(IniSections, RenamingReplacesTheHeader) {
  MemoryStore ini("[ A ]\n; note\nk=1\n[B]\n");
  IniFindSection(ini, "A");
  IniRenameSection(ini, "New");
  EXPECT_EQ(SectionText(ini), "[New]\n; note\nk=1\n\n");
  EXPECT_FALSE(IniFindSection(ini, "A"));
  EXPECT_EQ(ReadOf(ini, "new", "k"), "1");
  EXPECT_EQ(Listing(ini), "[New] k=1 [B]");
}

TEST(IniSections, RenamingChecksTheName) {
  MemoryStore ini("[A]\n");
  IniFindSection(ini, "A");
  AssertRecorder recorder;
  IniRenameSection(ini, "a-b");
  EXPECT_EQ(recorder.Only(), "KeyIsValid(section)");
  EXPECT_TRUE(IniFindSection(ini, "a-b"));
}

TEST(IniSections, RenamingWithoutACurrentOneDoesNothing) {
  MemoryStore ini("[A]\n");
  IniRenameSection(ini, "B");
  EXPECT_EQ(Listing(ini), "[A]");
}

TEST(IniSections, CopyIsTheTextWithItsHeader) {
  MemoryStore ini("[A]\n;n\nk = 1\n");
  EXPECT_FALSE(IniCopySection(ini).IsValid());
  IniFindSection(ini, "A");
  MemHandle copy = IniCopySection(ini);
  EXPECT_EQ(TextOf(copy), "[A]\n;n\nk = 1\n\n");
  EXPECT_EQ(copy.GetLockCount(), 0);
}

TEST(IniSections, SettingReplacesTheWholeText) {
  MemoryStore ini("[A]\nk=1\n[B]\nk=2\n");
  EXPECT_TRUE(IniSetSection(ini, "a", BlockOf("[A]\nx=9\n\n")));
  EXPECT_EQ(SectionText(ini), "[A]\nx=9\n\n");
  EXPECT_EQ(Listing(ini), "[A] x=9 [B] k=2");
}

TEST(IniSections, SettingCreatesAMissingOne) {
  MemoryStore ini("");
  EXPECT_TRUE(IniSetSection(ini, "A", BlockOf("[A]\nx=9\n\n")));
  EXPECT_EQ(ini.Close(), "[A]\r\nx=9\r\n\r\n");
}

TEST(IniSections, CopyOfOneStoreIsSetInAnother) {
  MemoryStore from("[A]\nk=1\nfile\n");
  MemoryStore to("[B]\n");
  IniFindSection(from, "A");
  EXPECT_TRUE(IniSetSection(to, "A", IniCopySection(from)));
  EXPECT_EQ(to.Close(), "[B]\r\n\r\n[A]\r\nk=1\r\nfile\r\n\r\n");
}

TEST(IniSections, SetTextWithoutFinalEmptyLineTakesKeys) {
  MemoryStore ini("");
  IniSetSection(ini, "A", BlockOf("[A]\nx=9"));
  EXPECT_TRUE(IniAddString(ini, "y", "8"));
  EXPECT_EQ(SectionText(ini), "[A]\nx=9\ny=8\n");
  EXPECT_EQ(ReadOf(ini, "A", "y"), "8");
}

TEST(IniSections, NoBlockLeaksWhateverHappens) {
  const int32_t before = MemHandle::LiveCount();
  {
    MemoryStore ini("[A]\nk=1\n");
    IniSetSection(ini, "A", BlockOf("[A]\n\n"));
    IniSetSection(ini, "B", BlockOf("[B]\n\n"));
    AssertRecorder recorder;
    EXPECT_FALSE(IniSetSection(ini, nullptr, BlockOf("x")));
    EXPECT_FALSE(IniSetSection(nullptr, "A", BlockOf("x")));
  }
  EXPECT_EQ(MemHandle::LiveCount(), before);
}

// Reading keys

TEST(IniKeys, BlanksAroundKeyAndValueAreNoPartOfThem) {
  MemoryStore ini("[A]\n  Key \t=  Value with blanks \t\n");
  EXPECT_EQ(ReadOf(ini, "A", "Key"), "Value with blanks");
}

TEST(IniKeys, AreFoundWithoutRegardToCase) {
  MemoryStore ini("[A]\nProgDir=C:\\Veltrane\n");
  EXPECT_EQ(ReadOf(ini, "A", "progdir"), "C:\\Veltrane");
  EXPECT_EQ(ReadOf(ini, "A", "PROGDIR"), "C:\\Veltrane");
}

TEST(IniKeys, FirstOfSeveralWins) {
  MemoryStore ini("[A]\nk=1\nK=2\n");
  EXPECT_EQ(ReadOf(ini, "A", "K"), "1");
}

TEST(IniKeys, CommentsAndOtherLinesAreNoKeys) {
  MemoryStore ini("[A]\n;k=1\n ; k=2\nk\nk =3\n");
  EXPECT_EQ(ReadOf(ini, "A", "k"), "3");
}

TEST(IniKeys, OfOtherSectionsAreNotSeen) {
  MemoryStore ini("k=0\n[A]\n[B]\nk=1\n");
  EXPECT_EQ(ReadOf(ini, "A", "k"), "-");
}

TEST(IniKeys, EmptyKeyIsAKey) {
  MemoryStore ini("[A]\n=default\n");
  EXPECT_EQ(ReadOf(ini, "A", ""), "default");
}

TEST(IniKeys, WithoutACurrentSectionNothingIsFound) {
  MemoryStore ini("[A]\nk=1\n");
  Str key;
  Str value("kept");
  int32_t number = 7;
  char buffer[8] = "kept";
  EXPECT_FALSE(IniReadStr(ini, "k", value));
  EXPECT_FALSE(IniReadString(ini, "k", buffer, sizeof(buffer)));
  EXPECT_FALSE(IniReadLong(ini, "k", number));
  EXPECT_FALSE(IniNextKey(ini, true, nullptr, key, &value));
  EXPECT_FALSE(IniNextLine(ini, true, key, value));
  EXPECT_FALSE(IniSeekLine(ini, 0));
  EXPECT_FALSE(IniDeleteKey(ini, "k"));
  EXPECT_FALSE(IniWriteString(ini, "k", "2"));
  EXPECT_FALSE(IniAddString(ini, "k", "2"));
  EXPECT_FALSE(IniWriteLong(ini, "k", 2));
  EXPECT_EQ(value, "kept");
  EXPECT_STREQ(buffer, "kept");
  EXPECT_EQ(number, 7);
  EXPECT_EQ(ini.Close(), "[A]\r\nk=1\r\n\r\n");
}

TEST(IniKeys, ReadStringFillsTheBufferAsFarAsItGoes) {
  MemoryStore ini("[A]\nk=abcdef\n");
  IniFindSection(ini, "A");
  char buffer[10] = "#########";
  EXPECT_TRUE(IniReadString(ini, "k", buffer, 4));
  EXPECT_STREQ(buffer, "abc");
  EXPECT_EQ(buffer[4], '#');
  EXPECT_TRUE(IniReadString(ini, "k", buffer, 10));
  EXPECT_STREQ(buffer, "abcdef");
  EXPECT_FALSE(IniReadString(ini, "x", buffer, 10));
  EXPECT_STREQ(buffer, "abcdef");
}

TEST(IniKeys, GetStringUsesTheDefault) {
  MemoryStore ini("[A]\nk=abc\n");
  IniFindSection(ini, "A");
  char buffer[10];
  IniGetString(ini, "k", "default", buffer, 10);
  EXPECT_STREQ(buffer, "abc");
  IniGetString(ini, "x", "default", buffer, 10);
  EXPECT_STREQ(buffer, "default");
  IniGetString(ini, "x", "default", buffer, 4);
  EXPECT_STREQ(buffer, "def");
  IniGetString(ini, "x", nullptr, buffer, 10);
  EXPECT_STREQ(buffer, "");
}

TEST(IniKeys, GetStrUsesTheDefault) {
  MemoryStore ini("[A]\nk=abc\nempty=\n");
  IniFindSection(ini, "A");
  Str value("own");
  IniGetStr(ini, "k", "default", value);
  EXPECT_EQ(value, "abc");
  IniGetStr(ini, "x", "default", value);
  EXPECT_EQ(value, "default");
  IniGetStr(ini, "x", value, value);
  EXPECT_EQ(value, "default");
  IniGetStr(ini, "empty", "default", value);
  EXPECT_EQ(value, "");
  IniGetStr(ini, "x", nullptr, value);
  EXPECT_EQ(value, "");
}

TEST(IniKeys, Longs) {
  MemoryStore ini("[A]\na= -42 x\nb=2147483647\nc=text\n");
  IniFindSection(ini, "A");
  int32_t number = 0;
  EXPECT_TRUE(IniReadLong(ini, "a", number));
  EXPECT_EQ(number, -42);
  EXPECT_TRUE(IniReadLong(ini, "b", number));
  EXPECT_EQ(number, INT32_MAX);
  EXPECT_TRUE(IniReadLong(ini, "c", number));
  EXPECT_EQ(number, 0);
  EXPECT_FALSE(IniReadLong(ini, "d", number));
  IniGetLong(ini, "d", 99, number);
  EXPECT_EQ(number, 99);
  IniGetLong(ini, "a", 99, number);
  EXPECT_EQ(number, -42);
}

TEST(IniKeys, Shorts) {
  MemoryStore ini("[A]\nlow=-32768\nhigh=32767\n");
  IniFindSection(ini, "A");
  int16_t number = 0;
  EXPECT_TRUE(IniReadShort(ini, "low", number));
  EXPECT_EQ(number, -32768);
  EXPECT_TRUE(IniReadShort(ini, "high", number));
  EXPECT_EQ(number, 32767);
  EXPECT_FALSE(IniReadShort(ini, "none", number));
  EXPECT_EQ(number, 32767);
  IniGetShort(ini, "none", -5, number);
  EXPECT_EQ(number, -5);
  IniGetShort(ini, "low", -5, number);
  EXPECT_EQ(number, -32768);
}

TEST(IniKeys, TooLargeShortsAreReportedAndTruncated) {
  MemoryStore ini("[A]\na=70000\nb=-32769\nc=32768\n");
  IniFindSection(ini, "A");
  const struct {
    const char* key;
    int16_t number;
  } rows[] = {{"a", 4464}, {"b", 32767}, {"c", -32768}};
  for (const auto& row : rows) {
    AssertRecorder recorder;
    int16_t number = 0;
    EXPECT_TRUE(IniReadShort(ini, row.key, number));
    EXPECT_EQ(number, row.number);
    EXPECT_EQ(recorder.Only(), "(temp >= SHRT_MIN) && (temp <= SHRT_MAX)");
  }
}

TEST(IniKeys, Bytes) {
  MemoryStore ini("[A]\na=200\nb=513\nc=-1\n");
  IniFindSection(ini, "A");
  uint8_t byte = 7;
  EXPECT_FALSE(IniReadByte(ini, "none", byte));
  EXPECT_EQ(byte, 7);
  EXPECT_TRUE(IniReadByte(ini, "a", byte));
  EXPECT_EQ(byte, 200);
  EXPECT_TRUE(IniReadByte(ini, "b", byte));
  EXPECT_EQ(byte, 1);
  EXPECT_TRUE(IniReadByte(ini, "c", byte));
  EXPECT_EQ(byte, 255);
}

TEST(IniKeys, BytesTooLargeForShortsAreReported) {
  MemoryStore ini("[A]\na=70000\n");
  IniFindSection(ini, "A");
  AssertRecorder recorder;
  uint8_t byte = 7;
  EXPECT_TRUE(IniReadByte(ini, "a", byte));
  EXPECT_EQ(byte, 112);
  EXPECT_EQ(recorder.Only(), "(temp >= SHRT_MIN) && (temp <= SHRT_MAX)");
}

// Enumerating keys

TEST(IniNextKey, GivesTheKeyLinesInOrder) {
  MemoryStore ini("[A]\n; note\nb = 2\nfile line\na=1\n[B]\nc=3\n");
  EXPECT_EQ(Listing(ini), "[A] b=2 a=1 [B] c=3");
}

TEST(IniNextKey, ValueMayBeLeftOut) {
  MemoryStore ini("[A]\na=1\n");
  IniFindSection(ini, "A");
  Str key;
  EXPECT_TRUE(IniNextKey(ini, true, nullptr, key, nullptr));
  EXPECT_EQ(key, "a");
  EXPECT_FALSE(IniNextKey(ini, false, nullptr, key, nullptr));
}

TEST(IniNextKey, WithAPrefix) {
  MemoryStore ini("[A]\nFont1=a\nother=b\nFONT2=c\n");
  IniFindSection(ini, "A");
  Str key;
  Str value;
  Texts all;
  for (bool first = true; IniNextKey(ini, first, "font", key, &value); first = false)
    all.push_back(std::string(key.Chars()) + '=' + value.Chars());
  EXPECT_EQ(all, (Texts{"Font1=a", "FONT2=c"}));
}

TEST(IniNextKey, FirstWithoutFlagFollowsTheHeader) {
  MemoryStore ini("[A]\na=1\nb=2\n");
  IniFindSection(ini, "A");
  Str key;
  EXPECT_TRUE(IniNextKey(ini, false, nullptr, key, nullptr));
  EXPECT_EQ(key, "a");
}

TEST(IniNextKey, GoesOnBehindTheKeyThatWasLookedUp) {
  MemoryStore ini("[A]\na=1\nb=2\nc=3\n");
  IniFindSection(ini, "A");
  Str value;
  Str key;
  EXPECT_TRUE(IniReadStr(ini, "b", value));
  EXPECT_TRUE(IniNextKey(ini, false, nullptr, key, nullptr));
  EXPECT_EQ(key, "c");
}

TEST(IniNextKey, EndsAfterAFailedLookUp) {
  MemoryStore ini("[A]\na=1\nb=2\n");
  IniFindSection(ini, "A");
  Str value;
  Str key;
  EXPECT_FALSE(IniReadStr(ini, "x", value));
  EXPECT_FALSE(IniNextKey(ini, false, nullptr, key, nullptr));
  EXPECT_TRUE(IniNextKey(ini, true, nullptr, key, nullptr));
  EXPECT_EQ(key, "a");
}

TEST(IniNextKey, StaysAtTheEnd) {
  MemoryStore ini("[A]\na=1\n");
  IniFindSection(ini, "A");
  Str key;
  EXPECT_TRUE(IniNextKey(ini, true, nullptr, key, nullptr));
  EXPECT_FALSE(IniNextKey(ini, false, nullptr, key, nullptr));
  EXPECT_FALSE(IniNextKey(ini, false, nullptr, key, nullptr));
}

TEST(IniNextKey, StaysAtTheEndWhenNoKeyHasThePrefix) {
  MemoryStore ini("[A]\na=1\nb=2\n");
  IniFindSection(ini, "A");
  Str key;
  EXPECT_FALSE(IniNextKey(ini, true, "x", key, nullptr));
  EXPECT_FALSE(IniNextKey(ini, false, nullptr, key, nullptr));
}

TEST(IniNextKey, GoesOnAfterTheCurrentKeyWasDeleted) {
  MemoryStore ini("[A]\na=1\nb=2\nc=3\n");
  IniFindSection(ini, "A");
  Str key;
  std::string seen;
  for (bool first = true; IniNextKey(ini, first, nullptr, key, nullptr); first = false) {
    seen += key.Chars();
    EXPECT_TRUE(IniDeleteKey(ini, key));
  }
  EXPECT_EQ(seen, "abc");
  EXPECT_EQ(SectionText(ini), "[A]\n\n");
}

// Lines of scripts

TEST(IniNextLine, GivesEveryLineThatSaysSomething) {
  MemoryStore ini(
      "[A]\n; note\n$task=a,b\n &Nested? \n\t\n  ; k=v\n-HKEY_X\\Key\\\nName=Value\n=v\nEmpty=\n[B]\n");
  IniFindSection(ini, "A");
  Str key;
  Str value;
  Texts all;
  for (bool first = true; IniNextLine(ini, first, key, value); first = false)
    all.push_back(std::string(key.Chars()) + '|' + value.Chars());
  EXPECT_EQ(all, (Texts{"$task|a,b", "&Nested?|", "-HKEY_X\\Key\\|", "Name|Value", "|v", "Empty|"}));
}

TEST(IniNextLine, SharesTheCursorWithKeys) {
  MemoryStore ini("[A]\nfile1\na=1\nfile2\nb=2\n");
  IniFindSection(ini, "A");
  Str key;
  Str value;
  EXPECT_TRUE(IniNextKey(ini, true, nullptr, key, &value));
  EXPECT_TRUE(IniNextLine(ini, false, key, value));
  EXPECT_EQ(key, "file2");
  EXPECT_EQ(value, "");
  EXPECT_TRUE(IniNextKey(ini, false, nullptr, key, &value));
  EXPECT_EQ(key, "b");
}

TEST(IniNextLine, SeekStepsOverLines) {
  MemoryStore ini("[A]\n; note\na=1\nfile\n;\nb=2\n");
  Str key;
  Str value;
  const char* expected[] = {"a", "file", "b"};
  for (int32_t i = 0; i < 3; ++i) {
    EXPECT_TRUE(IniFindSection(ini, "A"));
    EXPECT_TRUE(IniSeekLine(ini, i));
    EXPECT_TRUE(IniNextLine(ini, false, key, value));
    EXPECT_EQ(key, expected[i]);
  }
  EXPECT_TRUE(IniSeekLine(ini, 3));
  EXPECT_FALSE(IniNextLine(ini, false, key, value));
  EXPECT_FALSE(IniSeekLine(ini, 4));
  EXPECT_FALSE(IniNextLine(ini, false, key, value));
}

TEST(IniNextLine, SeekSeesEdits) {
  MemoryStore ini("[A]\na=1\nb=2\n");
  IniFindSection(ini, "A");
  EXPECT_FALSE(IniSeekLine(ini, 3));
  IniAddString(ini, "c", "3");
  EXPECT_TRUE(IniSeekLine(ini, 3));
  IniDeleteKey(ini, "a");
  Str key;
  Str value;
  EXPECT_TRUE(IniSeekLine(ini, 1));
  EXPECT_TRUE(IniNextLine(ini, false, key, value));
  EXPECT_EQ(key, "c");
  IniWriteString(ini, "b", ";");
  EXPECT_TRUE(IniSeekLine(ini, 2));
  EXPECT_FALSE(IniSeekLine(ini, 3));
}

// Writing keys

TEST(IniWrite, NewKeyComesBeforeTheFinalEmptyLine) {
  MemoryStore ini("[A]\na=1\n; note\n[B]\nb=2\n");
  IniFindSection(ini, "A");
  EXPECT_TRUE(IniWriteString(ini, "c", "3"));
  EXPECT_EQ(SectionText(ini), "[A]\na=1\n; note\nc=3\n\n");
  EXPECT_EQ(ini.Close(), "[A]\r\na=1\r\n; note\r\nc=3\r\n\r\n[B]\r\nb=2\r\n\r\n");
}

TEST(IniWrite, ExistingKeyIsReplacedInItsPlace) {
  MemoryStore ini("[A]\na=1\n B = old \nc=3\n");
  IniFindSection(ini, "A");
  EXPECT_TRUE(IniWriteString(ini, "b", "a longer value than before"));
  EXPECT_EQ(SectionText(ini), "[A]\na=1\nb=a longer value than before\nc=3\n\n");
  EXPECT_TRUE(IniWriteString(ini, "b", ""));
  EXPECT_EQ(SectionText(ini), "[A]\na=1\nb=\nc=3\n\n");
}

TEST(IniWrite, OnlyTheFirstOfSeveralIsReplaced) {
  MemoryStore ini("[A]\nk=1\nk=2\n");
  IniFindSection(ini, "A");
  IniWriteString(ini, "k", "3");
  EXPECT_EQ(SectionText(ini), "[A]\nk=3\nk=2\n\n");
}

TEST(IniWrite, AddingDoesNotLookForTheKey) {
  MemoryStore ini("[A]\nk=1\n");
  IniFindSection(ini, "A");
  EXPECT_TRUE(IniAddString(ini, "k", "2"));
  EXPECT_TRUE(IniAddString(ini, "k", "3"));
  EXPECT_EQ(SectionText(ini), "[A]\nk=1\nk=2\nk=3\n\n");
  EXPECT_EQ(ReadOf(ini, "A", "k"), "1");
}

TEST(IniWrite, InvalidKeysAreReportedOnceAndWritten) {
  MemoryStore ini("[A]\n");
  IniFindSection(ini, "A");
  AssertRecorder recorder;
  EXPECT_TRUE(IniWriteString(ini, "two words", "1"));
  EXPECT_TRUE(IniWriteString(ini, "two words", "2"));
  EXPECT_EQ(recorder.Only(), "KeyIsValid(key)");
  EXPECT_TRUE(IniAddString(ini, "a-b", "3"));
  EXPECT_EQ(recorder.Texts(), (Texts{"KeyIsValid(key)", "KeyIsValid(key)"}));
  EXPECT_EQ(SectionText(ini), "[A]\ntwo words=2\na-b=3\n\n");
}

TEST(IniWrite, Numbers) {
  MemoryStore ini("[A]\n");
  IniFindSection(ini, "A");
  EXPECT_TRUE(IniWriteLong(ini, "a", INT32_MIN));
  EXPECT_TRUE(IniWriteLong(ini, "b", 70000));
  EXPECT_TRUE(IniWriteShort(ini, "c", -5));
  EXPECT_TRUE(IniWriteShort(ini, "c", 32767));
  EXPECT_EQ(SectionText(ini), "[A]\na=-2147483648\nb=70000\nc=32767\n\n");
}

TEST(IniWrite, LineEndsCannotBeSmuggledIn) {
  MemoryStore ini("[A]\n");
  IniFindSection(ini, "A");
  EXPECT_TRUE(IniWriteString(ini, "k", "1\n[B]\nx=2"));
  EXPECT_EQ(ini.Close(), "[A]\r\nk=1\r\n\r\n");
}

TEST(IniWrite, DeletingRemovesTheFirstLineOfTheKey) {
  MemoryStore ini("[A]\na=1\nK=2\n;k=x\nk=3\n");
  IniFindSection(ini, "A");
  EXPECT_TRUE(IniDeleteKey(ini, "k"));
  EXPECT_EQ(SectionText(ini), "[A]\na=1\n;k=x\nk=3\n\n");
  EXPECT_TRUE(IniDeleteKey(ini, "k"));
  EXPECT_FALSE(IniDeleteKey(ini, "k"));
  EXPECT_EQ(SectionText(ini), "[A]\na=1\n;k=x\n\n");
}

TEST(IniWrite, EditsLeaveEveryOtherLineUntouched) {
  const std::string text = "stray \n[ A ]\n  x = 1 \n;\tnote\nfile , line\n\ty=2\n[open\nz\n[B]\nx=3\n";
  MemoryStore untouched(text);
  const std::string before = untouched.Close();
  MemoryStore ini(text);
  IniFindSection(ini, "A");
  IniWriteString(ini, "y", "a much longer value");
  IniWriteString(ini, "new", "1");
  IniDeleteKey(ini, "new");
  IniWriteString(ini, "y", "2");
  const std::string after = ini.Close();
  EXPECT_EQ(after, std::string(before).replace(before.find("\ty=2"), 4, "y=2"));
}

// Long lines

TEST(IniLongLines, AreReadAsOneAndCutAt511) {
  const TempDir dir;
  const std::string value(600, 'v');
  const std::string path = dir.Write("a.ini", "[A]\nLong=" + value + "\nNext=1\n");
  const IniStorePtr ini = IniOpen(path.c_str(), true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(ReadOf(ini.get(), "A", "Long"), std::string(511, 'v'));
  EXPECT_EQ(ReadOf(ini.get(), "A", "Next"), "1");
  Str key;
  Str text;
  EXPECT_TRUE(IniNextLine(ini.get(), true, key, text));
  EXPECT_EQ(text.Length(), 511);
  EXPECT_TRUE(IniNextLine(ini.get(), false, key, text));
  EXPECT_EQ(key, "Next");
  EXPECT_TRUE(IniSeekLine(ini.get(), 2));
  EXPECT_FALSE(IniSeekLine(ini.get(), 3));
}

TEST(IniLongLines, EveryWayOfReadingCutsAt511) {
  const TempDir dir;
  const std::string cut(511, 'v');
  const std::string path = dir.Write("a.ini", "[A]\nLong=" + cut + "wx\n");
  const IniStorePtr ini = IniOpen(path.c_str(), true);
  ASSERT_NE(ini, nullptr);
  IniFindSection(ini.get(), "A");
  Str key;
  Str value;
  IniGetStr(ini.get(), "Long", "", value);
  EXPECT_EQ(value.View(), cut);
  char buffer[600];
  EXPECT_TRUE(IniReadString(ini.get(), "Long", buffer, sizeof(buffer)));
  EXPECT_EQ(buffer, cut);
  EXPECT_TRUE(IniNextKey(ini.get(), true, nullptr, key, &value));
  EXPECT_EQ(value.View(), cut);
  EXPECT_FALSE(IniNextKey(ini.get(), false, nullptr, key, &value));
}

TEST(IniLongLines, AreHeldAsTwoLines) {
  const TempDir dir;
  const std::string path = dir.Write("a.ini", "[A]\n" + std::string(600, 'x') + "\n");
  const IniStorePtr ini = IniOpen(path.c_str(), true);
  ASSERT_NE(ini, nullptr);
  EXPECT_TRUE(IniFindSection(ini.get(), "A"));
  EXPECT_EQ(SectionText(ini.get()), "[A]\n" + std::string(511, 'x') + "\n" + std::string(89, 'x') + "\n\n");
}

TEST(IniLongLines, TailIsNeverALineOrAHeader) {
  const TempDir dir;
  // The second piece begins with "[", the third with "k=".
  std::string line = "a=" + std::string(509, 'x') + "[B]" + std::string(508, 'y') + "k=1";
  const std::string path = dir.Write("a.ini", "[A]\n" + line + "\nfile\n");
  const IniStorePtr ini = IniOpen(path.c_str(), true);
  ASSERT_NE(ini, nullptr);
  EXPECT_FALSE(IniFindSection(ini.get(), "B"));
  EXPECT_EQ(ReadOf(ini.get(), "A", "k"), "-");
  EXPECT_EQ(ReadOf(ini.get(), "A", "a").size(), 511u);
  Str key;
  Str value;
  IniFindSection(ini.get(), "A");
  EXPECT_TRUE(IniSeekLine(ini.get(), 1));
  EXPECT_TRUE(IniNextLine(ini.get(), false, key, value));
  EXPECT_EQ(key, "file");
}

TEST(IniLongLines, CommentsStayCommentsToTheirEnd) {
  const TempDir dir;
  const std::string path = dir.Write("a.ini", "[A]\n;" + std::string(510, 'x') + "k=1\nk=2\n");
  const IniStorePtr ini = IniOpen(path.c_str(), true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(ReadOf(ini.get(), "A", "k"), "2");
}

TEST(IniLongLines, KeyOfMoreThan511CharactersIsNoKey) {
  const TempDir dir;
  const std::string path = dir.Write("a.ini", "[A]\n" + std::string(512, 'k') + "=1\n");
  const IniStorePtr ini = IniOpen(path.c_str(), true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Listing(ini.get()), "[A]");
  Str key;
  Str value;
  IniFindSection(ini.get(), "A");
  EXPECT_FALSE(IniNextKey(ini.get(), true, nullptr, key, &value));
}

TEST(IniLongLines, KeyOfMoreThan511CharactersIsCutInAScript) {
  const TempDir dir;
  const std::string path = dir.Write("a.ini", "[A]\n" + std::string(600, 'k') + " = v \nn=1\n");
  const IniStorePtr ini = IniOpen(path.c_str(), true);
  ASSERT_NE(ini, nullptr);
  Str key;
  Str value;
  IniFindSection(ini.get(), "A");
  EXPECT_TRUE(IniNextLine(ini.get(), true, key, value));
  EXPECT_EQ(key.View(), std::string(511, 'k'));
  EXPECT_EQ(value, "v");
  EXPECT_TRUE(IniNextLine(ini.get(), false, key, value));
  EXPECT_EQ(key, "n");
}

TEST(IniLongLines, ReplacingOneTakesItsTailAlong) {
  const TempDir dir;
  const std::string path = dir.Write("a.ini", "[A]\nk=" + std::string(1200, 'x') + "\nn=1\n");
  IniStorePtr ini = IniOpen(path.c_str(), false);
  ASSERT_NE(ini, nullptr);
  IniFindSection(ini.get(), "A");
  EXPECT_TRUE(IniWriteString(ini.get(), "k", "short"));
  EXPECT_EQ(SectionText(ini.get()), "[A]\nk=short\nn=1\n\n");
  EXPECT_EQ(ReadOf(ini.get(), "A", "n"), "1");
}

TEST(IniLongLines, DeletingOneTakesItsTailAlong) {
  const TempDir dir;
  const std::string path = dir.Write("a.ini", "[A]\nk=" + std::string(1200, 'x') + "\nn=1\n");
  IniStorePtr ini = IniOpen(path.c_str(), false);
  ASSERT_NE(ini, nullptr);
  IniFindSection(ini.get(), "A");
  EXPECT_TRUE(IniDeleteKey(ini.get(), "k"));
  EXPECT_EQ(SectionText(ini.get()), "[A]\nn=1\n\n");
}

// Valid names

TEST(KeyIsValid, LettersDigitsAndUnderscores) {
  for (const char* name : {"", "a", "Z9", "_", "Key_1", "\xe9t\xe9", "0"})
    EXPECT_TRUE(KeyIsValid(name)) << name;
  for (const char* name : {" ", "a b", "a-b", "a.b", "a=b", "[a]", ";", "a\\b", "$a", "a\t", "\xab"})
    EXPECT_FALSE(KeyIsValid(name)) << name;
}

// Null arguments

TEST(IniNull, StoresAreReportedByEveryOperation) {
  AssertRecorder recorder;
  Str text;
  char buffer[4] = "";
  int32_t number = 0;
  int16_t small = 0;
  uint8_t byte = 0;
  IniStorePtr none;
  EXPECT_FALSE(IniFindSection(nullptr, "A"));
  EXPECT_FALSE(IniNextSection(nullptr, true, nullptr, text));
  IniDeleteSection(nullptr, "A");
  IniRenameSection(nullptr, "A");
  EXPECT_FALSE(IniCopySection(nullptr).IsValid());
  EXPECT_FALSE(IniNextKey(nullptr, true, nullptr, text, &text));
  EXPECT_FALSE(IniNextLine(nullptr, true, text, text));
  EXPECT_FALSE(IniSeekLine(nullptr, 0));
  EXPECT_FALSE(IniDeleteKey(nullptr, "k"));
  EXPECT_FALSE(IniReadString(nullptr, "k", buffer, 4));
  EXPECT_FALSE(IniReadStr(nullptr, "k", text));
  IniGetString(nullptr, "k", "d", buffer, 4);
  IniGetStr(nullptr, "k", "d", text);
  EXPECT_FALSE(IniReadLong(nullptr, "k", number));
  IniGetLong(nullptr, "k", 1, number);
  EXPECT_FALSE(IniReadShort(nullptr, "k", small));
  IniGetShort(nullptr, "k", 1, small);
  EXPECT_FALSE(IniReadByte(nullptr, "k", byte));
  EXPECT_FALSE(IniWriteString(nullptr, "k", "v"));
  EXPECT_FALSE(IniAddString(nullptr, "k", "v"));
  EXPECT_FALSE(IniWriteLong(nullptr, "k", 1));
  EXPECT_FALSE(IniWriteShort(nullptr, "k", 1));
  EXPECT_FALSE(IniClose(none));
  EXPECT_EQ(recorder.Texts(), Texts(23, "ini"));
  EXPECT_STREQ(buffer, "d");
  EXPECT_EQ(number, 1);
}

TEST(IniNull, NamesAndValuesAreReported) {
  MemoryStore ini("[A]\nk=1\n");
  IniFindSection(ini, "A");
  AssertRecorder recorder;
  Str text;
  HKEY root = nullptr;
  EXPECT_FALSE(IniFindSection(ini, nullptr));
  IniDeleteSection(ini, nullptr);
  IniRenameSection(ini, nullptr);
  EXPECT_FALSE(IniReadStr(ini, nullptr, text));
  EXPECT_FALSE(IniDeleteKey(ini, nullptr));
  EXPECT_FALSE(IniWriteString(ini, nullptr, "v"));
  EXPECT_FALSE(IniWriteString(ini, "k", nullptr));
  EXPECT_FALSE(IniAddString(ini, nullptr, "v"));
  EXPECT_FALSE(IniAddString(ini, "k", nullptr));
  EXPECT_FALSE(IniParsePath(nullptr, root, text));
  EXPECT_EQ(IniOpen(nullptr, true), nullptr);
  EXPECT_FALSE(IniCreate(nullptr));
  EXPECT_FALSE(KeyIsValid(nullptr));
  EXPECT_EQ(recorder.Texts(), (Texts{"section", "section", "section", "key", "key", "key", "value", "key",
                                     "value", "path", "path", "path", "key"}));
  EXPECT_EQ(ini.Close(), "[A]\r\nk=1\r\n\r\n");
}

}  // namespace
