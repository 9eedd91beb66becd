// Installing and removing TrueType fonts with the real registry, session and files.
#include <gtest/gtest.h>

#include "base/runstate.h"
#include "font_fixture.h"
#include "sequence/stand_in.h"
#include "support/process.h"
#include "support/wait.h"

namespace {

using InstallFont = FontTest;
using RemoveFont = FontTest;

// Keeps a file open so that nobody else can, until the object's end.
class HeldFile {
 public:
  explicit HeldFile(const std::string& path, DWORD share = 0)
      : mFile(CreateFileA(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_TRUE(static_cast<bool>(mFile)) << path;
  }

 private:
  FileHandle mFile;
};

TEST_F(InstallFont, ANewFontIsCopiedListedAndAvailable) {
  const std::string source = Font("new.ttf");
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_EQ(mDir.Read("Fonts\\vt.ttf"), mDir.Read("new.ttf"));
  EXPECT_EQ(Listed(kFamily), "vt.ttf");
  EXPECT_TRUE(SystemKnows(kFamily));
  EXPECT_TRUE(mDir.Has("new.ttf"));
  EXPECT_EQ(Log(), "");
}

TEST_F(InstallFont, OutsideTheFontFolderTheListHoldsTheFullPath) {
  const std::string source = Font("new.ttf");
  const std::string dest = mDir.Join("elsewhere.ttf");
  EXPECT_TRUE(InstallTTFont(source.c_str(), dest.c_str(), false));
  EXPECT_EQ(Listed(kFamily), dest);
  EXPECT_TRUE(UninstallFontByName(kFamily, true));
  EXPECT_FALSE(mDir.Has("elsewhere.ttf"));
  EXPECT_FALSE(SystemKnows(kFamily));
}

TEST_F(InstallFont, TheSourceIsDeletedOnRequest) {
  const std::string source = Font("new.ttf");
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), true));
  EXPECT_FALSE(mDir.Has("new.ttf"));
  EXPECT_TRUE(mDir.Has("Fonts\\vt.ttf"));
}

