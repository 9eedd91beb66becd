// The tasks of PostScript and printer fonts, called as the script calls them.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "base/runstate.h"
#include "fonts/atm_fixture.h"
#include "fonts/type1_maker.h"
#include "support/wait.h"
#include "tasks/infproc.h"

namespace {

class AtmTask : public AtmTest {
 protected:
  void SetUp() override {
    AtmTest::SetUp();
    mNew =
        mDir.Write("new\\v.pfb", MakePfb("VeltranePS", "2.0")) + ", " + mDir.Write("new\\v.pfm", MakePfm({}));
    mOldPfb = mDir.Write("old\\v.pfb", MakePfb("VeltranePS", "1.0"));
    mOldPfm = mDir.Write("old\\v.pfm", MakePfm({}));
    AtmTest::InstallFont("Veltrane PS", 0, mOldPfb, mOldPfm);
    mDir.Write("Windows\\Atm.ini", "[Fonts]\r\nVeltrane PS=a,b\r\n");
  }
  int32_t Call(const std::string& key, const std::string& args, int32_t pass = 1) {
    return TaskDispatch(key.c_str(), args.c_str(), &pass);
  }
  std::string Removed() const {
    return "ATM Api: ATMRemoveFont return value = 0.\n    Deleted the font files: " + mOldPfb + ", and " +
           mOldPfm + ".\n";
  }

