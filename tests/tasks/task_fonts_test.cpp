// The TrueType tasks, called as the script calls them.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "base/runstate.h"
#include "fonts/font_fixture.h"
#include "support/process.h"
#include "support/wait.h"
#include "tasks/infproc.h"

namespace {

class FontTask : public FontTest {
 protected:
  int32_t Call(const std::string& key, const std::string& args, int32_t pass = 1) {
    return TaskDispatch(key.c_str(), args.c_str(), &pass);
  }
  // The font folder comes from the system again.
  void ForgetFontFolder() {
    const std::string windows = AppGetExpanded("WinDir").Chars();
    AppVars().Clear();
    AppSetVariable("SetupName", kSetupName);
    AppSetVariable("WinDir", windows.c_str());
  }
  RegistryValueGuard mFolderGuard{HKEY_CURRENT_USER, kShellFolders, "Fonts"};
};

constexpr char kNoFolderToInstall[] =
    "Installation de Veltrane 6.0c ne peut pas installer les polices TrueType car le dossier des polices est "
    "introuvable.";
constexpr char kNoFolderToRemove[] =
    "Installation de Veltrane 6.0c ne peut pas supprimer les polices TrueType car le dossier des polices est "
    "introuvable.";

TEST_F(FontTask, InstallsAFontAndLogsItsEntry) {
  const std::string source = Font("new.ttf");
  const std::string args = source + ", " + InFonts("vt.ttf");
  EXPECT_EQ(Call("$install_tt_font", args), 1);
  EXPECT_EQ(Log(), "  Task_install_tt_font(name: install_tt_font, args: " + args +
                       ")\nInstallation des polices TrueType\n");
  EXPECT_EQ(Listed(kFamily), "vt.ttf");
  EXPECT_TRUE(mDir.Has("new.ttf"));
}

TEST_F(FontTask, ExpandsItsArgumentsOnceMore) {
  Font("new.ttf");
  AppSetVariable("Here", mDir.Path().c_str());
  EXPECT_EQ(Call("$install_tt_font", "<Here>\\new.ttf,<TTSysDir>\\vt.ttf"), 1);
  EXPECT_EQ(Listed(kFamily), "vt.ttf");
}

TEST_F(FontTask, TakesAQuotedSourceWithACommaInIt) {
  const std::string source = Font("new, font.ttf");
  EXPECT_EQ(Call("$install_tt_font", "\"" + source + "\", " + InFonts("vt.ttf")), 1);
  EXPECT_EQ(Listed(kFamily), "vt.ttf");
}

TEST_F(FontTask, DefinesTheFontFolderBeforeTheFirstFont) {
  ForgetFontFolder();
  SetRegistryString(HKEY_CURRENT_USER, kShellFolders, "Fonts", mFonts);
  const std::string source = Font("new.ttf");
  EXPECT_EQ(Call("$install_tt_font", source + ",<TTSysDir>\\vt.ttf"), 1);
  EXPECT_TRUE(Contains(Log(), "    TTSysDir variable defined: " + mFonts + "\n"));
  EXPECT_EQ(Listed(kFamily), "vt.ttf");
  EXPECT_EQ(Call("$remove_font_name", "Veltrane Test,TrueType"), 1);
  EXPECT_FALSE(Contains(Log(), "variable defined"));
}

TEST_F(FontTask, WithoutAFontFolderNothingIsInstalled) {
  ForgetFontFolder();
  SetRegistryString(HKEY_CURRENT_USER, kShellFolders, "Fonts", "");
  const std::string source = Font("new.ttf");
  EXPECT_EQ(Call("$install_tt_font", source + ",C:\\vt.ttf"), 1);
  EXPECT_TRUE(Contains(Log(), kNoFolderToInstall));
  EXPECT_FALSE(PathExists("C:\\vt.ttf"));
  EXPECT_EQ(Listed(kFamily), "none");
}

TEST_F(FontTask, MissingArgumentsAreLogged) {
  EXPECT_EQ(Call("$install_tt_font", ""), 1);
  EXPECT_TRUE(Contains(Log(), "Bad param in InstallTTFont: 'sourcePath' is empty or NULL.\n"));
  EXPECT_EQ(Call("$install_tt_font", "C:\\only.ttf"), 1);
  EXPECT_TRUE(Contains(Log(), "Bad param in InstallTTFont: 'destPath' is empty or NULL.\n"));
  EXPECT_EQ(Call("$remove_tt_font", ""), 1);
  EXPECT_TRUE(Contains(Log(), "Bad param in UninstallTTFont: 'fontPath' is empty\n"));
  EXPECT_EQ(Call("$remove_font_name", ""), 1);
  EXPECT_TRUE(Contains(Log(), "The arguments for the task remove_font_name in Setup.inf are unknown.\n"));
}

TEST_F(FontTask, ActsInPass1Only) {
  const std::string source = Font("new.ttf");
  const std::string args = source + "," + InFonts("vt.ttf");
  for (const char* key :
       {"$install_tt_font", "$remove_tt_font", "$remove_font_name", "$tt_fontchange_notify"}) {
    EXPECT_EQ(Call(key, args, 0), 1);
    EXPECT_EQ(Call(key, args, 2), 1);
    AssertRecorder recorder;
    EXPECT_EQ(TaskDispatch(key, args.c_str(), nullptr), 1);
    EXPECT_EQ(recorder.Only(), "data") << key;
  }
  EXPECT_EQ(Log(), "");
  EXPECT_EQ(Listed(kFamily), "none");
}

TEST_F(FontTask, AbsentArgumentsAssert) {
  int32_t pass = 1;
  for (const char* key : {"$install_tt_font", "$remove_tt_font", "$remove_font_name"}) {
    AssertRecorder recorder;
    EXPECT_EQ(TaskDispatch(key, nullptr, &pass), 1);
    EXPECT_EQ(recorder.Only(), "args") << key;
  }
}

TEST_F(FontTask, RemovesByNameWithItsFile) {
  ASSERT_TRUE(InstallTTFont(Font("new.ttf").c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_EQ(Call("$remove_font_name", " Veltrane Test , TrueType "), 1);
  EXPECT_EQ(Log(), "Suppression des polices TrueType\nSuccessfully removed Veltrane Test from font table\n");
  EXPECT_FALSE(mDir.Has("Fonts\\vt.ttf"));
  EXPECT_EQ(Listed(kFamily), "none");
}

TEST_F(FontTask, RemovesByNameWithoutKind) {
  ASSERT_TRUE(InstallTTFont(Font("new.ttf").c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_EQ(Call("$remove_font_name", "Veltrane Test"), 1);
  EXPECT_FALSE(mDir.Has("Fonts\\vt.ttf"));
}

TEST_F(FontTask, TheFileOfABitmapFontStays) {
  for (const char* kind : {"raster", "bitmap", "Raster", "BITMAP"}) {
    const RegistryValueGuard guard(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Dots (VGA res)");
    SetRegistryString(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Dots (VGA res)", "dots.fon");
    mDir.Write("Fonts\\dots.fon", "bitmap font");
    EXPECT_EQ(Call("$remove_font_name", std::string("Veltrane Dots,") + kind), 1);
    EXPECT_FALSE(RegistryString(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Dots (VGA res)"));
    EXPECT_TRUE(mDir.Has("Fonts\\dots.fon"));
  }
}

TEST_F(FontTask, RemovesByFile) {
  ASSERT_TRUE(InstallTTFont(Font("new.ttf").c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_EQ(Call("$remove_tt_font", "<TTSysDir>\\vt.ttf"), 1);
  EXPECT_EQ(Log(), "Suppression des polices TrueType\nSuccessfully removed Veltrane Test from font table\n");
  EXPECT_FALSE(mDir.Has("Fonts\\vt.ttf"));
}

TEST_F(FontTask, AMissingFontFileIsASuccess) {
  EXPECT_EQ(Call("$remove_tt_font", "<TTSysDir>\\none.ttf"), 1);
  EXPECT_EQ(Log(), "Suppression des polices TrueType\n   UninstallTTFont: font file " + InFonts("none.ttf") +
                       " doesn't exist = Success (nothing to uninstall).\n");
}

TEST_F(FontTask, WithoutAFontFolderNothingIsRemoved) {
  ForgetFontFolder();
  SetRegistryString(HKEY_CURRENT_USER, kShellFolders, "Fonts", "");
  const std::string path = Font("vt.ttf");
  EXPECT_EQ(Call("$remove_tt_font", path), 1);
  EXPECT_TRUE(Contains(Log(), kNoFolderToRemove));
  EXPECT_TRUE(PathExists(path));
  EXPECT_EQ(Call("$remove_font_name", "Veltrane Test,TrueType"), 1);
  EXPECT_TRUE(Contains(Log(), kNoFolderToRemove));
}

TEST_F(FontTask, AFailureDoesNotStopTheScript) {
  const std::string source = mDir.Write("bad.ttf", "no font");
  EXPECT_EQ(Call("$install_tt_font", source + "," + InFonts("bad.ttf")), 1);
  EXPECT_TRUE(Contains(Log(), CannotInstall("bad", source)));
  EXPECT_EQ(Call("$install_tt_font", Font("new.ttf") + "," + InFonts("vt.ttf")), 1);
  EXPECT_EQ(Listed(kFamily), "vt.ttf");
}

TEST_F(FontTask, TellsEveryWindowOfTheChange) {
  const std::string log = mDir.Join("window.log");
  ChildProcess window(Quoted(HelperPath("stand_in_window.exe")) + " FontWatcher Watcher -hidden -log " +
                      Quoted(log));
  ASSERT_TRUE(WaitUntil([&] { return window.Output().rfind("ready", 0) == 0; }));
  EXPECT_EQ(Call("$tt_fontchange_notify", ""), 1);
  EXPECT_TRUE(WaitUntil([&] { return PathExists(log) && Contains(ReadWholeFile(log), "WM_FONTCHANGE"); }));
  int32_t pass = 1;
  EXPECT_EQ(TaskDispatch("$tt_fontchange_notify", nullptr, &pass), 1);
}

}  // namespace
