// INI texts in a double-byte code page. These tests need a system whose ANSI code page is the Japanese one;
// test_other_systems.py runs them in such a one.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "ini_support.h"
#include "support/temp_dir.h"

namespace {

class DoubleByte : public testing::Test {
 protected:
  void SetUp() override {
    if (GetACP() != 932) GTEST_SKIP() << "the ANSI code page here is " << GetACP();
  }
};

TEST_F(DoubleByte, SecondHalfThatLooksLikeABracketEndsNoHeader) {
  // 83 5D is one character; its second byte has the code of "]".
  MemoryStore ini("[A]\na=1\n[\x83\x5d\nb=2\n[\x83\x5d]\nc=3\n");
  EXPECT_EQ(Listing(ini), "[A] a=1 [\x83\x5d] c=3");
}

TEST_F(DoubleByte, SecondHalvesHaveNoCase) {
  // 83 41 and 83 61 are two different characters.
  MemoryStore ini("[\x83\x41]\n\x83\x41=1\n\x83\x61=2\n[\x83\x61]\nk=3\n");
  EXPECT_EQ(ReadOf(ini, "\x83\x41", "\x83\x61"), "2");
  EXPECT_EQ(ReadOf(ini, "\x83\x41", "\x83\x41"), "1");
  EXPECT_EQ(ReadOf(ini, "\x83\x61", "K"), "3");
}

TEST_F(DoubleByte, FullWidthLettersHaveCases) {
  MemoryStore ini("[A]\n\x82\x60=1\n");  // full-width A
  EXPECT_EQ(ReadOf(ini, "A", "\x82\x81"), "1");
}

TEST_F(DoubleByte, JapaneseLettersAreValidInNames) {
  EXPECT_TRUE(KeyIsValid("\x83\x41\x8e\xa9_1"));
  EXPECT_FALSE(KeyIsValid("\x81\x40"));  // the wide blank
}

TEST_F(DoubleByte, CharactersAcrossThePiecesOfALongLineAreWhole) {
  const TempDir dir;
  // The 511th byte is the first half of a character.
  const std::string value = std::string(507, 'x') + "\x83\x5c" + "y";
  const std::string path = dir.Write("a.ini", "[A]\nkk=" + value + "\nn=1\n");
  const IniStorePtr ini = IniOpen(path.c_str(), true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(ReadOf(ini.get(), "A", "kk"), value);
  EXPECT_EQ(ReadOf(ini.get(), "A", "n"), "1");
}

}  // namespace