  std::string mNew;  // the two arguments
  std::string mOldPfb;
  std::string mOldPfm;
};

constexpr char kAnyText[] = "Suppression des polices PostScript de Adobe Type Manager (ATM)\n";
constexpr char kOldText[] = "Suppression des anciennes polices PostScript de Adobe Type Manager (ATM)\n";
constexpr char kNotLoaded[] = "    ATM is not properly loaded. PostScript fonts cannot be removed.\n";

TEST_F(AtmTask, RemovesAFont) {
  EXPECT_EQ(Call("$remove_atm_font", mNew), 1);
  EXPECT_EQ(Log(), kAnyText + Removed());
  EXPECT_FALSE(PathExists(mOldPfb) || PathExists(mOldPfm));
  EXPECT_FALSE(Contains(mDir.Read("Windows\\Atm.ini"), "Veltrane PS"));
}

TEST_F(AtmTask, RemovesAnOldFont) {
  EXPECT_EQ(Call("$remove_old_atm_font", mNew), 1);
  EXPECT_EQ(Log(), kOldText + Removed());
  EXPECT_FALSE(PathExists(mOldPfb) || PathExists(mOldPfm));
}

TEST_F(AtmTask, KeepsANewFont) {
  mDir.Write("old\\v.pfb", MakePfb("VeltranePS", "2.0"));
  EXPECT_EQ(Call("$remove_old_atm_font", mNew), 1);
  EXPECT_TRUE(Contains(Log(), "is either the same as or newer than the one we're attempting to install."));
  EXPECT_TRUE(PathExists(mOldPfb) && PathExists(mOldPfm));
}

TEST_F(AtmTask, ExpandsItsArguments) {
  AppSetVariable("Here", mDir.Join("new").c_str());
  EXPECT_EQ(Call("$remove_old_atm_font", "<Here>\\v.pfb,<Here>\\v.pfm"), 1);
  EXPECT_EQ(Log(), kOldText + Removed());
}

TEST_F(AtmTask, WithoutAtmBothRemovalsLogAndSucceed) {
  Install(nullptr);
  EXPECT_EQ(Call("$remove_atm_font", mNew), 1);
  EXPECT_EQ(Log(), std::string(kAnyText) + kNotLoaded);
  EXPECT_EQ(Call("$remove_old_atm_font", mNew), 1);
  EXPECT_EQ(Log(), std::string(kOldText) + kNotLoaded);
  EXPECT_TRUE(PathExists(mOldPfb));
}

TEST_F(AtmTask, WithAtmNotRunningBothRemovalsLogAndSucceed) {
  Answer("ATM", "loaded", "0");
  EXPECT_EQ(Call("$remove_atm_font", mNew), 1);
  EXPECT_EQ(Log(), std::string(kAnyText) + kNotLoaded);
  EXPECT_EQ(Call("$remove_old_atm_font", mNew), 1);
  EXPECT_EQ(Log(), std::string(kOldText) + kNotLoaded);
}

TEST_F(AtmTask, OneArgumentIsNotEnough) {
  for (const char* task : {"remove_atm_font", "remove_old_atm_font"}) {
    EXPECT_EQ(Call(std::string("$") + task, "C:\\only.pfb"), 1);
    EXPECT_TRUE(
        Contains(Log(), std::string("The arguments for the task ") + task + " in Setup.inf are unknown.\n"));
  }
}

TEST_F(AtmTask, ActsInPass1Only) {
  for (const char* key :
       {"$remove_atm_font", "$remove_old_atm_font", "$atm_fontchange_notify", "$remove_soft_fonts"}) {
    EXPECT_EQ(Call(key, mNew, 0), 1);
    AssertRecorder recorder;
    EXPECT_EQ(TaskDispatch(key, mNew.c_str(), nullptr), 1);
    EXPECT_EQ(recorder.Only(), "data") << key;
  }
  EXPECT_EQ(Log(), "");
  EXPECT_EQ(Calls(), "");
  EXPECT_TRUE(PathExists(mOldPfb));
}

TEST_F(AtmTask, AbsentArgumentsAssert) {
  int32_t pass = 1;
  for (const char* key : {"$remove_atm_font", "$remove_old_atm_font", "$test_ATM_on"}) {
    AssertRecorder recorder;
    EXPECT_EQ(TaskDispatch(key, nullptr, &pass), 1);
    EXPECT_EQ(recorder.Only(), "args") << key;
  }
}

TEST_F(AtmTask, TellsAtmAndEveryWindowOfTheChange) {
  const std::string log = mDir.Join("window.log");
  ChildProcess window(Quoted(HelperPath("stand_in_window.exe")) + " FontWatcher Watcher -hidden -log " +
                      Quoted(log));
  ASSERT_TRUE(WaitUntil([&] { return window.Output().rfind("ready", 0) == 0; }));
  EXPECT_EQ(Call("$atm_fontchange_notify", ""), 1);
  EXPECT_EQ(Calls(),
            "ATMProperlyLoaded\nATMBeginFontChange\nATMForceFontChange\nATMEndFontChange\nATMFinish\n");
  EXPECT_TRUE(WaitUntil([&] { return PathExists(log) && Contains(ReadWholeFile(log), "WM_FONTCHANGE"); }));
}

TEST_F(AtmTask, WithoutAtmTheWindowsAreToldAllTheSame) {
  Install(nullptr);
  const std::string log = mDir.Join("window.log");
  ChildProcess window(Quoted(HelperPath("stand_in_window.exe")) + " FontWatcher Watcher -hidden -log " +
                      Quoted(log));
  ASSERT_TRUE(WaitUntil([&] { return window.Output().rfind("ready", 0) == 0; }));
  EXPECT_EQ(Call("$atm_fontchange_notify", ""), 1);
  EXPECT_TRUE(WaitUntil([&] { return PathExists(log) && Contains(ReadWholeFile(log), "WM_FONTCHANGE"); }));
  EXPECT_EQ(Log(), "");
}

TEST_F(AtmTask, TheAnswerGoesIntoAVariable) {
  EXPECT_EQ(TaskDispatch("$test_ATM_on", " do_atm ", nullptr), 1);
  EXPECT_STREQ(AppGetExpanded("do_atm").Chars(), "1");
  Install(nullptr);
  for (int32_t pass : {0, 1}) {
    AppSetVariable("do_atm", "x");
    EXPECT_EQ(TaskDispatch("$test_ATM_on", "do_atm", &pass), 1);
    EXPECT_STREQ(AppGetExpanded("do_atm").Chars(), "0");
  }
  EXPECT_EQ(Log(), "");
}

TEST_F(AtmTask, TheAnswerNeedsAVariable) {
  for (const char* args : {"", " ", ","}) {
    EXPECT_EQ(TaskDispatch("$test_ATM_on", args, nullptr), 1);
    EXPECT_TRUE(Contains(Log(), "The arguments for the task test_ATM_on in Setup.inf are unknown.\n"))
        << args;
  }
}

// ---- printer soft fonts ----

class SoftFontTask : public FontTest {
 protected:
  void SetUp() override {
    FontTest::SetUp();
    WriteProfileStringA("PrinterPorts", "Veltrane Printer", "HPPCL,LPT9:,15,45");
    WriteProfileStringA("Devices", "Veltrane Printer", "HPPCL,LPT9:");
    WriteProfileStringA("HPPCL,LPT9:", "softfonts", "1");
    WriteProfileStringA("HPPCL,LPT9:", "softfont1", "c:\\vtfont1.sfp");
  }
  void TearDown() override {
    WriteProfileStringA("PrinterPorts", "Veltrane Printer", nullptr);
    WriteProfileStringA("Devices", "Veltrane Printer", nullptr);
    WriteProfileStringA("HPPCL,LPT9:", nullptr, nullptr);
    FontTest::TearDown();
  }
  static UINT Count() { return GetProfileIntA("HPPCL,LPT9:", "softfonts", 77); }
};

TEST_F(SoftFontTask, RemovesWhileRemoving) {
  ::Run().install = false;
  int32_t pass = 1;
  EXPECT_EQ(TaskDispatch("$remove_soft_fonts", "", &pass), 1);
  EXPECT_EQ(Count(), 0u);
  EXPECT_EQ(Log(),
            "  Task_remove_soft_fonts(name: remove_soft_fonts, args: )\n"
            "-WIN.INI [HPPCL,LPT9:] softfont1=c:\\vtfont1.sfp\n+WIN.INI [HPPCL,LPT9:] softfonts=0\n"
            "+WIN.INI [HPPCL,LPT9:] fsvers=1\n");
}

TEST_F(SoftFontTask, OnlyLogsItsEntryWhileInstalling) {
  int32_t pass = 1;
  EXPECT_EQ(TaskDispatch("$remove_soft_fonts", "", &pass), 1);
  EXPECT_EQ(Count(), 1u);
  EXPECT_EQ(Log(), "  Task_remove_soft_fonts(name: remove_soft_fonts, args: )\n");
}

}  // namespace
