#include "ui/help.h"

#include "resources/ids.h"
#include "support/process.h"
#include "ui/help_control.h"
#include "ui/ui_fixture.h"

namespace {

class HelpTest : public UiTest {
 protected:
  void SetUp() override {
    UiTest::SetUp();
    mFile = mDir.Write("setup.chm", "help");
    AppSetVariable("SetupHelpDir", mDir.Path().c_str());
    AppSetVariable("HelpFile", "setup.chm");
  }
  std::string mFile;
  HelpControl mControl{mDir.Join("calls.txt")};
};

TEST_F(HelpTest, TopicOfTheFileInTheHelpFolderIsAskedFor) {
  ShowHelp(nullptr, IDD_MAIN);
  EXPECT_EQ(mControl.Calls(), mFile + "|15|1200\n");
}

TEST_F(HelpTest, EachButtonAsksForItsTopic) {
  ShowHelp(nullptr, IDD_MAIN);
  ShowHelp(nullptr, IDD_OLDVERSION);
  EXPECT_EQ(mControl.Calls(), mFile + "|15|1200\n" + mFile + "|15|2300\n");
}

TEST_F(HelpTest, FullPathInHelpFileStandsAlone) {
  AppSetVariable("SetupHelpDir", "C:\\nowhere");
  AppSetVariable("HelpFile", mFile.c_str());
  EXPECT_EQ(HelpFilePath(), mFile.c_str());
  ShowHelp(nullptr, 1);
  EXPECT_EQ(mControl.Calls(), mFile + "|15|1\n");
}

TEST_F(HelpTest, PlaceholdersInHelpFileAreFilled) {
  AppSetVariable("HelpFile", "<SetupHelpDir>\\setup.chm");
  EXPECT_EQ(HelpFilePath(), mFile.c_str());
}

TEST_F(HelpTest, MissingFileShowsNothing) {
  AppSetVariable("HelpFile", "missing.chm");
  ShowHelp(nullptr, 1);
  EXPECT_EQ(mControl.Calls(), "");
}

TEST_F(HelpTest, UnsetHelpFileShowsNothing) {
  AppVars().Clear();
  EXPECT_TRUE(HelpFilePath().IsEmpty());
  ShowHelp(nullptr, 1);
  EXPECT_EQ(mControl.Calls(), "");
}

TEST_F(HelpTest, SilentRunShowsNothing) {
  BeSilent();
  ShowHelp(nullptr, 1);
  EXPECT_EQ(mControl.Calls(), "");
}

TEST_F(HelpTest, SystemWithoutTheControlShowsNothing) {
  mControl.Remove();
  ShowHelp(nullptr, 1);
  EXPECT_EQ(mControl.Calls(), "");
}

TEST_F(HelpTest, ControlBesideTheProgramIsNotTaken) {
  mControl.Remove();
  const std::string beside = TestFolder() + "\\hhctrl.ocx";
  ASSERT_TRUE(CopyFileA(HelperPath("hhctrl.dll").c_str(), beside.c_str(), TRUE));
  ShowHelp(nullptr, 1);
  EXPECT_EQ(mControl.Calls(), "");
  EXPECT_TRUE(DeleteFileA(beside.c_str()));
}

TEST_F(HelpTest, ClosingClosesTheHelpWindowsOnce) {
  ShowHelp(nullptr, 1);
  mControl.Calls();
  CloseHelp();
  EXPECT_EQ(mControl.Calls(), "-|18|0\n");
  CloseHelp();
  EXPECT_EQ(mControl.Calls(), "");
}

}  // namespace
