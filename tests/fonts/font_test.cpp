// Reading font files, the system's font list and the font folder.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "font_fixture.h"
#include "sequence/stand_in.h"

namespace {

using FontFile = FontTest;
using FontList = FontTest;
using FontFolder = FontTest;

TEST_F(FontFile, GivesNamesVersionAndStyle) {
  TrueTypeData data;
  ASSERT_TRUE(ReadTrueTypeFile(Font("a.ttf", 0x00021234, "Bold Italic").c_str(), data));
  EXPECT_STREQ(data.fullName.Chars(), "Veltrane Test Bold Italic");
  EXPECT_STREQ(data.familyName.Chars(), "Veltrane Test");
  EXPECT_EQ(data.version, 0x00021234u);
  EXPECT_EQ(data.style, 3u);
}

TEST_F(FontFile, StylesAreBits) {
  const struct {
    const char* style;
    uint32_t bits;
  } kStyles[] = {{"Regular", 0}, {"Bold", 1}, {"Italic", 2}, {"Bold Italic", 3}};
  for (const auto& [style, bits] : kStyles) {
    TrueTypeData data;
    ASSERT_TRUE(ReadTrueTypeFile(Font("a.ttf", 1, style).c_str(), data));
    EXPECT_EQ(data.style, bits) << style;
  }
}

TEST_F(FontFile, TheMacintoshNamesCount) {
  FontSpec spec;
  spec.family = "Windows Family";
  spec.fullName = "Windows Full";
  spec.macFamily = "Mac Family";
  spec.macFullName = "Mac Full";
  TrueTypeData data;
  ASSERT_TRUE(ReadTrueTypeFile(mDir.Write("a.ttf", MakeFont(spec)).c_str(), data));
  EXPECT_STREQ(data.fullName.Chars(), "Mac Full");
  EXPECT_STREQ(data.familyName.Chars(), "Mac Family");
}

TEST_F(FontFile, AReadOnlyFileIsRead) {
  const std::string path = Font("a.ttf");
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY));
  TrueTypeData data;
  EXPECT_TRUE(ReadTrueTypeFile(path.c_str(), data));
}

TEST_F(FontFile, MissingFileAndFolderGiveNothing) {
  TrueTypeData data;
  EXPECT_FALSE(ReadTrueTypeFile(mDir.Join("none.ttf").c_str(), data));
  EXPECT_FALSE(ReadTrueTypeFile(mDir.Path().c_str(), data));
}

TEST_F(FontFile, AFontWithoutStyleTableHasNoStyle) {
  FontSpec spec;
  spec.style = "Bold";
  std::string bytes = MakeFont(spec);
  bytes.replace(bytes.find("OS/2"), 4, "zzzz");
  TrueTypeData data;
  ASSERT_TRUE(ReadTrueTypeFile(mDir.Write("a.ttf", bytes).c_str(), data));
  EXPECT_EQ(data.style, 0u);
}

TEST_F(FontList, AFamilyIsFoundInAnyCase) {
  EXPECT_FALSE(IsFontFamilyInstalled(kFamily));
  const std::string path = Font("Fonts\\a.ttf");
  ASSERT_EQ(AddFontResourceA(path.c_str()), 1);
  EXPECT_TRUE(IsFontFamilyInstalled("Veltrane Test"));
  EXPECT_TRUE(IsFontFamilyInstalled("VELTRANE tEST"));
  EXPECT_FALSE(IsFontFamilyInstalled("Veltrane Tes"));
  EXPECT_FALSE(IsFontFamilyInstalled("Veltrane Test Italic"));
  EXPECT_FALSE(IsFontFamilyInstalled(""));
}

