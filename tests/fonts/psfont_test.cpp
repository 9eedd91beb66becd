// PostScript font files, and their removal through a stand-in for Adobe Type Manager in the system folder.
#include "fonts/psfont.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "atm_fixture.h"
#include "fonts/psreader.h"
#include "type1_maker.h"

namespace {

class PsFile : public FontTest {
 protected:
  std::string Pfb(const std::string& bytes) { return mDir.Write("a.pfb", bytes); }
  std::string Pfm(const std::string& bytes) { return mDir.Write("a.pfm", bytes); }
};

TEST_F(PsFile, TheUsualCommentGivesNameAndVersion) {
  const std::string path = Pfb(MakePfb("VeltranePS", "001.003"));
  Str name;
  uint32_t version = 0;
  EXPECT_TRUE(GetPSNameAndVersion(path.c_str(), &name, &version));
  EXPECT_STREQ(name.Chars(), "VeltranePS");
  EXPECT_EQ(version, 65539u);
  EXPECT_EQ(Log(), "");
}

TEST_F(PsFile, NameAndVersionAreOptional) {
  const std::string path = Pfb(MakePfb("VeltranePS", "none"));
  Str name;
  EXPECT_TRUE(GetPSNameAndVersion(path.c_str(), &name, nullptr));
  EXPECT_STREQ(name.Chars(), "VeltranePS");
  const std::string other = Pfb(MakePfb("VeltranePS", "2.7"));
  uint32_t version = 0;
  EXPECT_TRUE(GetPSNameAndVersion(other.c_str(), nullptr, &version));
  EXPECT_EQ(version, 0x00020007u);
}

TEST_F(PsFile, EachLineEndCounts) {
  for (const char* end : {"\n", "\r", "\r\n"}) {
    Str name;
    uint32_t version = 0;
    EXPECT_TRUE(
        GetPSNameAndVersion(Pfb(MakePfbOfLine("%!PS-AdobeFont-1.0: A 1.2", end)).c_str(), &name, &version));
    EXPECT_EQ(version, 0x00010002u);
  }
}

TEST_F(PsFile, AMissingOutlineIsLogged) {
  const std::string path = mDir.Join("none.pfb");
  EXPECT_FALSE(GetPSNameAndVersion(path.c_str(), nullptr, nullptr));
  EXPECT_EQ(Log(), "    GetPSNameAndVersion error: " + path + " does not exist.\n");
}

TEST_F(PsFile, AnOutlineThatCannotBeOpenedIsLogged) {
  const std::string path = Pfb(MakePfb("A", "1.0"));
  const FileHandle held(CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(static_cast<bool>(held));
  EXPECT_FALSE(GetPSNameAndVersion(path.c_str(), nullptr, nullptr));
  EXPECT_EQ(Log(), "GetPSNameAndVersion: Cannot open " + path + " for reading.\n");
}

TEST_F(PsFile, AnOutlineWithoutSegmentHeaderIsLogged) {
  for (const char* bytes : {"", "\x80", "\x80\x01\x01\x01\x01"}) {
    const std::string path = Pfb(bytes);
    EXPECT_FALSE(GetPSNameAndVersion(path.c_str(), nullptr, nullptr));
    EXPECT_EQ(Log(), "GetPSNameAndVersion: Cannot find beginning of file, " + path + ".\n");
  }
}

TEST_F(PsFile, AnOutlineThatEndsInItsFirstLineIsLogged) {
  for (const size_t length : {size_t{0}, size_t{20}, size_t{1023}}) {
    const std::string path = Pfb(std::string("\x80\x01\x01\x01\x01\x01", 6) + std::string(length, 'x'));
    EXPECT_FALSE(GetPSNameAndVersion(path.c_str(), nullptr, nullptr));
    EXPECT_EQ(Log(), "GetPSNameAndVersion: Comment line in " + path +
                         " is bad, EOF before comment was entirely read.\n");
  }
}

TEST_F(PsFile, AFirstLineThatNeverEndsIsLogged) {
  for (const size_t length : {size_t{1024}, size_t{1025}, size_t{3000000}}) {
    const std::string path = Pfb(std::string("\x80\x01\x01\x01\x01\x01", 6) + std::string(length, 'x'));
    EXPECT_FALSE(GetPSNameAndVersion(path.c_str(), nullptr, nullptr));
    EXPECT_EQ(Log(), "GetPSNameAndVersion: Comment line in " + path + " is larger than storage buffer.\n");
  }
}

TEST_F(PsFile, TheLongestFirstLineIsRead) {
  const std::string line = "%!PS-AdobeFont-1.0: A 1.2 ";
  const std::string path = Pfb(MakePfbOfLine(line + std::string(1023 - line.size(), 'x')));
  uint32_t version = 0;
  EXPECT_TRUE(GetPSNameAndVersion(path.c_str(), nullptr, &version));
  EXPECT_EQ(version, 0x00010002u);
}

TEST_F(PsFile, ACommentThatIsNoneIsLogged) {
  for (const char* line : {"", "PS-AdobeFont-1.0: A 1.2", "%PS-AdobeFont-1.0: A 1.2",
                           "%!PS-AdobeFont-1.0:", "%!PS-AdobeFont-1.0: A", "% !x A 1.2"}) {
    const std::string path = Pfb(MakePfbOfLine(line));
    EXPECT_FALSE(GetPSNameAndVersion(path.c_str(), nullptr, nullptr)) << line;
    EXPECT_EQ(Log(), "GetPSNameAndVersion error: The comment line in " + path +
                         " is malformed and cannot be parsed.\n");
  }
}

TEST_F(PsFile, AVersionThatIsNoneIsLogged) {
  for (const char* text : {"1", "x.1", "1.x", ".", "1.", ".1"}) {
    const std::string path = Pfb(MakePfb("A", text));
    uint32_t version = 0;
    EXPECT_FALSE(GetPSNameAndVersion(path.c_str(), nullptr, &version)) << text;
    EXPECT_EQ(Log(), "Error parsing font version in " + path + ".\n");
  }
}

TEST_F(PsFile, BoldAndItalicMetricsGiveThree) {
  PfmSpec spec;
  spec.weight = 700;
  spec.italic = 1;
  uint32_t style = 0;
  EXPECT_TRUE(GetPfmStyle(Pfm(MakePfm(spec)).c_str(), style));
  EXPECT_EQ(style, 3u);
}

TEST_F(PsFile, AMissingMetricsFileIsLogged) {
  const std::string path = mDir.Join("none.pfm");
  uint32_t style = 0;
  EXPECT_FALSE(GetPfmStyle(path.c_str(), style));
  EXPECT_EQ(Log(),
            "PostScript data failure: couldn't get style flags as font file " + path + " doesn't exist.\n");
  EXPECT_FALSE(GetPfmNames(path.c_str(), nullptr, nullptr));
  EXPECT_EQ(Log(),
            "PostScript data failure: couldn't get font names as font file " + path + " doesn't exist.\n");
}

TEST_F(PsFile, AShortMetricsHeaderIsLogged) {
  const std::string bytes = MakePfm({});
  uint32_t style = 0;
  for (const size_t size : {0, 1, 116}) {
    const std::string path = Pfm(bytes.substr(0, size));
    EXPECT_FALSE(GetPfmStyle(path.c_str(), style));
    EXPECT_EQ(Log(), "PostScript data failure: opened file doesn't contain complete PFMHEADER structure.\n");
    EXPECT_FALSE(GetPfmNames(path.c_str(), nullptr, nullptr));
    EXPECT_EQ(Log(), "PostScript data failure: opened file " + path +
                         " doesn't contain complete PFMHEADER structure.\n");
  }
  EXPECT_FALSE(GetPfmStyle(Pfm(bytes.substr(0, 118)).c_str(), style));
  EXPECT_TRUE(GetPfmStyle(Pfm(bytes.substr(0, 119)).c_str(), style));
}

TEST_F(PsFile, AShortMetricsExtensionIsLogged) {
  const std::string bytes = MakePfm({});
  for (const size_t size : {117, 146}) {
    const std::string path = Pfm(bytes.substr(0, size));
    EXPECT_FALSE(GetPfmNames(path.c_str(), nullptr, nullptr));
    EXPECT_EQ(Log(), "PostScript data failure: opened file " + path +
                         " doesn't contain complete PFMEXTENSION structure.\n");
  }
}

TEST_F(PsFile, MetricsGiveBothNames) {
  const std::string path = Pfm(MakePfm({}));
  Str face;
  Str ps;
  EXPECT_TRUE(GetPfmNames(path.c_str(), &face, &ps));
  EXPECT_STREQ(face.Chars(), "Veltrane PS");
  EXPECT_STREQ(ps.Chars(), "VeltranePS");
  EXPECT_TRUE(GetPfmNames(path.c_str(), nullptr, nullptr));
}

TEST_F(PsFile, NamesOutsideTheMetricsFileAreLogged) {
  const std::string bytes = MakePfm({});
  ByteWriter outside(ByteWriter::Order::kLittle);
  outside.Text(bytes);
  outside.PatchU32(kPfmFaceAt, 0xFFFFFFFF);
  for (const std::string& bad : {outside.Bytes(), bytes.substr(0, bytes.size() - 1)}) {
    const std::string path = Pfm(bad);
    EXPECT_FALSE(GetPfmNames(path.c_str(), nullptr, nullptr));
    EXPECT_EQ(Log(), "PostScript data failure: the font names in " + path + " lie outside the file.\n");
  }
}

// ---- the pure readers ----

std::span<const std::byte> AsBytes(const std::string& text) {
  return std::as_bytes(std::span<const char>(text.data(), text.size()));
}

TEST(PsReader, NamesAreCutAt64Characters) {
  PfmSpec spec;
  spec.faceName = std::string(65, 'f');
  spec.psName = std::string(1500, 'p');  // longer than what is read of a name
  PfmNames names;
  ASSERT_EQ(ReadPfmNames(AsBytes(MakePfm(spec)), names), PfmResult::kOk);
  EXPECT_EQ(names.faceName, std::string(64, 'f'));
  EXPECT_EQ(names.psName, std::string(64, 'p'));
  PfbComment comment;
  ASSERT_TRUE(ParsePfbComment("%!x " + std::string(65, 'n') + " 1.2", comment));
  EXPECT_EQ(comment.psName, std::string(64, 'n'));
}

TEST(PsReader, TheFirstPercentWithItsMarkBegins) {
  PfbComment comment;
  ASSERT_TRUE(ParsePfbComment("% x %!  tag   name\t7.8 rest", comment));
  EXPECT_EQ(comment.psName, "name");
  EXPECT_EQ(comment.version, "7.8");
}

TEST(PsReader, ANulEndsTheComment) {
  PfbComment comment;
  EXPECT_FALSE(ParsePfbComment(std::string_view("%!x name\0 1.2", 13), comment));
}

TEST(PsReader, VersionsAreTwoDecimalNumbers) {
  const struct {
    const char* text;
    uint32_t version;
  } kVersions[] = {{"0.0", 0},           {"001.003", 65539},     {"1.65536", 0x10000},
                   {"2.65537", 0x20001}, {"3.1b", 0x30001},      {"65535.65535", 0xFFFFFFFF},
                   {"4.5.6", 0x40005},   {"65537.1", 0x00010001}};
  for (const auto& [text, expected] : kVersions) {
    uint32_t version = 1;
    EXPECT_TRUE(ParsePsVersion(text, version)) << text;
    EXPECT_EQ(version, expected) << text;
  }
}

TEST(PsReader, WeightsAbove400AreBold) {
  for (const unsigned weight : {0u, 400u, 401u, 0xFFFFu}) {
    PfmSpec spec;
    spec.weight = weight;
    uint32_t style = 9;
    ASSERT_TRUE(PfmStyle(AsBytes(MakePfm(spec)), style));
    EXPECT_EQ(style, weight > 400 ? 1u : 0u);
    spec.italic = 0xFF;
    ASSERT_TRUE(PfmStyle(AsBytes(MakePfm(spec)), style));
    EXPECT_EQ(style, weight > 400 ? 3u : 2u);
  }
}

// ---- Adobe Type Manager ----

TEST_F(AtmTest, TheLibraryIsLoadedAndLetGo) {
  {
    const AtmLibrary atm;
    EXPECT_TRUE(atm.IsInstalled());
    EXPECT_TRUE(atm.IsLoaded());
    uint16_t major = 0;
    uint16_t minor = 0;
    atm.GetVersion(major, minor);
    EXPECT_EQ(major, 4);
    EXPECT_EQ(minor, 1);
  }
  EXPECT_EQ(Calls(), "ATMProperlyLoaded\nATMFinish\n");
}

TEST_F(AtmTest, ALibraryThatIsNotRunningIsInstalledOnly) {
  Answer("ATM", "loaded", "0");
  const AtmLibrary atm;
  EXPECT_TRUE(atm.IsInstalled());
  EXPECT_FALSE(atm.IsLoaded());
}

TEST_F(AtmTest, EachOfTheThreeNamesIsTried) {
  for (const char* name : {"ATM.dll", "ATM32.dll", "ATM16.dll"}) {
    Install(name);
    const AtmLibrary atm;
    EXPECT_TRUE(atm.IsLoaded()) << name;
  }
}

TEST_F(AtmTest, ALibraryWithoutTheEntryPointsIsPassedOver) {
  Install("ATM16.dll");
  PutFile("ATM.dll", ReadWholeFile(HelperPath("selfreg.dll")));
  EXPECT_TRUE(AtmLibrary().IsLoaded());
  Install(nullptr);
  PutFile("ATM32.dll", ReadWholeFile(HelperPath("selfreg.dll")));
  EXPECT_FALSE(AtmLibrary().IsInstalled());
  PutFile("ATM32.dll", "no library");
  EXPECT_FALSE(AtmLibrary().IsInstalled());
}

TEST_F(AtmTest, WithoutTheLibraryNothingIsLoaded) {
  Install(nullptr);
  const AtmLibrary atm;
  EXPECT_FALSE(atm.IsInstalled());
  EXPECT_FALSE(atm.IsLoaded());
}

TEST_F(AtmTest, PathsComeFromTheLibrary) {
  InstallFont("Veltrane PS", 0, "C:\\f\\a.pfb", "C:\\f\\a.pfm");
  const AtmLibrary atm;
  Str pfb;
  Str pfm;
  EXPECT_TRUE(GetATMFontPaths(atm, "Veltrane PS", 0, pfb, pfm));
  EXPECT_STREQ(pfb.Chars(), "C:\\f\\a.pfb");
  EXPECT_STREQ(pfm.Chars(), "C:\\f\\a.pfm");
}

TEST_F(AtmTest, PathsOfFullLengthArriveWhole) {
  const std::string path = "C:\\" + std::string(257, 'x');
  InstallFont("Veltrane PS", 0, path, path);
  const AtmLibrary atm;
  Str pfb;
  Str pfm;
  EXPECT_TRUE(GetATMFontPaths(atm, "Veltrane PS", 0, pfb, pfm));
  EXPECT_EQ(pfb.Chars(), path);
  EXPECT_EQ(pfm.Chars(), path);
}

TEST_F(AtmTest, ALongWindowsNameIsCut) {
  InstallFont(std::string(31, 'n'), 0, "C:\\a.pfb", "C:\\a.pfm");
  const AtmLibrary atm;
  Str pfb;
  Str pfm;
  EXPECT_TRUE(GetATMFontPaths(atm, std::string(64, 'n').c_str(), 0, pfb, pfm));
}

TEST_F(AtmTest, FailedPathsAreLogged) {
  Answer("Veltrane PS,0", "paths", "-409");
  const AtmLibrary atm;
  Str pfb;
  Str pfm;
  EXPECT_FALSE(GetATMFontPaths(atm, "Veltrane PS", 0, pfb, pfm));
  EXPECT_TRUE(pfb.IsEmpty() && pfm.IsEmpty());
  EXPECT_EQ(Log(),
            "GetATMFontPaths: ATMGetFontPaths (ATM API) failed on font Veltrane PS. Error value: -409.\n");
}

TEST_F(AtmTest, TheVersionComesFromTheInstalledOutline) {
  InstallFont("Veltrane PS", 0, mDir.Write("i.pfb", MakePfb("VeltranePS", "3.4")), "x");
  const AtmLibrary atm;
  uint32_t version = 0;
  EXPECT_TRUE(GetVersionOfATMFont(atm, "Veltrane PS", 0, version));
  EXPECT_EQ(version, 0x00030004u);
}

TEST_F(AtmTest, AnEmptyOutlinePathIsLogged) {
  InstallFont("Veltrane PS", 0, "", "C:\\f\\a.pfm");
  const AtmLibrary atm;
  uint32_t version = 0;
  EXPECT_FALSE(GetVersionOfATMFont(atm, "Veltrane PS", 0, version));
  EXPECT_EQ(Log(), "GetVersionOfATMFont: The path for font Veltrane PS is empty.\n");
}

TEST_F(AtmTest, TheStatusIsHandedOn) {
  const AtmLibrary atm;
  for (const int expected : {AtmLibrary::kFontInUse, AtmLibrary::kFontPresent, AtmLibrary::kFontDifferent,
                             AtmLibrary::kFontAbsent}) {
    Answer("ATM", "status", std::to_string(expected).c_str());
    int status = 0;
    EXPECT_TRUE(IsATMFontInUse(atm, "Veltrane PS", 3, status));
    EXPECT_EQ(status, expected);
  }
  EXPECT_EQ(Log(), "");
}

TEST_F(AtmTest, AFailedStatusIsLogged) {
  Answer("ATM", "status", "-7");
  const AtmLibrary atm;
  int status = 0;
  EXPECT_FALSE(IsATMFontInUse(atm, "Veltrane PS", 0, status));
  EXPECT_EQ(Log(), "IsATMFontInUse: Call to 'ATMFontStatus' (ATM API) failed for Veltrane PS. Error: -7.\n");
}

// ---- Atm.ini ----

TEST_F(AtmTest, TheLineOfEachStyleIsRemoved) {
  const struct {
    uint32_t style;
    const char* key;
  } kLines[] = {
      {0, "Veltrane PS"}, {1, "Veltrane PS,BOLD"}, {2, "Veltrane PS,ITALIC"}, {3, "Veltrane PS,BOLDITALIC"}};
  std::string all = "[Fonts]\r\nOther=a,b\r\n";
  for (const auto& line : kLines) all += std::string(line.key) + "=c:\\psfonts\\a.pfm,c:\\psfonts\\a.pfb\r\n";
  for (const auto& [style, key] : kLines) {
    mDir.Write("Windows\\Atm.ini", all);
    RemoveATMIniLine("Veltrane PS", style);
    for (const auto& line : kLines)
      EXPECT_EQ(Contains(mDir.Read("Windows\\Atm.ini"), std::string(line.key) + "="), line.style != style)
          << key;
    EXPECT_TRUE(Contains(mDir.Read("Windows\\Atm.ini"), "Other=a,b"));
  }
  EXPECT_EQ(Log(), "");
}

TEST_F(AtmTest, AMissingAtmIniIsLogged) {
  RemoveATMIniLine("Veltrane PS", 0);
  EXPECT_EQ(Log(), "RemoveATMIniLine: " + mDir.Join("Windows\\Atm.ini") + " doesn't exist.\n");
}

TEST_F(AtmTest, AnAtmIniThatCannotBeWrittenIsLogged) {
  const std::string path = mDir.Write("Windows\\Atm.ini", "[Fonts]\r\nVeltrane PS=a,b\r\n");
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY));
  RemoveATMIniLine("Veltrane PS", 0);
  EXPECT_EQ(Log(), "RemoveATMIniLine: Couldn't remove font Veltrane PS from " + path + ".\n");
  EXPECT_TRUE(Contains(mDir.Read("Windows\\Atm.ini"), "Veltrane PS=a,b"));
}