TEST_F(InstallFont, AnEmptySourceIsLogged) {
  for (const char* path : {"", static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(InstallTTFont(path, InFonts("vt.ttf").c_str(), false));
    EXPECT_EQ(Log(), "Bad param in InstallTTFont: 'sourcePath' is empty or NULL.\n");
  }
}

TEST_F(InstallFont, AnEmptyDestinationIsLogged) {
  const std::string source = Font("new.ttf");
  for (const char* path : {"", static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(InstallTTFont(source.c_str(), path, false));
    EXPECT_EQ(Log(), "Bad param in InstallTTFont: 'destPath' is empty or NULL.\n");
  }
}

TEST_F(InstallFont, AMissingSourceIsLoggedAndShown) {
  const std::string source = mDir.Join("none.ttf");
  EXPECT_FALSE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  const std::string log = Log();
  EXPECT_TRUE(Contains(
      log, "TrueType font installation failure: couldn't read data from the font file " + source + ".\n"));
  EXPECT_TRUE(Contains(log, CannotInstall("none", source))) << log;
  EXPECT_EQ(Listed(kFamily), "none");
}

// The ways in which a font file can be bad. Each ends with the documented line and without any trace.
class BadFont : public FontTest, public testing::WithParamInterface<const char*> {};

std::string WithU16(std::string bytes, size_t at, unsigned value) {
  bytes[at] = static_cast<char>(value >> 8);
  bytes[at + 1] = static_cast<char>(value);
  return bytes;
}

std::string WithU32(const std::string& bytes, size_t at, unsigned value) {
  return WithU16(WithU16(bytes, at, value >> 16), at + 2, value & 0xFFFF);
}

// Where the directory record of a table begins.
size_t RecordOf(const std::string& font, const std::string& tag) { return font.find(tag); }

size_t TableOf(const std::string& font, const std::string& tag) {
  size_t offset = 0;
  for (size_t i = 0; i < 4; ++i)
    offset = offset << 8 | static_cast<unsigned char>(font[RecordOf(font, tag) + 8 + i]);
  return offset;
}

std::string MakeBadFont(const std::string& kind) {
  FontSpec spec;
  const std::string good = MakeFont(spec);
  if (kind == "empty") return "";
  if (kind == "elevenBytes") return good.substr(0, 11);
  if (kind == "noTables") return WithU16(good.substr(0, 12), 4, 0);
  if (kind == "directoryCut") return good.substr(0, 60);
  if (kind == "tooManyTables") return WithU16(good, 4, 0xFFFF);
  if (kind == "namesCut") return good.substr(0, TableOf(good, "name") + 40);
  if (kind == "nameOutside") return WithU32(good, RecordOf(good, "name") + 8, 0xFFFFFFF0);
  if (kind == "nameTooLong") return WithU32(good, RecordOf(good, "name") + 12, 0xFFFFFFFF);
  if (kind == "headOutside") return WithU32(good, RecordOf(good, "head") + 8, 0x7FFFFFFF);
  if (kind == "headShort") return WithU32(good, RecordOf(good, "head") + 12, 7);
  if (kind == "os2Outside") return WithU32(good, RecordOf(good, "OS/2") + 8, 0x00100000);
  if (kind == "os2Short") return WithU32(good, RecordOf(good, "OS/2") + 12, 62);
  if (kind == "manyNames") return WithU16(good, TableOf(good, "name") + 2, 0xFFFF);
  if (kind == "textsOutside") return WithU16(good, TableOf(good, "name") + 4, 0xFFFF);
  if (kind == "noMacNames") {
    spec.macNames = false;
    return MakeFont(spec);
  }
  if (kind == "noNameTable") return std::string(good).replace(RecordOf(good, "name"), 4, "nbme");
  if (kind == "noise") {
    std::string noise;
    for (unsigned i = 0; i < 70000; ++i) noise += static_cast<char>(i * 2654435761u >> 24);
    return noise;
  }
  ADD_FAILURE() << kind;
  return good;
}

TEST_P(BadFont, IsLoggedShownAndLeavesNothing) {
  const std::string source = mDir.Write("bad.ttf", MakeBadFont(GetParam()));
  EXPECT_FALSE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  const std::string log = Log();
  EXPECT_TRUE(Contains(
      log, "TrueType font installation failure: couldn't read data from the font file " + source + ".\n"))
      << log;
  EXPECT_TRUE(Contains(log, CannotInstall("bad", source))) << log;
  EXPECT_EQ(NamesIn(mFonts).size(), 0u);
  EXPECT_EQ(Listed(kFamily), "none");
  EXPECT_FALSE(SystemKnows(kFamily));
}

INSTANTIATE_TEST_SUITE_P(Kinds, BadFont,
                         testing::Values("empty", "elevenBytes", "noTables", "directoryCut", "tooManyTables",
                                         "namesCut", "nameOutside", "nameTooLong", "headOutside", "headShort",
                                         "os2Outside", "os2Short", "manyNames", "textsOutside", "noMacNames",
                                         "noNameTable", "noise"),
                         [](const auto& kind) { return std::string(kind.param); });

TEST_F(InstallFont, AHugeFileThatIsNoFontIsRefused) {
  const std::string source = mDir.Join("huge.ttf");
  {
    const FileHandle file(
        CreateFileA(source.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    LONG high = 1;  // 4 GiB and more, without data
    SetFilePointer(file.Get(), 0x1000, &high, FILE_BEGIN);
    ASSERT_TRUE(SetEndOfFile(file.Get())) << GetLastError();
  }
  EXPECT_FALSE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_TRUE(Contains(Log(), "couldn't read data from the font file " + source + "."));
}

TEST_F(InstallFont, ANameThatIsAPlaceholderOfItselfEndsInTime) {
  FontSpec spec;
  spec.macFamily = "Family of <FontName>";
  spec.macFullName = "<FontName><FontName>";
  const std::string source = mDir.Write("odd.ttf", MakeFont(spec));
  // The value name of the font list may hold it; only the message must not grow for ever.
  const RegistryValueGuard guard(HKEY_LOCAL_MACHINE, kFontList, "<FontName><FontName> (TrueType)");
  const DWORD began = GetTickCount();
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("odd.ttf").c_str(), false));
  EXPECT_EQ(Listed("<FontName><FontName>"), "odd.ttf");
  EXPECT_TRUE(UninstallFontByName("<FontName><FontName>", true));
  EXPECT_LT(GetTickCount() - began, 20000u);
  EXPECT_EQ(Listed("<FontName><FontName>"), "none");
}

TEST_F(InstallFont, ANameInAForeignEncodingGoesInByteByByte) {
  FontSpec spec;
  spec.macFullName =
      "V\xe9ltr\x8e"
      "ane";
  const std::string source = mDir.Write("odd.ttf", MakeFont(spec));
  const RegistryValueGuard guard(HKEY_LOCAL_MACHINE, kFontList, spec.macFullName + " (TrueType)");
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("odd.ttf").c_str(), false));
  EXPECT_EQ(Listed(spec.macFullName), "odd.ttf");
  EXPECT_TRUE(UninstallTTFont(InFonts("odd.ttf").c_str()));
  EXPECT_EQ(Listed(spec.macFullName), "none");
}

