#include "ui/langlist.h"

#include "platform/fs.h"
#include "ui/library_fixture.h"

namespace {

class LangListTest : public LibraryTest {
 protected:
  std::vector<int32_t> List() { return ListLanguages(mFolder.c_str()); }
  std::vector<int32_t> ListProduct(const char* pattern) {
    return ListProductLanguages(mFolder.c_str(), pattern);
  }
};

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

}  // namespace