// ---- removal ----

class AtmRemoval : public AtmTest {
 protected:
  void SetUp() override {
    AtmTest::SetUp();
    PfmSpec spec;
    spec.weight = 700;
    mNewPfb = mDir.Write("new\\v.pfb", MakePfb("VeltranePS", "2.0"));
    mNewPfm = mDir.Write("new\\v.pfm", MakePfm(spec));
    mOldPfm = mDir.Write("old\\v.pfm", MakePfm(spec));
    SetInstalled("1.65535");
    mDir.Write("Windows\\Atm.ini", "[Fonts]\r\nVeltrane PS,BOLD=a,b\r\n");
  }
  void SetInstalled(const char* version) {
    mOldPfb = mDir.Write("old\\v.pfb", MakePfb("VeltranePS", version));
    // The library counts bold as 2.
    AtmTest::InstallFont("Veltrane PS", 2, mOldPfb, mOldPfm);
  }
  void RemoveOld() {
    const AtmLibrary atm;
    RemoveOldPSFont(atm, mNewPfb.c_str(), mNewPfm.c_str());
  }
  void RemoveAny() {
    const AtmLibrary atm;
    RemovePSFont(atm, mNewPfb.c_str(), mNewPfm.c_str());
  }
  bool IsStillThere() const { return PathExists(mOldPfb) && PathExists(mOldPfm); }
  bool IsGone() const { return !PathExists(mOldPfb) && !PathExists(mOldPfm); }
  bool HasIniLine() const { return Contains(mDir.Read("Windows\\Atm.ini"), "Veltrane PS,BOLD"); }
  std::string Deleted() const {
    return "    Deleted the font files: " + mOldPfb + ", and " + mOldPfm + ".\n";
  }