TEST_F(FontList, AValueIsFoundByTheNameBeforeItsParenthesis) {
  SetRegistryString(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Test (TrueType)", "a.ttf");
  Str name;
  Str file;
  EXPECT_TRUE(FindRegistryFont("veltrane TEST", name, file));
  EXPECT_STREQ(name.Chars(), "Veltrane Test (TrueType)");
  EXPECT_STREQ(file.Chars(), "a.ttf");
  for (const char* other : {"Veltrane", "Veltrane Test (TrueType)", "Veltrane Test ", "eltrane Test"})
    EXPECT_FALSE(FindRegistryFont(other, name, file)) << other;
}

TEST_F(FontList, AnyKindInTheParenthesisIsFound) {
  const RegistryValueGuard guard(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Dots (VGA res)");
  SetRegistryString(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Dots (VGA res)", "dots.fon");
  Str name;
  Str file;
  EXPECT_TRUE(FindRegistryFont("Veltrane Dots", name, file));
  EXPECT_STREQ(file.Chars(), "dots.fon");
  EXPECT_TRUE(RemoveFontFromRegistry("Veltrane Dots"));
  EXPECT_FALSE(FindRegistryFont("Veltrane Dots", name, file));
}

TEST_F(FontList, AFamilyIsListedByTheBeginOfItsValues) {
  SetRegistryString(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Test Italic (TrueType)", "a.ttf");
  EXPECT_TRUE(IsFamilyInRegistry("Veltrane Test"));
  EXPECT_TRUE(IsFamilyInRegistry("VELTRANE"));
  EXPECT_FALSE(IsFamilyInRegistry("Veltrane Test Bold"));
}

TEST_F(FontList, ValuesThatAreNoTextsAreSkipped) {
  const RegistryValueGuard guard(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Number (TrueType)");
  SetRegistryDword(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Number (TrueType)", 7);
  SetRegistryString(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Test (TrueType)", "a.ttf");
  Str name;
  Str file;
  EXPECT_FALSE(FindRegistryFont("Veltrane Number", name, file));
  EXPECT_TRUE(FindRegistryFont("Veltrane Test", name, file));
}

TEST_F(FontList, ABareNameLiesInTheFontFolder) {
  Str path;
  EXPECT_TRUE(RegistryFontPath("vt.TTF", path));
  EXPECT_EQ(path.Chars(), InFonts("vt.TTF"));
  // No variable of a script leads to another file.
  AppSetVariable("RegFile", "other.ttf");
  EXPECT_TRUE(RegistryFontPath("vt.ttf", path));
  EXPECT_EQ(path.Chars(), InFonts("vt.ttf"));
  AppSetVariable("TTSysDir", (mFonts + "\\").c_str());
  EXPECT_TRUE(RegistryFontPath("vt.ttf", path));
  EXPECT_EQ(path.Chars(), InFonts("vt.ttf"));
}

TEST_F(FontList, AFullPathStays) {
  Str path;
  EXPECT_TRUE(RegistryFontPath("D:\\fonts\\vt.ttf", path));
  EXPECT_STREQ(path.Chars(), "D:\\fonts\\vt.ttf");
}

TEST_F(FontList, AFotFileLiesInTheSystemFolder) {
  Str path;
  EXPECT_TRUE(RegistryFontPath("vt.fot", path));
  EXPECT_EQ(path.Chars(), mDir.Join("Windows\\System\\vt.fot"));
}

TEST_F(FontList, OtherEndingsAreAnInternalError) {
  for (const char* name : {"vt.otf", "vt.fon", "vt", "", "vt.ttf.bak"}) {
    AssertRecorder recorder;
    Str path;
    EXPECT_FALSE(RegistryFontPath(name, path)) << name;
    EXPECT_EQ(recorder.Only(), "Unknown font type.") << name;
  }
}

TEST_F(FontList, WritesTheBareNameOfAFileInTheFontFolder) {
  EXPECT_TRUE(WriteFontToRegistry(kFamily, InFonts("vt.ttf").c_str()));
  EXPECT_EQ(Listed(kFamily), "vt.ttf");
  EXPECT_TRUE(WriteFontToRegistry(kFamily, InFonts("deeper\\vt.ttf").c_str()));
  EXPECT_EQ(Listed(kFamily), InFonts("deeper\\vt.ttf"));
  AppSetVariable("TTSysDir", (mFonts + "\\").c_str());
  EXPECT_TRUE(WriteFontToRegistry(kFamily, InFonts("vt.ttf").c_str()));
  EXPECT_EQ(Listed(kFamily), "vt.ttf");
}

TEST_F(FontList, AValueThatCannotBeSetIsLogged) {
  // Longer than the system takes as the name of a value.
  const std::string name(17000, 'x');
  EXPECT_FALSE(WriteFontToRegistry(name.c_str(), InFonts("vt.ttf").c_str()));
  EXPECT_EQ(Log(), "WriteFontToRegistry: couldn't set value (" + name + " (TrueType)) = (vt.ttf).\n");
}

TEST_F(FontList, WithoutRightsNeitherWritingNorRemovingWorks) {
  SetRegistryString(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Test (TrueType)", "a.ttf");
  {
    const DeniedKey denied(HKEY_LOCAL_MACHINE, kFontList);
    EXPECT_FALSE(WriteFontToRegistry(kFamily, InFonts("vt.ttf").c_str()));
    EXPECT_EQ(Log(),
              "WriteFontToRegistry: couldn't open reg key Software\\Microsoft\\Windows "
              "NT\\CurrentVersion\\Fonts.\n");
    EXPECT_FALSE(RemoveFontFromRegistry(kFamily));
    EXPECT_EQ(Log(),
              "RemoveFontFromRegistry: couldn't open key Software\\Microsoft\\Windows "
              "NT\\CurrentVersion\\Fonts\n");
  }
  EXPECT_EQ(Listed(kFamily), "a.ttf");
}

TEST_F(FontList, RemovingWhatIsNotThereIsASuccess) {
  EXPECT_TRUE(RemoveFontFromRegistry("Veltrane None"));
  EXPECT_EQ(Log(), "");
}

// ---- the font folder ----

TEST_F(FontFolder, ComesFromTheUsersShellFolders) {
  const RegistryValueGuard guard(HKEY_CURRENT_USER, kShellFolders, "Fonts");
  SetRegistryString(HKEY_CURRENT_USER, kShellFolders, "Fonts", "D:\\Some\\Fonts");
  Str folder;
  EXPECT_TRUE(GetFontDir(folder));
  EXPECT_STREQ(folder.Chars(), "D:\\Some\\Fonts");
  EXPECT_EQ(Log(), "");
}

// Takes a value out of a foreign key until the object's end.
class WithoutValue {
 public:
  WithoutValue(HKEY root, const char* path, const char* name) : mGuard(root, path, name) {
    KeyHandle key;
    if (RegOpenKeyExA(root, path, 0, KEY_SET_VALUE, key.Put()) == ERROR_SUCCESS)
      RegDeleteValueA(key.Get(), name);
  }

 private:
  RegistryValueGuard mGuard;
};

TEST_F(FontFolder, WithoutTheValueItIsBelowTheWindowsFolder) {
  const WithoutValue without(HKEY_CURRENT_USER, kShellFolders, "Fonts");
  mDir.MakeFolder("Windows\\Fonts");
  Str folder;
  EXPECT_TRUE(GetFontDir(folder));
  EXPECT_EQ(folder.Chars(), mDir.Join("Windows\\Fonts"));
  EXPECT_EQ(Log(), "Couldn't get the 'Fonts' value from the 'Shell Folders' key\n");
}

TEST_F(FontFolder, WithoutAnyItIsLogged) {
  const WithoutValue without(HKEY_CURRENT_USER, kShellFolders, "Fonts");
  Str folder;
  EXPECT_FALSE(GetFontDir(folder));
  EXPECT_EQ(Log(),
            "Couldn't get the 'Fonts' value from the 'Shell Folders' key\n"
            "Appended '\\Fonts' to Windows Directory but it doesn't exist: " +
                mDir.Join("Windows\\Fonts") + "\n");
}

TEST_F(FontFolder, AMissingKeyIsLogged) {
  // The key is moved aside by a copy: the user's own folders are in it.
  KeyHandle explorer;
  ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer", 0,
                          KEY_ALL_ACCESS, explorer.Put()),
            ERROR_SUCCESS);
  std::map<std::string, std::string> values;
  {
    KeyHandle key;
    ASSERT_EQ(RegOpenKeyExA(explorer.Get(), "Shell Folders", 0, KEY_READ, key.Put()), ERROR_SUCCESS);
    char name[256];
    char data[1024];
    DWORD nameSize = sizeof name;
    DWORD dataSize = sizeof data;
    for (DWORD i = 0; RegEnumValueA(key.Get(), i, name, &nameSize, nullptr, nullptr,
                                    reinterpret_cast<BYTE*>(data), &dataSize) == ERROR_SUCCESS;
         ++i, nameSize = sizeof name, dataSize = sizeof data)
      values[name] = data;
  }
  ASSERT_EQ(RegDeleteKeyA(explorer.Get(), "Shell Folders"), ERROR_SUCCESS);
  mDir.MakeFolder("Windows\\Fonts");
  Str folder;
  const bool found = GetFontDir(folder);
  const std::string log = Log();
  for (const auto& [name, data] : values) SetRegistryString(HKEY_CURRENT_USER, kShellFolders, name, data);
  EXPECT_TRUE(found);
  EXPECT_EQ(folder.Chars(), mDir.Join("Windows\\Fonts"));
  EXPECT_EQ(log, "GetFontDir: couldn't open the 'Shell Folders' key.\n");
}

TEST_F(FontFolder, TheVariableIsSetOnce) {
  AppVars().Clear();
  AppSetVariable("WinDir", mDir.Join("Windows").c_str());
  const RegistryValueGuard guard(HKEY_CURRENT_USER, kShellFolders, "Fonts");
  SetRegistryString(HKEY_CURRENT_USER, kShellFolders, "Fonts", "D:\\Some\\Fonts");
  EXPECT_TRUE(DefineTTSysDir());
  EXPECT_EQ(Log(), "    TTSysDir variable defined: D:\\Some\\Fonts\n");
  SetRegistryString(HKEY_CURRENT_USER, kShellFolders, "Fonts", "D:\\Other");
  EXPECT_TRUE(DefineTTSysDir());
  EXPECT_EQ(Log(), "");
  EXPECT_STREQ(AppGetExpanded("TTSysDir").Chars(), "D:\\Some\\Fonts");
}

}  // namespace
