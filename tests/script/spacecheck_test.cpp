#include "script_fixture.h"

namespace {

class SpaceCheck : public ScriptTest {
 protected:
  // More than any disk has.
  static void ListTooMuch(const char* folder) {
    for (int i = 0; i < 1100; ++i)
      AddFile((std::string("big") + std::to_string(i)).c_str(), folder, "C:\\s\\a", 1, 0xFFFFFFFF, false);
  }
};

TEST_F(SpaceCheck, AnEmptyListNeedsNothing) {
  EXPECT_TRUE(CheckSpace());
  EXPECT_EQ(Log(), "");
}

TEST_F(SpaceCheck, AVolumeWithoutBytesNeedsTheMargin) {
  AddFile("a", "C:\\d", "C:\\s\\a", 1, 0, false);
  EXPECT_TRUE(CheckSpace());
  const std::string log = Log();
  EXPECT_TRUE(Holds(log, "Volume C:... ")) << log;
  EXPECT_TRUE(Holds(log, " KBytes available; 2000 KBytes needed.\n")) << log;
}

TEST_F(SpaceCheck, SizesAreSummedPerVolumeInAnyCase) {
  AddFile("a", "C:\\d", "C:\\s\\a", 1, 1024 * 3, false);
  AddFile("b", "c:\\e", "C:\\s\\a", 1, 1023, false);
  AddFile("c", "C:\\", "C:\\s\\a", 1, 1, false);
  EXPECT_TRUE(CheckSpace());
  EXPECT_TRUE(Holds(Log(), " 2004 KBytes needed.\n"));
}

TEST_F(SpaceCheck, AFileWithoutAFolderCountsForTheWindowsVolume) {
  AppSetVariable("WinDir", "C:\\windows");
  AddFile("a", "", "C:\\s\\a", 1, 1024, false);
  EXPECT_TRUE(CheckSpace());
  EXPECT_TRUE(Holds(Log(), "Volume C:... "));
}

TEST_F(SpaceCheck, SumsBeyond32BitsAreNotCut) {
  BeSilent();
  ListTooMuch("C:\\d");
  EXPECT_TRUE(CheckSpace());
  // 1100 * (4 GB - 1 byte) in KB, rounded down, and the margin
  EXPECT_TRUE(Holds(Log(), " 4613736398 KBytes needed.\n"));
}

TEST_F(SpaceCheck, SilentRunsGoOnWithoutRoom) {
  BeSilent();
  ListTooMuch("C:\\d");
  EXPECT_TRUE(CheckSpace());
  EXPECT_FALSE(::Run().abort);
  const std::string log = Log();
  EXPECT_TRUE(Holds(log, "Espace insuffisant dans C: pour l'installation de Veltrane.")) << log;
  EXPECT_TRUE(Holds(log,
                    "\t4613736398Ko n\xe9"
                    "cessaires."))
      << log;
  EXPECT_TRUE(Holds(log, ": [OK]\n")) << log;
}

TEST_F(SpaceCheck, TheUserMayGoOnWithoutRoom) {
  ListTooMuch("C:\\d");
  {
    Answerer ok("Setup", [](HWND box) { Press(box, IDOK); });
    EXPECT_TRUE(CheckSpace());
  }
  EXPECT_FALSE(::Run().abort);
}

TEST_F(SpaceCheck, CancelSetsTheAbortFlag) {
  ListTooMuch("C:\\d");
  {
    Answerer cancel("Setup", [](HWND box) { Press(box, IDCANCEL); });
    EXPECT_FALSE(CheckSpace());
  }
  EXPECT_TRUE(::Run().abort);
  EXPECT_TRUE(Holds(Log(), ": [Cancel]\n"));
}

TEST_F(SpaceCheck, AVolumeThatCannotBeAskedHasNoRoom) {
  BeSilent();
  AddFile("a", "Q:\\d", "C:\\s\\a", 1, 1024, false);
  EXPECT_TRUE(CheckSpace());
  const std::string log = Log();
  EXPECT_TRUE(Holds(log, "Volume Q:... 0 KBytes available; 2001 KBytes needed.\n")) << log;
  EXPECT_TRUE(Holds(log, ": [OK]\n")) << log;
}

TEST_F(SpaceCheck, Windows9xSkipsAVolumeThatCannotBeAsked) {
  ::Run().platformFlags = kPlatformWin9x;
  AddFile("a", "Q:\\d", "C:\\s\\a", 1, 1024, false);
  AddFile("b", "C:\\d", "C:\\s\\a", 1, 1024, false);
  EXPECT_TRUE(CheckSpace());
  const std::string log = Log();
  EXPECT_TRUE(
      Holds(log,
            "Installation de Veltrane 6.0c can't get volume information for Q:\\ because of a bug in Win95. "
            "Skipping space-available tests.\n"))
      << log;
  EXPECT_FALSE(Holds(log, "Volume Q:"));
  EXPECT_TRUE(Holds(log, "Volume C:"));
}

}  // namespace