  std::string mNewPfb;
  std::string mNewPfm;
  std::string mOldPfb;
  std::string mOldPfm;
};

constexpr char kRefusal[] =
    "Installation de Veltrane 6.0c ne peut pas supprimer la police PostScript Type 1 VeltranePS de Adobe "
    "Type "
    "Manager (ATM). Cette police est trop ancienne. Pour \xe9viter d'\xe9ventuels probl\xe8mes d'affichage, "
    "supprimez cette police manuellement avec ATM.";

TEST_F(AtmRemoval, AnOlderFontIsRemovedWithItsFiles) {
  RemoveOld();
  EXPECT_EQ(Log(), "ATM Api: ATMRemoveFont return value = 0.\n" + Deleted());
  EXPECT_TRUE(IsGone());
  EXPECT_FALSE(HasIniLine());
  EXPECT_TRUE(PathExists(mNewPfb) && PathExists(mNewPfm));
  EXPECT_TRUE(Contains(Calls(), "ATMBeginFontChange\nATMRemoveFontA Veltrane PS,2\nATMEndFontChange\n"));
}

TEST_F(AtmRemoval, TheSameOrANewerFontIsKept) {
  for (const char* version : {"2.0", "2.1", "10.0"}) {
    SetInstalled(version);
    RemoveOld();
    EXPECT_EQ(
        Log(),
        "    The installed font VeltranePS is either the same as or newer than the one we're attempting to "
        "install. For this reason, the installed ATM font was not removed.\n");
    EXPECT_TRUE(IsStillThere());
  }
  EXPECT_FALSE(Contains(Calls(), "ATMRemoveFontA"));
}

