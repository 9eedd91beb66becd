#include "ui/langload.h"

#include "support/process.h"
#include "support/registry_guard.h"
#include "ui/langlist.h"
#include "ui/library_fixture.h"

namespace {

const char kProgramText[] = "<SetupName>";

constexpr int32_t kAustrian = 0x0c07;

class LangLoadTest : public LibraryTest {
 protected:
  void SetUp() override {
    LibraryTest::SetUp();
    AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneUiTest");
  }
  void Register(const char* text) {
    SetRegistryString(HKEY_CURRENT_USER, "Software\\VeltraneUiTest\\Config", "AppLang", text);
  }
  // Which library the texts come from: "Lib <file name>", or the program's own text.
  static std::string Speaking() {
    char text[100] = "";
    LoadResString(258, text, sizeof text);
    return text;
  }
  static std::string SysLang() {
    Str value;
    return AppGetVariable("SysLang", value) ? value.Chars() : "(unset)";
  }

  RegistryGuard mGuard{HKEY_CURRENT_USER, "Software\\VeltraneUiTest"};
};

TEST_F(LangLoadTest, NoLanguageCannotBeLoaded) { EXPECT_FALSE(LoadLanguage(kNoLanguage)); }

TEST_F(LangLoadTest, MissingLanguageCannotBeLoaded) {
  EXPECT_FALSE(LoadLanguage(kGerman));
  EXPECT_EQ(GetLanguageModule(), nullptr);
  EXPECT_EQ(SysLang(), "(unset)");
}

TEST_F(LangLoadTest, FileNamedAfterTheLanguageIsLoaded) {
  AddLibrary("VTsu6a.dll", kGerman);
  AddLibrary("VTsu6de.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(Speaking(), "Lib VTsu6de.dll");
  EXPECT_EQ(SysLang(), "de");
  EXPECT_EQ(LoadedLibraryPath(), (mFolder + "\\VTsu6de.dll").c_str());
  FreeLanguageLibrary();
  EXPECT_EQ(LoadedLibraryPath(), "");
}

TEST_F(LangLoadTest, NamedFileOfAnotherSublanguageIsPassedOver) {
  AddLibrary("VTsu6de.dll", kGerman);
  AddLibrary("VTsu6x.dll", kAustrian);
  ASSERT_TRUE(LoadLanguage(kAustrian));
  EXPECT_EQ(Speaking(), "Lib VTsu6x.dll");
  EXPECT_EQ(SysLang(), "de");
}

TEST_F(LangLoadTest, WithoutANamedFileTheFirstOfTheLanguageIsLoaded) {
  AddLibrary("VTsu6a.dll", 0x0409);
  AddLibrary("VTsu6b.dll", kGerman);
  AddLibrary("VTsu6c.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(Speaking(), "Lib VTsu6b.dll");
}

TEST_F(LangLoadTest, ProgramServesItsOwnLanguage) {
  ASSERT_TRUE(LoadLanguage(kOwn));
  EXPECT_EQ(GetLanguageModule(), nullptr);
  EXPECT_EQ(Speaking(), kProgramText);
  EXPECT_EQ(SysLang(), "fr");
  EXPECT_EQ(LoadedLibraryPath(), "");
}

TEST_F(LangLoadTest, LibraryOfTheProgramsLanguageComesBeforeTheProgram) {
  AddLibrary("VTsu6fr.dll", kOwn);
  ASSERT_TRUE(LoadLanguage(kOwn));
  EXPECT_EQ(Speaking(), "Lib VTsu6fr.dll");
}

TEST_F(LangLoadTest, FileThatIsNoLibraryIsPassedOver) {
  WriteWholeFile(mFolder + "\\VTsu6de.dll", "not a library");
  AddLibrary("VTsu6x.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(Speaking(), "Lib VTsu6x.dll");
}

TEST_F(LangLoadTest, NamedFileWithoutAVersionIsLoadedWhenNoOtherIsOfTheLanguage) {
  MakeFileWithoutVersion(mFolder + "\\VTsu6de.dll");
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(Speaking(), "x");
  EXPECT_EQ(SysLang(), "de");
  AddLibrary("VTsu6x.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(Speaking(), "Lib VTsu6x.dll");
}

TEST_F(LangLoadTest, NamedFileOfTwoLanguagesIsNotLoaded) {
  MakeLanguageFile(mFolder + "\\VTsu6de.dll", {kGerman, 0x0410});
  EXPECT_FALSE(LoadLanguage(kGerman));
}

TEST_F(LangLoadTest, NamedFileThatIsNoLibraryIsNotLoaded) {
  WriteWholeFile(mFolder + "\\VTsu6de.dll", "not a library");
  EXPECT_FALSE(LoadLanguage(kGerman));
  WriteWholeFile(mFolder + "\\VTsu6fr.dll", "");
  ASSERT_TRUE(LoadLanguage(kOwn));
  EXPECT_EQ(Speaking(), kProgramText);
}

TEST_F(LangLoadTest, CutLibraryIsNotLoaded) {
  AddLibrary("VTsu6de.dll", kGerman);
  const std::string path = mFolder + "\\VTsu6de.dll";
  const std::string whole = ReadWholeFile(path);
  for (const size_t parts : {2u, 3u, 5u, 8u, 20u}) {
    WriteWholeFile(path, whole.substr(0, whole.size() / parts));
    EXPECT_FALSE(LoadLanguage(kGerman)) << parts;
  }
  WriteWholeFile(path, whole);
  EXPECT_TRUE(LoadLanguage(kGerman));
}

TEST_F(LangLoadTest, StringsThatLeadOutOfADamagedLibraryComeFromTheProgram) {
  AddLibrary("VTsu6de.dll", kGerman);
  const std::string path = mFolder + "\\VTsu6de.dll";
  std::string bytes = ReadWholeFile(path);
  const size_t length = FindWide(bytes, "Lib VTsu6de.dll") - 2;
  bytes[length] = bytes[length + 1] = '\xff';
  WriteWholeFile(path, bytes);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(Speaking(), kProgramText);
  char next[100] = "";
  EXPECT_GT(LoadResString(259, next, sizeof next), 0);
}

TEST_F(LangLoadTest, ShippedLibraryDamagedAnywhereDoesNoHarm) {
  const std::string path = mFolder + "\\VTsu6en.dll";
  const std::string whole = ReadWholeFile(ShippedLibrary("VTsu6en.dll"));
  uint32_t random = 1;
  const auto next = [&random] { return (random = random * 1664525 + 1013904223) >> 8; };
  for (int round = 0; round < 100; ++round) {
    SCOPED_TRACE(round);
    std::string damaged = whole;
    for (int i = 0; i < 300; ++i) damaged[next() % damaged.size()] = static_cast<char>(next());
    WriteWholeFile(path, damaged);
    if (LoadLanguage(0x0409)) Speaking();
    FreeLanguageLibrary();
  }
}

TEST_F(LangLoadTest, LoadingAnotherLanguageFreesTheFormer) {
  AddLibrary("VTsu6de.dll", kGerman);
  AddLibrary("VTsu6en.dll", 0x0409);
  ASSERT_TRUE(LoadLanguage(kGerman));
  ASSERT_TRUE(LoadLanguage(0x0409));
  EXPECT_EQ(Speaking(), "Lib VTsu6en.dll");
  EXPECT_EQ(SysLang(), "en");
  EXPECT_TRUE(DeleteFileA((mFolder + "\\VTsu6de.dll").c_str()));
}

TEST_F(LangLoadTest, FailedLoadKeepsTheFormer) {
  AddLibrary("VTsu6de.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_FALSE(LoadLanguage(0x0410));
  EXPECT_EQ(Speaking(), "Lib VTsu6de.dll");
  EXPECT_EQ(SysLang(), "de");
}

TEST_F(LangLoadTest, FreeingGoesBackToTheProgramsTexts) {
  AddLibrary("VTsu6de.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  FreeLanguageLibrary();
  EXPECT_EQ(GetLanguageModule(), nullptr);
  EXPECT_EQ(Speaking(), kProgramText);
  EXPECT_EQ(Log(), "");
  FreeLanguageLibrary();
  EXPECT_EQ(Log(), "");
}

TEST_F(LangLoadTest, LibraryIsOpenedAsDataOnly) {
  AddLibrary("VTsu6de.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(GetModuleHandleA("VTsu6de.dll"), nullptr);
}

TEST_F(LangLoadTest, LibraryThatCannotBeFreedIsLogged) {
  { CLangLib library(reinterpret_cast<HMODULE>(0x10000), kGerman); }
  EXPECT_EQ(Log(), "CLangLib destructor: couldn't free the language library.\n");
}

TEST_F(LangLoadTest, ProgramsOwnModuleIsNeverFreed) {
  { CLangLib library(GetModuleHandleA(nullptr), kOwn); }
  { CLangLib none; }
  EXPECT_EQ(Log(), "");
}

// ---- the choice ----

class LangChoiceTest : public LangLoadTest {
 protected:
  static int32_t SystemLanguage() { return LOWORD(GetUserDefaultLCID()); }
  static std::string Number(int32_t number) { return std::to_string(number); }
};

TEST_F(LangChoiceTest, AppLangIsLoadedWithoutAList) {
  AddLibrary("VTsu6fr.dll", kFrench);
  AppSetVariable("AppLang", "0x040c,fr");
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(Speaking(), "Lib VTsu6fr.dll");
  EXPECT_EQ(Log(),
            "AppLang from global string list = 0x040c,fr\n"
            "AppLang from registry = \n");
}

TEST_F(LangChoiceTest, RegistryReplacesAppLang) {
  AddLibrary("VTsu6de.dll", kGerman);
  AppSetVariable("AppLang", "0x040c,fr");
  Register("0x0407,de");
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(Speaking(), "Lib VTsu6de.dll");
  EXPECT_EQ(SysLang(), "de");
  EXPECT_EQ(Log(),
            "AppLang from global string list = 0x040c,fr\n"
            "AppLang from registry = 0x0407,de\n");
}

TEST_F(LangChoiceTest, RegistryThatDoesNotParseReplacesNothing) {
  AddLibrary("VTsu6de.dll", kGerman);
  AppSetVariable("AppLang", "0407");
  Register("0x0000,--");
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(Speaking(), "Lib VTsu6de.dll");
  EXPECT_EQ(Log(),
            "AppLang from global string list = 0407\n"
            "AppLang from registry = 0x0000,--\n");
}

TEST_F(LangChoiceTest, RegistryIsNotReadWithoutMachRegKey) {
  AddLibrary("VTsu6de.dll", kGerman);
  Register("0x0409,en");
  AppSetVariable("AppLang", "0x0407,de");
  AppSetVariable("MachRegKey", "");
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(Log(),
            "AppLang from global string list = 0x0407,de\n"
            "AppLang from registry = \n");
}

TEST_F(LangChoiceTest, MissingSublanguageFallsBackToThePrimaryLanguage) {
  AddLibrary("VTsu6aa.dll", 0x0409);
  AddLibrary("VTsu6at.dll", kAustrian);
  AddLibrary("VTsu6de.dll", kGerman);
  AppSetVariable("AppLang", "0x0807,de");
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(Speaking(), "Lib VTsu6at.dll");
  EXPECT_EQ(Log(),
            "AppLang from global string list = 0x0807,de\n"
            "AppLang from registry = \n"
            "No current language\n"
            "Found a bestIndex value = " +
                Number(kAustrian) + "\n");
}

TEST_F(LangChoiceTest, ProgramItselfIsInTheList) {
  AppSetVariable("AppLang", "0x0c0c,fr");
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(Speaking(), kProgramText);
  EXPECT_EQ(Log(),
            "AppLang from global string list = 0x0c0c,fr\n"
            "AppLang from registry = \n"
            "No current language\n"
            "Found a bestIndex value = " +
                Number(kFrench) + "\n");
}

TEST_F(LangChoiceTest, SystemLanguageWhenNothingWasAskedFor) {
  AddLibrary("VTsu6sys.dll", static_cast<uint16_t>(SystemLanguage()));
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(Speaking(), "Lib VTsu6sys.dll");
  EXPECT_EQ(Log(),
            "AppLang from global string list = \n"
            "AppLang from registry = \n"
            "No current language\n"
            "No language found in list\n"
            "System language = " +
                Number(SystemLanguage()) + "\n");
}

TEST_F(LangChoiceTest, SystemLanguageWhenTheWantedOneIsInNoList) {
  AddLibrary("VTsu6sys.dll", static_cast<uint16_t>(SystemLanguage()));
  AppSetVariable("AppLang", "0x0411,ja");
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(Speaking(), "Lib VTsu6sys.dll");
}

TEST_F(LangChoiceTest, BuiltInLanguageWhenAllElseFails) {
  ASSERT_NE(SystemLanguage(), kOwn);
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(Speaking(), kProgramText);
  EXPECT_EQ(SysLang(), "fr");
  EXPECT_EQ(Log(),
            "AppLang from global string list = \n"
            "AppLang from registry = \n"
            "No current language\n"
            "No language found in list\n"
            "System language = " +
                Number(SystemLanguage()) +
                "\n"
                "System language failed, using built-in!\n");
}

TEST_F(LangChoiceTest, LibraryOfTwoLanguagesIsNoChoice) {
  AppSetVariable("AppLang", "0x0407,de");
  MakeLanguageFile(mFolder + "\\VTsu6de.dll", {kGerman, kFrench});
  AssertRecorder recorder;
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(recorder.Only(), kSeveral);
  EXPECT_EQ(Speaking(), kProgramText);
}

// Run by the next test, in a copy of this program that has no language of its own.
TEST_F(LangChoiceTest, DISABLED_ChildWithoutALanguage) {
  AssertRecorder recorder;
  EXPECT_FALSE(ChooseAndLoadLanguage());
  ASSERT_FALSE(recorder.Texts().empty());
  for (const std::string& text : recorder.Texts()) EXPECT_EQ(text, kSeveral);
  EXPECT_EQ(GetLanguageModule(), nullptr);
  EXPECT_EQ(SysLang(), "(unset)");
  const std::string log = Log();
  const std::string end = "System language failed, using built-in!\n";
  ASSERT_GT(log.size(), end.size());
  EXPECT_EQ(log.substr(log.size() - end.size()), end);
}

TEST_F(LangChoiceTest, ChoiceFailsWhenTheProgramHasNoLanguageEither) {
  char own[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, own, sizeof own);
  std::string bytes = ReadWholeFile(own);
  bytes[FindWide(bytes, "Translation") - 4] = 0;
  const std::string child = mDir.Join("child.exe");
  WriteWholeFile(child, bytes);
  const ProcessResult result = RunProcess(
      Quoted(child) +
      " --gtest_also_run_disabled_tests --gtest_filter=LangChoiceTest.DISABLED_ChildWithoutALanguage");
  EXPECT_EQ(result.exitCode, 0u) << result.output;
  EXPECT_NE(result.output.find("[  PASSED  ] 1 test."), std::string::npos) << result.output;
}

TEST_F(LangChoiceTest, ShippedLibrariesServeTheirLanguages) {
  for (const char* name : {"VTsu6fr.dll", "VTsu6en.dll"})
    WriteWholeFile(mFolder + "\\" + name, ReadWholeFile(ShippedLibrary(name)));
  AppSetVariable("AppLang", "0x0409,en");
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(SysLang(), "en");
  EXPECT_EQ(ListLanguages(mFolder.c_str()), (std::vector<int32_t>{0x0409, 0x040c}));
  AppSetVariable("AppLang", "0x040c,fr");
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(SysLang(), "fr");
}

}  // namespace