// ---- a font of the family is there already ----

class InstalledFont : public FontTest {
 protected:
  void SetUp() override {
    FontTest::SetUp();
    const std::string source = Font("old.ttf", 0x00020000);
    ASSERT_TRUE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
    ASSERT_TRUE(SystemKnows(kFamily));
    Log();
  }
};

TEST_F(InstalledFont, ANewerOneIsKept) {
  const std::string before = mDir.Read("Fonts\\vt.ttf");
  const std::string source = Font("new.ttf", 0x00018000);
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), true));
  EXPECT_EQ(
      Log(),
      "   TrueType font installation [Veltrane Test]: installed font's version (2.0) is newer/later than "
      "the font we're attempting to install (1.32768). Installation de Veltrane 6.0c will keep the "
      "installed font.\n\n");
  EXPECT_EQ(mDir.Read("Fonts\\vt.ttf"), before);
  EXPECT_EQ(NamesIn(mFonts).size(), 1u);
  EXPECT_TRUE(mDir.Has("new.ttf"));
  EXPECT_EQ(Listed(kFamily), "vt.ttf");
}

TEST_F(InstalledFont, VersionsCompareAsUnsignedNumbers) {
  const std::string source = Font("new.ttf", 0xFFFF0000);
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_EQ(mDir.Read("Fonts\\vt.ttf"), mDir.Read("new.ttf"));
}

TEST_F(InstalledFont, TheSameVersionIsReplaced) {
  // The same version with another content shows which one lies there.
  const std::string source = mDir.Write("new.ttf", mDir.Read("old.ttf") + std::string(4, '\0'));
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_EQ(Log(), "Successfully removed Veltrane Test from font table\n");
  EXPECT_EQ(mDir.Read("Fonts\\vt.ttf"), mDir.Read("new.ttf"));
  EXPECT_EQ(NamesIn(mFonts).size(), 1u);
  EXPECT_EQ(Listed(kFamily), "vt.ttf");
  EXPECT_TRUE(SystemKnows(kFamily));
}

TEST_F(InstalledFont, AnOlderOneIsReplacedWhereverItLies) {
  const std::string source = Font("new.ttf", 0x00020001);
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("other.ttf").c_str(), false));
  EXPECT_FALSE(mDir.Has("Fonts\\vt.ttf"));
  EXPECT_TRUE(mDir.Has("Fonts\\other.ttf"));
  EXPECT_EQ(Listed(kFamily), "other.ttf");
}

TEST_F(InstalledFont, AnUnreadableOneIsReplaced) {
  mDir.Write("Fonts\\vt.ttf", "no font");
  const std::string source = Font("new.ttf", 0x00000001);
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_EQ(mDir.Read("Fonts\\vt.ttf"), mDir.Read("new.ttf"));
}