TEST_F(AtmRemoval, AFontThatIsNotInstalledIsLogged) {
  Answer("Veltrane PS,2", "paths", "-409");
  for (const bool old : {true, false}) {
    old ? RemoveOld() : RemoveAny();
    EXPECT_EQ(Log(),
              "GetATMFontPaths: ATMGetFontPaths (ATM API) failed on font Veltrane PS. Error value: -409.\n"
              "    The font VeltranePS was not removed because it is not installed on the user's system.\n");
  }
}

TEST_F(AtmRemoval, AnOldFontWithoutAnOutlineFileIsNotInstalled) {
  const std::string notInstalled =
      "    The font VeltranePS was not removed because it is not installed on the user's system.\n";
  ASSERT_TRUE(DeleteTree(mOldPfb));
  RemoveOld();
  EXPECT_EQ(Log(), "    GetPSNameAndVersion error: " + mOldPfb + " does not exist.\n" + notInstalled);
  AtmTest::InstallFont("Veltrane PS", 2, "", mOldPfm);
  RemoveOld();
  EXPECT_EQ(Log(), "GetVersionOfATMFont: The path for font Veltrane PS is empty.\n" + notInstalled);
  EXPECT_FALSE(Contains(Calls(), "ATMRemoveFontA"));
}

TEST_F(AtmRemoval, FilesThatCannotBeExaminedAreLogged) {
  const std::string line =
      "    Installation de Veltrane 6.0c was unable to examine the required font files: " + mNewPfm +
      " and " + mNewPfb + ".\n";
  mDir.Write("new\\v.pfm", "short");
  RemoveOld();
  EXPECT_TRUE(Contains(Log(), line));
  RemoveAny();
  EXPECT_TRUE(Contains(Log(), line));
  ASSERT_TRUE(DeleteTree(mNewPfb));
  RemoveOld();
  EXPECT_TRUE(Contains(Log(), line));
  EXPECT_TRUE(IsStillThere());
  EXPECT_FALSE(Contains(Calls(), "ATMRemoveFontA"));
}

