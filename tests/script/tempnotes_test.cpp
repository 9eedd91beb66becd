#include "script/tempnotes.h"

#include "platform/fs.h"
#include "script/leftovers.h"
#include "script_fixture.h"

namespace {

using Names = std::vector<std::string>;

class TempNotes : public ScriptTest {
 protected:
  std::string ListPath() const { return mDir.Join("temp\\QLSetup.lst"); }
  Names InProg() const { return NamesIn(mDir.Join("prog")); }
};

TEST_F(TempNotes, NothingIsWrittenBeforeTheFirstNote) {
  const TempNotesScope scope;
  EXPECT_FALSE(PathExists(ListPath()));
}

TEST_F(TempNotes, TheListLivesAsLongAsTheOutermostScope) {
  {
    const TempNotesScope outer;
    {
      const TempNotesScope inner;
      NoteInstallFolder(mDir.Join("prog").c_str());
    }
    EXPECT_TRUE(PathExists(ListPath()));
  }
  EXPECT_FALSE(PathExists(ListPath()));
}

TEST_F(TempNotes, WithoutAScopeNothingIsNoted) {
  NoteTempFile(Prog("~a").c_str());
  EXPECT_FALSE(PathExists(ListPath()));
}

TEST_F(TempNotes, WithoutATemporaryFolderTheRunGoesOn) {
  AppSetVariable("TempDir", mDir.Join("missing").c_str());
  const TempNotesScope scope;
  NoteInstallFolder(mDir.Join("prog").c_str());
  NoteTempFile(Prog("~a").c_str());
  EXPECT_EQ(Log(), "The list of temporary files could not be made.\n");
}

TEST_F(TempNotes, ASweepDeletesOnlyWhatCameAfterTheNote) {
  mDir.Write("prog\\ver1.tmp", "older");
  mDir.Write("prog\\verse.tmp", "not of that form");
  const TempNotesScope scope;
  NoteInstallFolder(mDir.Join("prog").c_str());
  mDir.Write("prog\\ver2.tmp", "left");
  NoteInstallFolder(mDir.Join("PROG").c_str());  // noted already
  SweepInstallFolder(mDir.Join("Prog").c_str());
  EXPECT_EQ(InProg(), (Names{"ver1.tmp", "verse.tmp"}));
}

TEST_F(TempNotes, AFolderThatIsNotNotedIsNotSwept) {
  mDir.Write("prog\\ver1.tmp", "");
  const TempNotesScope scope;
  SweepInstallFolder(mDir.Join("prog").c_str());
  EXPECT_EQ(InProg(), (Names{"ver1.tmp"}));
}

TEST_F(TempNotes, WhatAKilledRunLeftIsDeleted) {
  WriteWholeFile(ListPath(), FolderNote(mDir.Join("prog"), {"ver1.tmp"}) + FileNote(Prog("~a.dll")) +
                                 FileNote(Prog("~b.dll")) + ForgetNote(Prog("~b.dll")) +
                                 FileNote(Prog("kept.dll")));
  for (const char* name : {"ver1.tmp", "ver2.tmp", "~a.dll", "~b.dll", "kept.dll"})
    mDir.Write(std::string("prog\\") + name, "");
  EXPECT_TRUE(PrepareFileList());
  EXPECT_EQ(InProg(), (Names{"kept.dll", "ver1.tmp", "~b.dll"}));
  EXPECT_FALSE(PathExists(ListPath()));
  EXPECT_EQ(Log(), "Deleting " + Prog("ver2.tmp") + ", result = success\nDeleting " + Prog("~a.dll") +
                       ", result = success\n");
}

TEST_F(TempNotes, ANewListTakesCareOfAnOldOne) {
  WriteWholeFile(ListPath(), FolderNote(mDir.Join("prog"), {}));
  mDir.Write("prog\\ver2.tmp", "");
  const TempNotesScope scope;
  NoteTempFile(Prog("~a").c_str());
  EXPECT_TRUE(InProg().empty());
}

TEST_F(TempNotes, AListThatAnotherRunHoldsIsLeftAlone) {
  WriteWholeFile(ListPath(), FolderNote(mDir.Join("prog"), {}));
  mDir.Write("prog\\ver2.tmp", "");
  {
    const FileHandle held(
        CreateFileA(ListPath().c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    DeleteLeftovers();
    EXPECT_EQ(InProg(), (Names{"ver2.tmp"}));
    const TempNotesScope scope;
    NoteTempFile(Prog("~a").c_str());
  }
  EXPECT_TRUE(PathExists(ListPath()));
}

std::string gListDuringCopy;

DWORD WINAPI FindInPlace(DWORD, LPCSTR, LPCSTR, LPCSTR appDir, LPSTR, PUINT, LPSTR destDir, PUINT) {
  lstrcpynA(destDir, appDir, 260);
  return 0;
}
// Reads the list at the moment at which a killed run would leave it.
DWORD WINAPI ReadingInstall(DWORD, LPCSTR, LPCSTR, LPCSTR, LPCSTR, LPCSTR, LPSTR, PUINT) {
  const std::string list = std::string(AppGetExpanded("TempDir")) + "\\QLSetup.lst";
  gListDuringCopy = PathExists(list) ? "held" : "missing";
  return 0;
}

TEST_F(TempNotes, TheListIsThereBeforeTheInstallFunctionRuns) {
  static constexpr VersionApi kReading = {FindInPlace, ReadingInstall, nullptr, nullptr, nullptr};
  SetVersionApi(&kReading);
  ListFile("a.txt", "text");
  BeSilent();
  EXPECT_TRUE(CopyAll());
  EXPECT_EQ(gListDuringCopy, "held");
  EXPECT_FALSE(PathExists(ListPath()));
}

TEST_F(TempNotes, TemporaryFilesOfTheFileSystemLayerAreNoted) {
  mDir.Write("dist\\a.txt", "text");
  {
    const TempNotesScope scope;
    EXPECT_TRUE(FS::Copy(Dist("a.txt").c_str(), Prog("a.txt").c_str(), false));
    EXPECT_TRUE(PathExists(ListPath()));
  }
  EXPECT_TRUE(FS::Copy(Dist("a.txt").c_str(), Prog("b.txt").c_str(), false));
  EXPECT_FALSE(PathExists(ListPath())) << "nothing is noted outside a scope";
  EXPECT_EQ(InProg(), (Names{"a.txt", "b.txt"}));
}

TEST_F(TempNotes, AnInstallationLeavesNoList) {
  ListFile("a.txt", "text");
  BeSilent();
  EXPECT_TRUE(CopyAll());
  EXPECT_TRUE(NamesIn(mDir.Join("temp")).empty());
}

}  // namespace