TEST_F(InstalledFont, AReadOnlyOneIsReplaced) {
  ASSERT_TRUE(SetFileAttributesA(InFonts("vt.ttf").c_str(), FILE_ATTRIBUTE_READONLY));
  const std::string source = Font("new.ttf", 0x00020001);
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_EQ(mDir.Read("Fonts\\vt.ttf"), mDir.Read("new.ttf"));
}

TEST_F(InstalledFont, OneThatIsHeldStaysAndTheNewOneGoesInBesideIt) {
  const std::string source = Font("new.ttf", 0x00020001);
  {
    const HeldFile held(InFonts("vt.ttf"), FILE_SHARE_READ);
    EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  }
  const std::string log = Log();
  EXPECT_TRUE(Contains(log, "Uninstall Font: could delete " + InFonts("vt.ttf") + "\n")) << log;
  EXPECT_TRUE(Contains(log, CannotDelete(kFamily, kNeededText))) << log;
  EXPECT_EQ(Listed(kFamily), "vt_01.ttf");
  EXPECT_EQ(mDir.Read("Fonts\\vt_01.ttf"), mDir.Read("new.ttf"));
}

TEST_F(InstalledFont, AnotherStyleOfTheFamilyGoesInBesideIt) {
  const std::string source = Font("italic.ttf", 0x00010000, "Italic");
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("italic.ttf").c_str(), false));
  EXPECT_EQ(Log(), "");
  EXPECT_EQ(Listed("Veltrane Test"), "vt.ttf");
  EXPECT_EQ(Listed("Veltrane Test Italic"), "italic.ttf");
  EXPECT_EQ(NamesIn(mFonts).size(), 2u);
  EXPECT_TRUE(UninstallFontByName("Veltrane Test Italic", true));
  EXPECT_EQ(Listed("Veltrane Test"), "vt.ttf");
}

TEST_F(InstalledFont, OneThatIsInNoListEndsTheInstallation) {
  ASSERT_TRUE(RemoveFontFromRegistry(kFamily));
  const std::string source = Font("new.ttf", 0x00030000);
  EXPECT_FALSE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  const std::string log = Log();
  EXPECT_TRUE(Contains(log,
                       "TrueType font installation failure: couldn't get the filename from the registry for "
                       "the installed font Veltrane Test.\n"))
      << log;
  EXPECT_TRUE(Contains(log, CannotInstall(kFamily, source))) << log;
}

