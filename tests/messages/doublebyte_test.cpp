// Resource texts in a double-byte code page. These tests need a system whose ANSI code page is the Japanese
// one; test_other_systems.py runs them in such a one.
#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <string>

#include "app_vars.h"
#include "base/handle.h"
#include "messages/res.h"
#include "messages/restext.h"
#include "support/library_maker.h"
#include "support/temp_dir.h"

namespace {

// The signs of the western code page that take two bytes in the Japanese one.
constexpr char kTimes[] = "\xd7";            // as the library maker takes it
constexpr char kDoubleTimes[] = "\x81\x7e";  // as the program reads it

class DoubleByte : public AppVarsTest {
 protected:
  void SetUp() override {
    if (GetACP() != 932) GTEST_SKIP() << "the ANSI code page here is " << GetACP();
    AppVarsTest::SetUp();
  }
  void TearDown() override {
    SetProgramModule(nullptr);
    AppVarsTest::TearDown();
  }
  void UseProgram(const std::map<unsigned, std::string>& strings) {
    LibrarySpec spec;
    spec.strings = strings;
    mProgram.Reset(LoadLibraryExA(mDir.Write("program.dll", MakeLibrary(spec)).c_str(), nullptr,
                                  LOAD_LIBRARY_AS_DATAFILE));
    ASSERT_TRUE(mProgram);
    SetProgramModule(mProgram.Get());
  }

 private:
  TempDir mDir;
  ModuleHandle mProgram;
};

TEST_F(DoubleByte, ATextOfOneDoubleByteCharacterExists) {
  UseProgram({{700, kTimes}, {701, std::string("a") + kTimes}});
  Str text;
  EXPECT_FALSE(GetResStr(702, 0, text, 0));
  EXPECT_TRUE(GetResStr(700, 0, text, 0));
  EXPECT_EQ(text, kDoubleTimes);
  EXPECT_EQ(JoinResStrings(700), (std::string(kDoubleTimes) + "a" + kDoubleTimes).c_str());
}

TEST_F(DoubleByte, ALoadedPieceIsCutBetweenCharacters) {
  UseProgram({{700, std::string("ab") + kTimes + kTimes}});
  char buffer[8] = "#######";
  EXPECT_EQ(LoadResString(700, buffer, 6), 4);
  EXPECT_EQ(std::string(buffer), std::string("ab") + kDoubleTimes);
}

TEST_F(DoubleByte, MarksBetweenDoubleByteCharactersAreSeen) {
  const std::string sign = kTimes;
  UseProgram({{700, "!" + sign + "!" + sign + "$5$"}, {3005, "<" + sign + ">"}});
  AppSetVariable(kDoubleTimes, "1");
  Str text;
  EXPECT_TRUE(GetResStr(700, 0, text, kResExpand));
  EXPECT_EQ(text, (std::string(kDoubleTimes) + "1").c_str());
  GetResStrTag(700, 0, text);
  EXPECT_EQ(text, kDoubleTimes);
}

}  // namespace
