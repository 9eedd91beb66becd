#include "script/filetree.h"
#include "script/script_fixture.h"
#include "script/versioned_file.h"
#include "support/files.h"
#include "support/library_maker.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"

namespace {

using Names = std::vector<std::string>;

class FileTasks : public ScriptTest {
 protected:
  static void Call(TaskHandler handler, const char* name, const std::string& args) {
    EXPECT_EQ(handler(name, args.c_str(), nullptr), 1);
  }
  static void FileSys(const std::string& args) { Call(Task_file_sys, "file_sys", args); }
  static void DirDel(const std::string& args) { Call(Task_dir_del, "dir_del", args); }
  std::string Path(const std::string& name) const { return mDir.Join(name); }
};

TEST_F(FileTasks, DeleteRemovesAFile) {
  mDir.Write("a.txt", "x");
  SetFileAttributesA(Path("a.txt").c_str(), FILE_ATTRIBUTE_READONLY);
  FileSys("DELETE," + Path("a.txt"));
  EXPECT_FALSE(mDir.Has("a.txt"));
  EXPECT_EQ(Log(), "");
}

TEST_F(FileTasks, DeleteOfAMissingFileLogsNothing) {
  FileSys("delete," + Path("gone.txt"));
  EXPECT_EQ(Log(), "");
}

TEST_F(FileTasks, DeleteRemovesAnEmptyFolder) {
  mDir.MakeFolder("empty");
  FileSys("delete," + Path("empty"));
  EXPECT_FALSE(mDir.Has("empty"));
}

TEST_F(FileTasks, DeleteKeepsAFolderThatHoldsSomething) {
  mDir.Write("full\\a.txt", "x");
  FileSys("delete," + Path("full"));
  EXPECT_TRUE(mDir.Has("full\\a.txt"));
  EXPECT_EQ(Log(), "    Attempt to delete the existing file, " + Path("full") + ", failed.\n");
}

TEST_F(FileTasks, DeleteOfAHeldFileIsLogged) {
  mDir.Write("a.txt", "x");
  const FileHandle held(
      CreateFileA(Path("a.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  FileSys("delete," + Path("a.txt"));
  EXPECT_EQ(Log(), "    Attempt to delete the existing file, " + Path("a.txt") + ", failed.\n");
}

TEST_F(FileTasks, RenameMovesFilesAndFolders) {
  mDir.Write("a.txt", "x");
  mDir.Write("one\\b.txt", "y");
  FileSys("rename," + Path("a.txt") + "," + Path("c.txt"));
  FileSys("Rename," + Path("one") + "," + Path("two"));
  EXPECT_EQ(mDir.Read("c.txt"), "x");
  EXPECT_EQ(mDir.Read("two\\b.txt"), "y");
  EXPECT_FALSE(mDir.Has("a.txt"));
  EXPECT_FALSE(mDir.Has("one"));
  EXPECT_EQ(Log(), "");
}

TEST_F(FileTasks, RenameOfAMissingFileDoesNothing) {
  mDir.Write("c.txt", "x");
  FileSys("rename," + Path("gone.txt") + "," + Path("c.txt"));
  EXPECT_EQ(Log(), "");
}

TEST_F(FileTasks, RenameOntoAnExistingFileSaysSo) {
  mDir.Write("a.txt", "x");
  mDir.Write("b.txt", "y");
  FileSys("rename," + Path("a.txt") + "," + Path("b.txt"));
  EXPECT_EQ(mDir.Read("b.txt"), "y");
  EXPECT_EQ(Log(), "    Attempt to rename the existing file/dir, " + Path("a.txt") + " to " + Path("b.txt") +
                       ", failed because the target path already exists.\n");
}

TEST_F(FileTasks, RenameIntoAMissingFolderFails) {
  mDir.Write("a.txt", "x");
  FileSys("rename," + Path("a.txt") + "," + Path("none\\b.txt"));
  EXPECT_EQ(Log(), "    Attempt to rename the existing file/dir, " + Path("a.txt") + " to " +
                       Path("none\\b.txt") + ", failed.\n");
}

TEST_F(FileTasks, CopyMayOverwrite) {
  mDir.Write("a.txt", "new");
  mDir.Write("b.txt", "old");
  FileSys("copy," + Path("a.txt") + "," + Path("b.txt"));
  EXPECT_EQ(mDir.Read("a.txt"), "new");
  EXPECT_EQ(mDir.Read("b.txt"), "new");
  EXPECT_EQ(Log(), "");
}

TEST_F(FileTasks, CopyTakesAWholeFolder) {
  mDir.Write("one\\a.txt", "1");
  mDir.Write("one\\deep\\b.txt", "2");
  mDir.MakeFolder("one\\empty");
  FileSys("copy," + Path("one") + "," + Path("two"));
  EXPECT_EQ(mDir.Read("two\\a.txt"), "1");
  EXPECT_EQ(mDir.Read("two\\deep\\b.txt"), "2");
  EXPECT_TRUE(IsFolder(Path("two\\empty")));
  EXPECT_EQ(Log(), "");
}

TEST_F(FileTasks, CopyOfAMissingFileDoesNothing) {
  FileSys("copy," + Path("gone") + "," + Path("two"));
  EXPECT_EQ(Log(), "");
  EXPECT_FALSE(mDir.Has("two"));
}

TEST_F(FileTasks, CopyOntoAHeldFileSaysThatItExists) {
  mDir.Write("a.txt", "new");
  mDir.Write("b.txt", "old");
  const FileHandle held(
      CreateFileA(Path("b.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  FileSys("copy," + Path("a.txt") + "," + Path("b.txt"));
  EXPECT_EQ(Log(), "    Attempt to copy the existing file/dir, " + Path("a.txt") + " to " + Path("b.txt") +
                       ", failed because the target path already exists.\n");
}

TEST_F(FileTasks, AFolderIsNotCopiedIntoItself) {
  mDir.Write("one\\a.txt", "1");
  FileSys("copy," + Path("one") + "," + Path("ONE\\sub"));
  EXPECT_FALSE(mDir.Has("one\\sub"));
  EXPECT_TRUE(Holds(Log(), "Attempt to copy the existing file/dir"));
}

TEST_F(FileTasks, AnUnknownOperationIsNamed) {
  FileSys("move,a,b");
  EXPECT_EQ(Log(), "    Task_file_sys: unrecognized file system operation \"move\".\n");
}

TEST_F(FileTasks, MissingPathsAssert) {
  {
    AssertRecorder recorder;
    FileSys("delete");
    FileSys("rename,a");
    FileSys("copy,a");
    EXPECT_EQ(recorder.Texts(), (Names{"arg1.Length()", "arg2.Length()", "arg2.Length()"}));
  }
  EXPECT_TRUE(Holds(Log(), "The arguments for the task file_sys in Setup.inf are unknown.\n"));
}

TEST_F(FileTasks, NoOperationIsUnknown) {
  FileSys("");
  EXPECT_EQ(Log(),
            "The arguments for the task file_sys in Setup.inf are unknown.\n"
            "    Task_file_sys: unrecognized file system operation \"\".\n");
}

TEST_F(FileTasks, SurplusArgumentsAreIgnored) {
  mDir.Write("a.txt", "x");
  FileSys("delete," + Path("a.txt") + ",more,and more");
  EXPECT_FALSE(mDir.Has("a.txt"));
}

TEST_F(FileTasks, FileSysActsWithoutDataAndInPass0) {
  int32_t pass = 1;
  mDir.Write("a.txt", "x");
  const std::string args = "delete," + Path("a.txt");
  EXPECT_EQ(Task_file_sys("file_sys", args.c_str(), &pass), 1);
  EXPECT_TRUE(mDir.Has("a.txt"));
  pass = 0;
  EXPECT_EQ(Task_file_sys("file_sys", args.c_str(), &pass), 1);
  EXPECT_FALSE(mDir.Has("a.txt"));
}

TEST_F(FileTasks, DirDelRemovesATree) {
  mDir.Write("tree\\a.txt", "1");
  mDir.Write("tree\\deep\\er\\b.txt", "2");
  SetFileAttributesA(Path("tree\\a.txt").c_str(), FILE_ATTRIBUTE_READONLY);
  DirDel(Path("tree"));
  EXPECT_FALSE(mDir.Has("tree"));
  EXPECT_EQ(Log(), "");
}

TEST_F(FileTasks, DirDelTakesAQuotedFolderWithACommaInItsName) {
  mDir.Write("one, two\\a.txt", "1");
  DirDel("\"" + Path("one, two") + "\"");
  EXPECT_FALSE(mDir.Has("one, two"));
}

TEST_F(FileTasks, DirDelIgnoresFilesAndMissingFolders) {
  mDir.Write("a.txt", "1");
  DirDel(Path("a.txt"));
  DirDel(Path("gone"));
  EXPECT_TRUE(mDir.Has("a.txt"));
  EXPECT_EQ(Log(), "");
}

TEST_F(FileTasks, DirDelLogsAFailure) {
  mDir.Write("tree\\a.txt", "1");
  const FileHandle held(
      CreateFileA(Path("tree\\a.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  DirDel(Path("tree"));
  EXPECT_EQ(Log(),
            "    Attempt to recursively delete the existing directory, " + Path("tree") + ", failed.\n");
}

TEST_F(FileTasks, DirDelRefusesRootsAndTheWindowsFolders) {
  char windows[MAX_PATH] = "";
  GetWindowsDirectoryA(windows, MAX_PATH);
  char shortWindows[MAX_PATH] = "";
  GetShortPathNameA(windows, shortWindows, MAX_PATH);
  for (const std::string& folder :
       Names{"C:\\", "c:", std::string(windows), std::string(windows) + "\\", shortWindows,
             std::string(windows) + "\\system32", std::string(windows) + "\\.",
             std::string(windows) + "\\system32\\..", "\\\\server\\share", "\\",
             "\\\\?\\" + std::string(windows), "\\\\.\\" + std::string(windows), "\\\\?\\C:", "\\\\?\\C:\\",
             "\\\\?\\UNC\\server\\share"}) {
    EXPECT_FALSE(IsDeletableTree(folder.c_str())) << folder;
  }
  DirDel("C:\\");
  EXPECT_TRUE(Holds(Log(), "##ERROR: Task_dir_del: the folder \"C:\\\" must not be deleted."));
  EXPECT_TRUE(IsDeletableTree(Path("x").c_str()));
  EXPECT_TRUE(IsDeletableTree(("\\\\?\\" + Path("x")).c_str()));
  EXPECT_TRUE(IsDeletableTree((std::string(windows) + "\\system32\\ours").c_str()));
  EXPECT_TRUE(IsDeletableTree((std::string(windows) + "x").c_str()));
}

TEST_F(FileTasks, DirDelWithoutAFolderIsUnknown) {
  DirDel("");
  EXPECT_EQ(Log(), "The arguments for the task dir_del in Setup.inf are unknown.\n");
  DirDel("\"\"");
  EXPECT_TRUE(Holds(Log(), "must not be deleted"));
}

TEST_F(FileTasks, DirDelActsWithoutDataAndInPass1) {
  int32_t pass = 0;
  mDir.Write("tree\\a.txt", "1");
  EXPECT_EQ(Task_dir_del("dir_del", Path("tree").c_str(), &pass), 1);
  EXPECT_TRUE(mDir.Has("tree"));
  pass = 1;
  EXPECT_EQ(Task_dir_del("dir_del", Path("tree").c_str(), &pass), 1);
  EXPECT_FALSE(mDir.Has("tree"));
}

TEST_F(FileTasks, FileInstInstallsByForce) {
  MakeVersionedFile(Dist("a.dll"), {1, 0}, "source");
  MakeVersionedFile(Prog("a.dll"), {2, 0}, "target");
  Call(Task_file_inst, "file_inst", Dist("a.dll") + "," + Prog("a.dll"));
  EXPECT_EQ(mDir.Read("prog\\a.dll"), mDir.Read("dist\\a.dll"));
  EXPECT_EQ(Log(), "    Installing " + Dist("a.dll") + " to " + Prog("a.dll") + ".\n");
}

TEST_F(FileTasks, FileInstActsInEveryPass) {
  for (int32_t pass = 0; pass < 2; ++pass) {
    mDir.Write("dist\\a.txt", std::to_string(pass));
    EXPECT_EQ(Task_file_inst("file_inst", (Dist("a.txt") + "," + Prog("a.txt")).c_str(), &pass), 1);
    EXPECT_EQ(mDir.Read("prog\\a.txt"), std::to_string(pass));
  }
}

TEST_F(FileTasks, FileInstSucceedsWhateverHappens) {
  Call(Task_file_inst, "file_inst", Dist("gone") + "," + Prog("a.txt"));
  EXPECT_TRUE(Holds(Log(), "VerInstallFile: GetLastError"));
  Call(Task_file_inst, "file_inst", "");
  EXPECT_EQ(Log(), "The arguments for the task file_inst in Setup.inf are unknown.\n");
}

TEST_F(FileTasks, FileInstIntoAFolderTakesTheExpandedName) {
  mDir.Write("dist\\vtinst.dl_", MakeLzFile("expanded", 'l'));
  Call(Task_file_inst, "file_inst", Dist("vtinst.dl_") + "," + mDir.Join("prog") + "\\");
  EXPECT_EQ(mDir.Read("prog\\vtinst.dll"), "expanded");
}

TEST_F(FileTasks, FileInstWithoutADestinationInstallsAmongTheSharedFiles) {
  char system[MAX_PATH] = "";
  GetSystemDirectoryA(system, MAX_PATH);
  const std::string installed = std::string(system) + "\\vtinst.dll";
  mDir.Write("dist\\vtinst.dl_", MakeLzFile("expanded", 'l'));
  Call(Task_file_inst, "file_inst", Dist("vtinst.dl_"));
  EXPECT_EQ(Log(), "    Installing " + Dist("vtinst.dl_") + " to .\n");
  EXPECT_EQ(ReadWholeFile(installed), "expanded");
  DeleteFileA(installed.c_str());
}

}  // namespace
