#include "script/tempnotes.h"

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

TEST_F(TempNotes, AnInstallationLeavesNoList) {
  ListFile("a.txt", "text");
  BeSilent();
  EXPECT_TRUE(CopyAll());
  EXPECT_TRUE(NamesIn(mDir.Join("temp")).empty());
}

}  // namespace