TEST_F(InstalledFont, AListedFileOfAnUnknownKindEndsTheInstallation) {
  SetRegistryString(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Test (TrueType)", "vt.otf");
  const std::string source = Font("new.ttf", 0x00030000);
  AssertRecorder recorder;
  EXPECT_FALSE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_EQ(recorder.Only(), "Unknown font type.");
  const std::string log = Log();
  EXPECT_TRUE(Contains(log,
                       "TrueType font installation failure: couldn't convert the font's filename (vt.otf) to "
                       "the full path.\n"))
      << log;
  EXPECT_TRUE(Contains(log, CannotInstall(kFamily, source))) << log;
}

TEST_F(InstalledFont, AFontUsedFromTheDistributionKeepsItsSource) {
  ASSERT_TRUE(UninstallFontByName(kFamily, true));
  const std::string source = Font("new.ttf", 0x00020000);
  ASSERT_EQ(AddFontResourceA(source.c_str()), 1);
  SetRegistryString(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Test (TrueType)", source);
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_TRUE(mDir.Has("new.ttf"));
  EXPECT_TRUE(mDir.Has("Fonts\\vt.ttf"));
  EXPECT_EQ(Listed(kFamily), "vt.ttf");
}

// ---- the destination ----

TEST_F(InstallFont, ATakenNameIsNumberedAndLogged) {
  mDir.Write("Fonts\\vt.ttf", "another file");
  const std::string source = Font("new.ttf");
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_EQ(Log(), "InstallTTFont: destination pathname changed from " + InFonts("vt.ttf") + " to " +
                       InFonts("vt_01.ttf") + ", due to a filename collision.\n");
  EXPECT_EQ(mDir.Read("Fonts\\vt.ttf"), "another file");
  EXPECT_EQ(Listed(kFamily), "vt_01.ttf");
  EXPECT_TRUE(UninstallFontByName(kFamily, true));
  EXPECT_EQ(mDir.Read("Fonts\\vt.ttf"), "another file");
  EXPECT_FALSE(mDir.Has("Fonts\\vt_01.ttf"));
}

TEST_F(InstallFont, AReadOnlyFileOfThatNameIsLeftAlone) {
  const std::string taken = mDir.Write("Fonts\\vt.ttf", "another file");
  ASSERT_TRUE(SetFileAttributesA(taken.c_str(), FILE_ATTRIBUTE_READONLY));
  const std::string source = Font("new.ttf");
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_EQ(Listed(kFamily), "vt_01.ttf");
  EXPECT_EQ(mDir.Read("Fonts\\vt.ttf"), "another file");
}

TEST_F(InstallFont, ANameTooLongToBeNumberedIsOverwritten) {
  const std::string name = std::string(259 - mFonts.size() - 5, 'v') + ".ttf";
  mDir.Write("Fonts\\" + name, "another file");
  const std::string source = Font("new.ttf");
  EXPECT_TRUE(InstallTTFont(source.c_str(), InFonts(name).c_str(), false));
  EXPECT_EQ(Log(), "");
  EXPECT_EQ(mDir.Read("Fonts\\" + name), mDir.Read("new.ttf"));
  EXPECT_EQ(Listed(kFamily), name);
}

TEST_F(InstallFont, AMissingFolderIsShown) {
  const std::string source = Font("new.ttf");
  EXPECT_FALSE(InstallTTFont(source.c_str(), mDir.Join("none\\vt.ttf").c_str(), false));
  EXPECT_TRUE(Contains(Log(), CannotInstall(kFamily, source)));
  EXPECT_EQ(Listed(kFamily), "none");
  EXPECT_FALSE(mDir.Has("none"));
}

TEST_F(InstallFont, ARefusedFontListIsLoggedAndShown) {
  const std::string source = Font("new.ttf");
  {
    const DeniedKey denied(HKEY_LOCAL_MACHINE, kFontList);
    EXPECT_FALSE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  }
  const std::string log = Log();
  EXPECT_TRUE(Contains(
      log,
      "WriteFontToRegistry: couldn't open reg key Software\\Microsoft\\Windows NT\\CurrentVersion\\Fonts."
      "\nTrueType font installation failure: couldn't write the font data to the registry.\n"))
      << log;
  EXPECT_TRUE(Contains(log, CannotInstall(kFamily, source))) << log;
  EXPECT_FALSE(SystemKnows(kFamily));
}

TEST_F(InstallFont, AFontThatTheSystemRefusesIsLoggedAndShown) {
  // The tables are those of a font, but the file says that it is something else.
  const std::string bytes = WithU32(MakeFont({}), 0, 0x12345678);
  const std::string source = mDir.Write("new.ttf", bytes);
  EXPECT_FALSE(InstallTTFont(source.c_str(), InFonts("vt.ttf").c_str(), false));
  const std::string log = Log();
  EXPECT_TRUE(
      Contains(log, "TrueType font installation failure: couldn't add the font resource to Windows.\n"))
      << log;
  EXPECT_TRUE(Contains(log, CannotInstall(kFamily, source))) << log;
}

// ---- removal ----

TEST_F(RemoveFont, AnEmptyPathIsLogged) {
  EXPECT_FALSE(UninstallTTFont(""));
  EXPECT_EQ(Log(), "Bad param in UninstallTTFont: 'fontPath' is empty\n");
  EXPECT_FALSE(UninstallTTFont(nullptr));
  EXPECT_EQ(Log(), "Bad param in UninstallTTFont: 'fontPath' is empty\n");
}

TEST_F(RemoveFont, AMissingFileIsASuccess) {
  EXPECT_TRUE(UninstallTTFont(InFonts("none.ttf").c_str()));
  EXPECT_EQ(Log(), "   UninstallTTFont: font file " + InFonts("none.ttf") +
                       " doesn't exist = Success (nothing to uninstall).\n");
}

TEST_F(RemoveFont, ByFileTakesOutSessionListAndFile) {
  const std::string source = Font("new.ttf");
  ASSERT_TRUE(InstallTTFont(source.c_str(), InFonts("VT.TTF").c_str(), false));
  EXPECT_TRUE(UninstallTTFont(InFonts("VT.TTF").c_str()));
  EXPECT_EQ(Log(), "Successfully removed Veltrane Test from font table\n");
  EXPECT_EQ(Listed(kFamily), "none");
  EXPECT_FALSE(mDir.Has("Fonts\\VT.TTF"));
  EXPECT_FALSE(SystemKnows(kFamily));
}

TEST_F(RemoveFont, ByFileAlsoTakesAFontThatIsInNoList) {
  const std::string path = InFonts("vt.ttf");
  mDir.Write("Fonts\\vt.ttf", MakeFont({}));
  EXPECT_TRUE(UninstallTTFont(path.c_str()));
  EXPECT_FALSE(mDir.Has("Fonts\\vt.ttf"));
  EXPECT_EQ(Log(), "");
}

TEST_F(RemoveFont, AnotherEndingIsShownAndTheFileStays) {
  for (const char* name : {"vt.fon", "vt.otf"}) {
    const std::string path = mDir.Write(std::string("Fonts\\") + name, MakeFont({}));
    EXPECT_FALSE(UninstallTTFont(path.c_str()));
    EXPECT_TRUE(
        Contains(Log(), std::string(kSetupName) +
                            " ne peut pas supprimer la police TrueType vt car le nom de la police est "
                            "illisible dans " +
                            path + ". " + kRemoveByHandText + kGoesOn));
    EXPECT_TRUE(PathExists(path));
  }
}

TEST_F(RemoveFont, AnEndingOfAnotherLengthAsserts) {
  for (const char* name : {"vt.ttfx", "vt"}) {
    const std::string path = mDir.Write(std::string("Fonts\\") + name, MakeFont({}));
    AssertRecorder recorder;
    EXPECT_FALSE(UninstallTTFont(path.c_str()));
    EXPECT_EQ(recorder.Only(), "ext.Length() == 4");
    EXPECT_TRUE(Contains(Log(), "est illisible dans " + path + "."));
    EXPECT_TRUE(PathExists(path));
  }
}

TEST_F(RemoveFont, AnUnreadableNameIsShownAndTheFileStays) {
  const std::string path = mDir.Write("Fonts\\bad.ttf", "no font");
  EXPECT_FALSE(UninstallTTFont(path.c_str()));
  EXPECT_TRUE(Contains(Log(), std::string(kSetupName) +
                                  " ne peut pas supprimer la police TrueType bad car le nom de la police est "
                                  "illisible dans " +
                                  path + ". " + kRemoveByHandText + kGoesOn));
  EXPECT_TRUE(PathExists(path));
}

TEST_F(RemoveFont, ByNameKeepsTheFileWhenAsked) {
  ASSERT_TRUE(InstallTTFont(Font("new.ttf").c_str(), InFonts("vt.ttf").c_str(), false));
  EXPECT_TRUE(UninstallFontByName(kFamily, false));
  EXPECT_EQ(Listed(kFamily), "none");
  EXPECT_TRUE(mDir.Has("Fonts\\vt.ttf"));
}

TEST_F(RemoveFont, AnUnknownNameIsLogged) {
  EXPECT_FALSE(UninstallFontByName("Veltrane None", true));
  EXPECT_EQ(Log(), "Uninstall Font: Veltrane None is not in the font table\n");
}

TEST_F(RemoveFont, AListedFileThatIsGoneIsLogged) {
  SetRegistryString(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Test (TrueType)", "gone.ttf");
  EXPECT_TRUE(UninstallFontByName(kFamily, true));
  EXPECT_EQ(Log(), "Successfully removed Veltrane Test from font table\nUninstall Font: " +
                       InFonts("gone.ttf") + " doesn't exist!!\n");
}

TEST_F(RemoveFont, AFileThatCannotBeDeletedIsLoggedAndShown) {
  ASSERT_TRUE(InstallTTFont(Font("new.ttf").c_str(), InFonts("vt.ttf").c_str(), false));
  ::Run().install = false;
  {
    const HeldFile held(InFonts("vt.ttf"), FILE_SHARE_READ);
    EXPECT_FALSE(UninstallFontByName(kFamily, true));
  }
  const std::string log = Log();
  EXPECT_TRUE(Contains(log, "Uninstall Font: could delete " + InFonts("vt.ttf") + "\n")) << log;
  EXPECT_TRUE(Contains(log, CannotDelete(kFamily, kRemoveByHandText))) << log;
  EXPECT_EQ(Listed(kFamily), "none");
}

TEST_F(RemoveFont, AFontThatIsHeldAndNotLoadedIsRefused) {
  mDir.Write("Fonts\\vt.ttf", MakeFont({}));
  SetRegistryString(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Test (TrueType)", "vt.ttf");
  const HeldFile held(InFonts("vt.ttf"), FILE_SHARE_READ);
  ::Run().install = false;
  EXPECT_FALSE(UninstallFontByName(kFamily, true));
  EXPECT_TRUE(Contains(Log(), CannotRemove(kFamily, kRemoveByHandText)));
  EXPECT_EQ(Listed(kFamily), "vt.ttf");
  EXPECT_TRUE(mDir.Has("Fonts\\vt.ttf"));
}

TEST_F(RemoveFont, WhileInstallingTheUserIsToldThatTheFontIsNeeded) {
  mDir.Write("Fonts\\vt.ttf", MakeFont({}));
  SetRegistryString(HKEY_LOCAL_MACHINE, kFontList, "Veltrane Test (TrueType)", "vt.ttf");
  const HeldFile held(InFonts("vt.ttf"), FILE_SHARE_READ);
  EXPECT_FALSE(UninstallFontByName(kFamily, true));
  EXPECT_TRUE(Contains(Log(), CannotRemove(kFamily, kNeededText)));
}

TEST_F(RemoveFont, ARefusedFontListIsLoggedAndShownAndTheFileStays) {
  ASSERT_TRUE(InstallTTFont(Font("new.ttf").c_str(), InFonts("vt.ttf").c_str(), false));
  ::Run().install = false;
  {
    const DeniedKey denied(HKEY_LOCAL_MACHINE, kFontList);
    EXPECT_FALSE(UninstallFontByName(kFamily, true));
  }
  const std::string log = Log();
  EXPECT_TRUE(Contains(log,
                       "RemoveFontFromRegistry: couldn't open key Software\\Microsoft\\Windows "
                       "NT\\CurrentVersion\\Fonts\n"))
      << log;
  EXPECT_TRUE(Contains(log, CannotRemove(kFamily, kRemoveByHandText))) << log;
  EXPECT_FALSE(Contains(log, "Successfully removed"));
  EXPECT_TRUE(mDir.Has("Fonts\\vt.ttf"));
}

TEST_F(RemoveFont, EveryWindowIsToldThatTheFontsChanged) {
  const std::string log = mDir.Join("window.log");
  ChildProcess window(Quoted(HelperPath("stand_in_window.exe")) + " FontWatcher Watcher -hidden -log " +
                      Quoted(log));
  ASSERT_TRUE(WaitUntil([&] { return window.Output().rfind("ready", 0) == 0; }));
  NotifyFontChange();
  EXPECT_TRUE(WaitUntil([&] { return PathExists(log) && Contains(ReadWholeFile(log), "WM_FONTCHANGE"); }));
}

}  // namespace
