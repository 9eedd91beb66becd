#include "ui/langlist.h"

#include "platform/fs.h"
#include "support/process.h"
#include "support/registry_guard.h"
#include "ui/answerer.h"
#include "ui/language_file.h"
#include "ui/ui_fixture.h"

namespace {

const char kSeveral[] = "Version resource contains more than one language.";
constexpr int32_t kFrench = 0x040c;
constexpr int32_t kSwissFrench = 0x100c;
constexpr int32_t kCanadianFrench = 0x0c0c;
constexpr int32_t kGerman = 0x0407;
constexpr int32_t kAustrian = 0x0c07;

// The test program's own language, as the setup program's.
constexpr int32_t kOwn = kFrench;

// ---- identifiers ----

struct ParseRow {
  const char* text;
  int32_t language;
};

class ParseTest : public testing::TestWithParam<ParseRow> {};

TEST_P(ParseTest, HexadecimalNumberAtTheStart) {
  EXPECT_EQ(ParseLanguage(GetParam().text), GetParam().language)
      << (GetParam().text ? GetParam().text : "null");
}

INSTANTIATE_TEST_SUITE_P(LanguageText, ParseTest,
                         testing::Values(ParseRow{"0x040c,fr", 0x040c}, ParseRow{"0x040C,fr", 0x040c},
                                         ParseRow{"0X040c", 0x040c}, ParseRow{"040c,fr", 0x040c},
                                         ParseRow{"409", 0x0409}, ParseRow{"0x409 and more", 0x0409},
                                         ParseRow{"0x0409g", 0x0409}, ParseRow{"ffff", 0xffff},
                                         ParseRow{"", kNoLanguage}, ParseRow{nullptr, kNoLanguage},
                                         ParseRow{"0", kNoLanguage}, ParseRow{"0x0000,xx", kNoLanguage},
                                         ParseRow{"0x", kNoLanguage}, ParseRow{"fr", 0x000f},
                                         ParseRow{",0409", kNoLanguage}, ParseRow{" 0409", kNoLanguage},
                                         ParseRow{"x409", kNoLanguage}, ParseRow{"10000", kNoLanguage},
                                         ParseRow{"0xffffffffffffffffff", kNoLanguage}));

class LangListTest : public UiTest {
 protected:
  void SetUp() override {
    UiTest::SetUp();
    mFolder = mDir.MakeFolder("libs");
    AppSetVariable("CurrDir", mFolder.c_str());
    AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneUiTest");
  }
  void Register(const char* text) {
    SetRegistryString(HKEY_CURRENT_USER, "Software\\VeltraneUiTest\\Config", "AppLang", text);
  }
  // A library of one language in the folder; its string 258 is "Lib <file name>".
  void AddLibrary(const std::string& name, uint16_t language) {
    MakeLanguageFile(mFolder + "\\" + name, {language}, {{258, "Lib " + name}});
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
  std::vector<int32_t> List() { return ListLanguages(mFolder.c_str()); }
  std::vector<int32_t> ListProduct(const char* pattern) {
    return ListProductLanguages(mFolder.c_str(), pattern);
  }

  std::string mFolder;
  RegistryGuard mGuard{HKEY_CURRENT_USER, "Software\\VeltraneUiTest"};
};

const char kProgramText[] = "<SetupName>";

TEST_F(LangListTest, TextFormHasFourDigitsAndTheAbbreviation) {
  EXPECT_EQ(LanguageText(0x040c), "0x040c,fr");
  EXPECT_EQ(LanguageText(0x0409), "0x0409,en");
  EXPECT_EQ(LanguageText(0x0c07), "0x0c07,de");
}

TEST_F(LangListTest, AbbreviationIsLowerCaseIso639) {
  EXPECT_EQ(LanguageAbbreviation(0x040c), "fr");
  EXPECT_EQ(LanguageAbbreviation(0x0411), "ja");
  EXPECT_EQ(Log(), "");
}

TEST_F(LangListTest, LanguageUnknownToWindowsHasNoAbbreviationAndIsLogged) {
  EXPECT_TRUE(LanguageAbbreviation(0x03ff).IsEmpty());
  const std::string log = Log();
  EXPECT_EQ(log.find("App::GetLocaleInfoW(): GetLocaleInfoA failed. GetLastError = "), 0u) << log;
  const std::string end = ", locale = 1023\n";
  ASSERT_GT(log.size(), end.size());
  EXPECT_EQ(log.substr(log.size() - end.size()), end);
}

// ---- best index ----

TEST(BestIndexTest, NoWishHasNoIndex) { EXPECT_EQ(BestIndex({kFrench, kGerman}, kNoLanguage), -1); }

TEST(BestIndexTest, EqualEntryComesBeforeTheSamePrimaryLanguage) {
  EXPECT_EQ(BestIndex({kCanadianFrench, kGerman, kFrench}, kFrench), 2);
}

TEST(BestIndexTest, FirstEntryOfTheSamePrimaryLanguage) {
  EXPECT_EQ(BestIndex({kGerman, kCanadianFrench, kFrench}, kSwissFrench), 1);
}

TEST(BestIndexTest, OtherLanguagesHaveNoIndex) { EXPECT_EQ(BestIndex({kFrench, 0x0409}, kGerman), -1); }

TEST(BestIndexTest, EmptyListHasNoIndex) { EXPECT_EQ(BestIndex({}, kFrench), -1); }

// ---- prefixes ----

TEST_F(LangListTest, PrefixOfTheSetupsLibraries) { EXPECT_EQ(LibraryPrefix(false), "VTsu6"); }

TEST_F(LangListTest, PrefixOfTheProductsLibraries) { EXPECT_EQ(LibraryPrefix(true), "VT6"); }

TEST_F(LangListTest, PrefixWithoutShortAppKeyAsserts) {
  AppVars().Clear();
  AppSetVariable("MajVersion", "6");
  AssertRecorder recorder;
  EXPECT_TRUE(LibraryPrefix(false).IsEmpty());
  EXPECT_EQ(recorder.Only(), "prefix[0] != '<'");
}

TEST_F(LangListTest, PrefixWithoutMajVersionAsserts) {
  AppVars().Clear();
  AppSetVariable("ShortAppKey", "VT");
  AssertRecorder recorder;
  EXPECT_TRUE(LibraryPrefix(true).IsEmpty());
  EXPECT_EQ(recorder.Only(), "prefix[prefix.Length() - 1] != '>'");
}

TEST_F(LangListTest, PrefixOfTwoCharactersAsserts) {
  AppVars().Clear();
  AppSetVariable("ShortAppKey", "V");
  AppSetVariable("MajVersion", "6");
  AssertRecorder recorder;
  EXPECT_TRUE(LibraryPrefix(true).IsEmpty());
  EXPECT_EQ(recorder.Only(), "prefix.Length() > 2");
}

TEST_F(LangListTest, UnusablePrefixListsOnlyTheProgram) {
  AddLibrary("VTsu6de.dll", kGerman);
  AppVars().Clear();
  AssertRecorder recorder;
  EXPECT_EQ(List(), std::vector<int32_t>{kOwn});
  EXPECT_EQ(recorder.Texts().size(), 2u);  // begins with "<" and ends with ">"
}

// ---- language of a module ----

TEST_F(LangListTest, LanguageOfAFileIsItsOnlyTranslation) {
  AddLibrary("VTsu6de.dll", kGerman);
  EXPECT_EQ(ModuleLanguage((mFolder + "\\VTsu6de.dll").c_str()), kGerman);
}

TEST_F(LangListTest, LanguageOfTheProgram) { EXPECT_EQ(ModuleLanguage(nullptr), kOwn); }

TEST_F(LangListTest, TwoTranslationsAssertAndAreNoLanguage) {
  const std::string path = mFolder + "\\two.dll";
  MakeLanguageFile(path, {0x040c, 0x0409});
  AssertRecorder recorder;
  EXPECT_EQ(ModuleLanguage(path.c_str()), kNoLanguage);
  EXPECT_EQ(recorder.Only(), kSeveral);
}

TEST_F(LangListTest, NoTranslationAssertsAndIsNoLanguage) {
  const std::string path = mFolder + "\\none.dll";
  MakeFileWithoutTranslation(path);
  AssertRecorder recorder;
  EXPECT_EQ(ModuleLanguage(path.c_str()), kNoLanguage);
  EXPECT_EQ(recorder.Only(), kSeveral);
}

TEST_F(LangListTest, EmptyTranslationAssertsAndIsNoLanguage) {
  const std::string path = mFolder + "\\empty.dll";
  MakeFileWithEmptyTranslation(path);
  AssertRecorder recorder;
  EXPECT_EQ(ModuleLanguage(path.c_str()), kNoLanguage);
  EXPECT_EQ(recorder.Only(), kSeveral);
}

TEST_F(LangListTest, NoVersionResourceAssertsAndIsNoLanguage) {
  const std::string path = mFolder + "\\bare.dll";
  MakeFileWithoutVersion(path);
  AssertRecorder recorder;
  EXPECT_EQ(ModuleLanguage(path.c_str()), kNoLanguage);
  EXPECT_EQ(recorder.Only(), kSeveral);
}

// ---- the list ----

TEST_F(LangListTest, EmptyFolderListsTheProgram) { EXPECT_EQ(List(), std::vector<int32_t>{kOwn}); }

TEST_F(LangListTest, MissingFolderListsTheProgram) {
  EXPECT_EQ(ListLanguages(mDir.Join("missing").c_str()), std::vector<int32_t>{kOwn});
}

TEST_F(LangListTest, LibrariesAreListedBeforeTheProgram) {
  AddLibrary("VTsu6de.dll", kGerman);
  AddLibrary("VTsu6en.dll", 0x0409);
  EXPECT_EQ(List(), (std::vector<int32_t>{kGerman, 0x0409, kOwn}));
}

TEST_F(LangListTest, EachLanguageIsListedOnce) {
  AddLibrary("VTsu6a.dll", kGerman);
  AddLibrary("VTsu6b.dll", kGerman);
  AddLibrary("VTsu6c.dll", kOwn);
  EXPECT_EQ(List(), (std::vector<int32_t>{kGerman, kOwn}));
}

TEST_F(LangListTest, NamesCountWithoutRegardToCase) {
  AddLibrary("vtSU6de.DLL", kGerman);
  EXPECT_EQ(List(), (std::vector<int32_t>{kGerman, kOwn}));
}

TEST_F(LangListTest, OtherFilesAreNotListed) {
  AddLibrary("VT6de.dll", kGerman);
  AddLibrary("VTsu5de.dll", kGerman);
  AddLibrary("xVTsu6de.dll", kGerman);
  AddLibrary("VTsu6de.dl", kGerman);
  AddLibrary("VTsu6de.dll.bak", kGerman);
  mDir.MakeFolder("libs\\VTsu6dir.dll");
  mDir.MakeFolder("libs\\sub");
  AddLibrary("sub\\VTsu6de.dll", kGerman);
  EXPECT_EQ(List(), std::vector<int32_t>{kOwn});
}

TEST_F(LangListTest, ProductsLibrariesHaveTheirOwnPrefix) {
  AddLibrary("VT6de.dll", kGerman);
  AddLibrary("VTsu6en.dll", 0x0409);
  EXPECT_EQ(ListProduct(""), (std::vector<int32_t>{kGerman, kOwn}));
}

TEST_F(LangListTest, PatternRestrictsTheFiles) {
  AddLibrary("VT6de.dll", kGerman);
  AddLibrary("VT6en.dll", 0x0409);
  EXPECT_EQ(ListProduct("vt6D*.dll"), (std::vector<int32_t>{kGerman, kOwn}));
  EXPECT_EQ(ListProduct("VT6??.dll"), (std::vector<int32_t>{kGerman, 0x0409, kOwn}));
  EXPECT_EQ(ListProduct("*"), (std::vector<int32_t>{kGerman, 0x0409, kOwn}));
  EXPECT_EQ(ListProduct("*n.d*l"), (std::vector<int32_t>{0x0409, kOwn}));
  EXPECT_EQ(ListProduct("VT6?.dll"), std::vector<int32_t>{kOwn});
  EXPECT_EQ(ListProduct("VT6de.dl"), std::vector<int32_t>{kOwn});
}

TEST_F(LangListTest, BeginningWithoutAWildcardStandsForAllSuchNames) {
  AddLibrary("VT6de.dll", kGerman);
  AddLibrary("VT7en.dll", 0x0409);
  EXPECT_EQ(ListProduct("VT6"), (std::vector<int32_t>{kGerman, kOwn}));
  EXPECT_EQ(ListProduct("VT"), (std::vector<int32_t>{kGerman, 0x0409, kOwn}));
  EXPECT_EQ(ListProduct("VT6de.dll"), (std::vector<int32_t>{kGerman, kOwn}));
}

TEST_F(LangListTest, PatternOfItsOwnTakesThePlaceOfTheProductsPrefix) {
  AddLibrary("VT6de.dll", kGerman);
  AddLibrary("VTsu6de.dll", kGerman);
  AddLibrary("Menus-en.dll", 0x0409);
  AddLibrary("Menus-it.txt", 0x0410);
  EXPECT_EQ(ListProduct("menus-*.dll"), (std::vector<int32_t>{0x0409, kOwn}));
  EXPECT_EQ(ListProduct("Menus*"), (std::vector<int32_t>{0x0409, kOwn}));
  EXPECT_EQ(ListProduct("*-en.dll"), std::vector<int32_t>{kOwn});
}

TEST_F(LangListTest, LibraryOfTwoLanguagesIsNotListed) {
  AddLibrary("VTsu6de.dll", kGerman);
  MakeLanguageFile(mFolder + "\\VTsu6two.dll", {0x0409, 0x0410});
  AssertRecorder recorder;
  EXPECT_EQ(List(), (std::vector<int32_t>{kGerman, kOwn}));
  EXPECT_EQ(recorder.Only(), kSeveral);
}

TEST_F(LangListTest, RelativeFolderAsserts) {
  Str former;
  ASSERT_TRUE(FS::GetCurDir(former));
  ASSERT_TRUE(FS::SetCurDir(mDir.Path().c_str()));
  AddLibrary("VTsu6de.dll", kGerman);
  {
    AssertRecorder recorder;
    EXPECT_EQ(ListLanguages("libs"), std::vector<int32_t>{kOwn});
    EXPECT_EQ(recorder.Only(), "langLibPath.IsFullPath()");
  }
  EXPECT_TRUE(FS::SetCurDir(former));
}

// ---- loading ----

TEST_F(LangListTest, NoLanguageCannotBeLoaded) { EXPECT_FALSE(LoadLanguage(kNoLanguage)); }

TEST_F(LangListTest, MissingLanguageCannotBeLoaded) {
  EXPECT_FALSE(LoadLanguage(kGerman));
  EXPECT_EQ(GetLanguageModule(), nullptr);
  EXPECT_EQ(SysLang(), "(unset)");
}

TEST_F(LangListTest, FileNamedAfterTheLanguageIsLoaded) {
  AddLibrary("VTsu6a.dll", kGerman);
  AddLibrary("VTsu6de.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(Speaking(), "Lib VTsu6de.dll");
  EXPECT_EQ(SysLang(), "de");
  EXPECT_EQ(LoadedLibraryPath(), (mFolder + "\\VTsu6de.dll").c_str());
  FreeLanguageLibrary();
  EXPECT_EQ(LoadedLibraryPath(), "");
}

TEST_F(LangListTest, NamedFileOfAnotherSublanguageIsPassedOver) {
  AddLibrary("VTsu6de.dll", kGerman);
  AddLibrary("VTsu6x.dll", kAustrian);
  ASSERT_TRUE(LoadLanguage(kAustrian));
  EXPECT_EQ(Speaking(), "Lib VTsu6x.dll");
  EXPECT_EQ(SysLang(), "de");
}

TEST_F(LangListTest, WithoutANamedFileTheFirstOfTheLanguageIsLoaded) {
  AddLibrary("VTsu6a.dll", 0x0409);
  AddLibrary("VTsu6b.dll", kGerman);
  AddLibrary("VTsu6c.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(Speaking(), "Lib VTsu6b.dll");
}

TEST_F(LangListTest, ProgramServesItsOwnLanguage) {
  ASSERT_TRUE(LoadLanguage(kOwn));
  EXPECT_EQ(GetLanguageModule(), nullptr);
  EXPECT_EQ(Speaking(), kProgramText);
  EXPECT_EQ(SysLang(), "fr");
  EXPECT_EQ(LoadedLibraryPath(), "");
}

TEST_F(LangListTest, LibraryOfTheProgramsLanguageComesBeforeTheProgram) {
  AddLibrary("VTsu6fr.dll", kOwn);
  ASSERT_TRUE(LoadLanguage(kOwn));
  EXPECT_EQ(Speaking(), "Lib VTsu6fr.dll");
}

TEST_F(LangListTest, FileThatIsNoLibraryIsPassedOver) {
  WriteWholeFile(mFolder + "\\VTsu6de.dll", "not a library");
  AddLibrary("VTsu6x.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(Speaking(), "Lib VTsu6x.dll");
}

TEST_F(LangListTest, NamedFileWithoutAVersionIsLoadedWhenNoOtherIsOfTheLanguage) {
  MakeFileWithoutVersion(mFolder + "\\VTsu6de.dll");
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(Speaking(), "x");
  EXPECT_EQ(SysLang(), "de");
  AddLibrary("VTsu6x.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(Speaking(), "Lib VTsu6x.dll");
}

TEST_F(LangListTest, NamedFileOfTwoLanguagesIsNotLoaded) {
  MakeLanguageFile(mFolder + "\\VTsu6de.dll", {kGerman, 0x0410});
  EXPECT_FALSE(LoadLanguage(kGerman));
}

TEST_F(LangListTest, NamedFileThatIsNoLibraryIsNotLoaded) {
  WriteWholeFile(mFolder + "\\VTsu6de.dll", "not a library");
  EXPECT_FALSE(LoadLanguage(kGerman));
  WriteWholeFile(mFolder + "\\VTsu6fr.dll", "");
  ASSERT_TRUE(LoadLanguage(kOwn));
  EXPECT_EQ(Speaking(), kProgramText);
}

TEST_F(LangListTest, CutLibraryIsNotLoaded) {
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

TEST_F(LangListTest, StringsThatLeadOutOfADamagedLibraryComeFromTheProgram) {
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

TEST_F(LangListTest, DamagedLibraryIsNamedInTheLog) {
  AddLibrary("VTsu6de.dll", kGerman);
  const std::string path = mFolder + "\\VTsu6de.dll";
  const std::string whole = ReadWholeFile(path);
  WriteWholeFile(path, whole.substr(0, whole.size() - 300));
  AssertRecorder recorder;
  EXPECT_EQ(List(), std::vector<int32_t>{kOwn});
  EXPECT_EQ(recorder.Only(), kSeveral);
  EXPECT_NE(Log().find("##ERROR: " + path + " is damaged; no language is read from it.\n"),
            std::string::npos);
}

TEST_F(LangListTest, ShippedLibraryDamagedAnywhereDoesNoHarm) {
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

TEST_F(LangListTest, LoadingAnotherLanguageFreesTheFormer) {
  AddLibrary("VTsu6de.dll", kGerman);
  AddLibrary("VTsu6en.dll", 0x0409);
  ASSERT_TRUE(LoadLanguage(kGerman));
  ASSERT_TRUE(LoadLanguage(0x0409));
  EXPECT_EQ(Speaking(), "Lib VTsu6en.dll");
  EXPECT_EQ(SysLang(), "en");
  EXPECT_TRUE(DeleteFileA((mFolder + "\\VTsu6de.dll").c_str()));
}

TEST_F(LangListTest, FailedLoadKeepsTheFormer) {
  AddLibrary("VTsu6de.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_FALSE(LoadLanguage(0x0410));
  EXPECT_EQ(Speaking(), "Lib VTsu6de.dll");
  EXPECT_EQ(SysLang(), "de");
}

TEST_F(LangListTest, FreeingGoesBackToTheProgramsTexts) {
  AddLibrary("VTsu6de.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  FreeLanguageLibrary();
  EXPECT_EQ(GetLanguageModule(), nullptr);
  EXPECT_EQ(Speaking(), kProgramText);
  EXPECT_EQ(Log(), "");
  FreeLanguageLibrary();
  EXPECT_EQ(Log(), "");
}

TEST_F(LangListTest, LibraryIsOpenedAsDataOnly) {
  AddLibrary("VTsu6de.dll", kGerman);
  ASSERT_TRUE(LoadLanguage(kGerman));
  EXPECT_EQ(GetModuleHandleA("VTsu6de.dll"), nullptr);
}

TEST_F(LangListTest, LibraryThatCannotBeFreedIsLogged) {
  { CLangLib library(reinterpret_cast<HMODULE>(0x10000), kGerman); }
  EXPECT_EQ(Log(), "CLangLib destructor: couldn't free the language library.\n");
}

TEST_F(LangListTest, ProgramsOwnModuleIsNeverFreed) {
  { CLangLib library(GetModuleHandleA(nullptr), kOwn); }
  { CLangLib none; }
  EXPECT_EQ(Log(), "");
}

// ---- the choice ----

class LangChoiceTest : public LangListTest {
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
  EXPECT_EQ(List(), (std::vector<int32_t>{0x0409, 0x040c}));
  AppSetVariable("AppLang", "0x040c,fr");
  ASSERT_TRUE(ChooseAndLoadLanguage());
  EXPECT_EQ(SysLang(), "fr");
}

}  // namespace