TEST_F(AtmRemoval, AnInstalledFontWithoutReadableVersionIsKept) {
  mDir.Write("old\\v.pfb", "no font");
  RemoveOld();
  EXPECT_TRUE(IsStillThere());
  EXPECT_FALSE(Contains(Calls(), "ATMRemoveFontA"));
  EXPECT_TRUE(Contains(Log(), "GetPSNameAndVersion: "));
}

TEST_F(AtmRemoval, ARefusalOfAnOldFontIsShownAndTheFilesStay) {
  Answer("ATM", "remove", "-5");
  RemoveOld();
  const std::string log = Log();
  EXPECT_TRUE(Contains(log, "ATM Api: ATMRemoveFont return value = -5.\n")) << log;
  EXPECT_TRUE(Contains(log, kRefusal)) << log;
  EXPECT_TRUE(IsStillThere());
  EXPECT_TRUE(HasIniLine());
}

TEST_F(AtmRemoval, ByFilesARefusalIsOnlyLoggedAndTheFilesStay) {
  Answer("ATM", "remove", "-5");
  RemoveAny();
  EXPECT_EQ(Log(), "ATM Api: ATMRemoveFont return value = -5.\n");
  EXPECT_TRUE(IsStillThere());
  EXPECT_TRUE(HasIniLine());
}

TEST_F(AtmRemoval, FilesThatAtmDeletedItselfCountAsDeleted) {
  ASSERT_TRUE(DeleteTree(mOldPfm));
  RemoveOld();
  EXPECT_EQ(Log(), "ATM Api: ATMRemoveFont return value = 0.\n" + Deleted());
  EXPECT_TRUE(IsGone());
}

TEST_F(AtmRemoval, FilesThatCannotBeDeletedAreNotCalledDeleted) {
  const FileHandle held(
      CreateFileA(mOldPfm.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(static_cast<bool>(held));
  RemoveOld();
  EXPECT_EQ(Log(), "ATM Api: ATMRemoveFont return value = 0.\n    Couldn't delete the font files: " +
                       mOldPfb + ", and " + mOldPfm + ".\n");
}

TEST_F(AtmRemoval, ByFilesTheAgeDoesNotMatter) {
  SetInstalled("9.0");
  RemoveAny();
  EXPECT_EQ(Log(), "ATM Api: ATMRemoveFont return value = 0.\n" + Deleted());
  EXPECT_TRUE(IsGone());
  EXPECT_FALSE(HasIniLine());
}

TEST_F(AtmRemoval, ByFilesAFontInUseIsKept) {
  Answer("ATM", "status", "-406");
  RemoveAny();
  EXPECT_EQ(Log(), "    The font VeltranePS was not removed because it is in use. Status: -406.\n");
  EXPECT_TRUE(IsStillThere());
  EXPECT_TRUE(HasIniLine());
  EXPECT_FALSE(Contains(Calls(), "ATMRemoveFontA"));
}

TEST_F(AtmRemoval, ByFilesAMissingAtmIniIsLogged) {
  ASSERT_TRUE(DeleteTree(mDir.Join("Windows\\Atm.ini")));
  RemoveAny();
  EXPECT_EQ(Log(), "ATM Api: ATMRemoveFont return value = 0.\n" + Deleted() +
                       "RemoveATMIniLine: " + mDir.Join("Windows\\Atm.ini") + " doesn't exist.\n");
}

}  // namespace
