#include "platform/fs.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "base/handle.h"
#include "platform/unix_tool.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/import_double.h"
#include "support/temp_dir.h"
#include "support/wait.h"

namespace {

std::string Text(const Str& text) { return text.Chars(); }

// A path on a drive that does not exist here.
std::string NoDrive() {
  const DWORD drives = GetLogicalDrives();
  for (char letter = 'Y'; letter > 'C'; letter--)
    if (!(drives & (1u << (letter - 'A')))) return std::string(1, letter) + ":";
  return "?:";
}

// Holds a file open, by default so that nobody else may touch it.
class OpenFile {
 public:
  explicit OpenFile(const std::string& path, DWORD sharing = 0)
      : mFile(CreateFileA(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_TRUE(mFile) << "cannot open " << path;
  }

 private:
  FileHandle mFile;
};

// ---- queries ----

TEST(FSExists, FilesAndFolders) {
  TempDir dir;
  const std::string file = dir.Write("a.txt", "x");
  EXPECT_TRUE(FS::Exists(file.c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_TRUE(FS::Exists(dir.Path().c_str()));
  EXPECT_TRUE(FS::Exists("C:\\"));
}

TEST(FSExists, MissingOnesSetNotFound) {
  TempDir dir;
  EXPECT_FALSE(FS::Exists(dir.Join("none").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  EXPECT_FALSE(FS::Exists(dir.Join("none\\deeper").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  EXPECT_FALSE(FS::Exists((NoDrive() + "\\").c_str()));
  EXPECT_NE(FS::LastError(), FS::fsErrNone);
}

TEST(FSExists, PatternsAndEmptyPathsNameNothing) {
  TempDir dir;
  dir.Write("a.txt", "x");
  EXPECT_FALSE(FS::Exists(dir.Join("*").c_str()));
  EXPECT_FALSE(FS::Exists(""));
}

TEST(FSExists, LeavesTheErrorModeAsItWas) {
  const UINT former = SetErrorMode(SEM_NOGPFAULTERRORBOX);
  FS::Exists((NoDrive() + "\\x").c_str());
  EXPECT_EQ(SetErrorMode(former), UINT{SEM_NOGPFAULTERRORBOX});
}

TEST(FSIsDir, FoldersOnly) {
  TempDir dir;
  const std::string file = dir.Write("a.txt", "x");
  EXPECT_TRUE(FS::IsDir(dir.Path().c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_FALSE(FS::IsDir(file.c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_FALSE(FS::IsDir(dir.Join("none").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

TEST(FSIsFile, RegularFilesOnly) {
  TempDir dir;
  const std::string file = dir.Write("a.txt", "x");
  EXPECT_TRUE(FS::IsFile(file.c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_FALSE(FS::IsFile(dir.Path().c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_FALSE(FS::IsFile(dir.Join("none").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

TEST(FSArguments, EachNullPathAssertsWithItsName) {
  struct Row {
    const char* name;
    void (*call)();
  };
  const Row rows[] = {
      {"path", [] { FS::Exists(nullptr); }},
      {"path", [] { FS::IsDir(nullptr); }},
      {"path", [] { FS::IsFile(nullptr); }},
      {"dirPath", [] { EXPECT_FALSE(FS::CreateDir(nullptr)); }},
      {"dirPath", [] { EXPECT_FALSE(FS::RemoveDir(nullptr, true, true)); }},
      {"dirPath", [] { EXPECT_FALSE(FS::DeleteEmptyDir(nullptr)); }},
      {"path", [] { EXPECT_FALSE(FS::Delete(nullptr)); }},
      {"srcPath", [] { EXPECT_FALSE(FS::Copy(nullptr, "C:\\x", false)); }},
      {"destPath", [] { EXPECT_FALSE(FS::Copy("C:\\x", nullptr, false)); }},
      {"oldPath", [] { EXPECT_FALSE(FS::Rename(nullptr, "C:\\x")); }},
      {"newPath", [] { EXPECT_FALSE(FS::Rename("C:\\x", nullptr)); }},
      {"path",
       [] {
         uint32_t size = 1;
         EXPECT_FALSE(FS::GetSize(nullptr, size));
         EXPECT_EQ(size, 0u);
       }},
      {"volPath",
       [] {
         uint32_t kb = 0;
         EXPECT_FALSE(FS::GetFreeKB(nullptr, kb));
       }},
      {"volPath",
       [] {
         FS::VolumeType type;
         EXPECT_FALSE(FS::GetVolumeType(nullptr, type));
       }},
      {"path",
       [] {
         bool on = false;
         EXPECT_FALSE(FS::GetFileAttribute(nullptr, FS::kAttrLock, on));
       }},
      {"path", [] { EXPECT_FALSE(FS::SetFileAttribute(nullptr, FS::kAttrLock, true)); }},
      {"path",
       [] {
         TimeValue time;
         EXPECT_FALSE(FS::GetDate(nullptr, FS::kDateModified, time));
       }},
      {"path", [] { EXPECT_FALSE(FS::SetDate(nullptr, FS::kSetModified, TimeValue(1000000000))); }},
      {"path", [] { EXPECT_FALSE(FS::SetModDate(nullptr, TimeValue(1000000000))); }},
      {"dirPath", [] { EXPECT_FALSE(FS::SetCurDir(nullptr)); }},
  };
  for (const Row& row : rows) {
    AssertRecorder recorder;
    FS::SetLastError(FS::fsErrNone);
    row.call();
    EXPECT_EQ(recorder.Only(), row.name);
    EXPECT_EQ(FS::LastError(), FS::fsErrFailed) << row.name;
  }
}

// ---- folders ----

TEST(FSCreateDir, WithAllMissingParents) {
  TempDir dir;
  EXPECT_TRUE(FS::CreateDir(dir.Join("a\\b\\c").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_TRUE(IsFolder(dir.Join("a\\b\\c")));
}

TEST(FSCreateDir, ExistingFolderIsSuccess) {
  TempDir dir;
  EXPECT_TRUE(FS::CreateDir(dir.Path().c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_TRUE(FS::CreateDir("C:\\"));
}

TEST(FSCreateDir, TrailingBackslashAndRelativePaths) {
  TempDir dir;
  EXPECT_TRUE(FS::CreateDir((dir.Join("a\\b") + "\\").c_str()));
  EXPECT_TRUE(IsFolder(dir.Join("a\\b")));
  char former[MAX_PATH];
  GetCurrentDirectoryA(sizeof former, former);
  ASSERT_TRUE(SetCurrentDirectoryA(dir.Path().c_str()));
  EXPECT_TRUE(FS::CreateDir("r\\s"));
  SetCurrentDirectoryA(former);
  EXPECT_TRUE(IsFolder(dir.Join("r\\s")));
}

TEST(FSCreateDir, MissingDriveIsNotFoundAndNothingIsTouched) {
  EXPECT_FALSE(FS::CreateDir((NoDrive() + "\\a\\b").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

TEST(FSCreateDir, MissingShareIsNotFound) {
  EXPECT_FALSE(FS::CreateDir("\\\\no-such-server\\share\\a"));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

TEST(FSCreateDir, FileInTheWayFails) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  EXPECT_FALSE(FS::CreateDir(file.c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_EQ(dir.Read("a"), "x");
}

TEST(FSCreateDir, FailureOfAParentIsAFailure) {
  TempDir dir;
  dir.Write("a", "x");
  EXPECT_FALSE(FS::CreateDir(dir.Join("a\\b\\c").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
}

TEST(FSCreateDir, FolderThatTakesNoNewOneIsAnAccessError) {
  TempDir dir;
  const std::string folder = UnixPath(dir.MakeFolder("ro"));
  if (folder.empty()) GTEST_SKIP() << "no way to lock a folder here";
  const auto isLocked = [&] {
    return (GetFileAttributesA(dir.Join("ro").c_str()) & FILE_ATTRIBUTE_READONLY) != 0;
  };
  ASSERT_TRUE(StartUnix("chmod 555 " + folder));
  ASSERT_TRUE(WaitUntil(isLocked));
  EXPECT_FALSE(FS::CreateDir(dir.Join("ro\\a").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  // Of a parent that cannot be made no reason is told.
  EXPECT_FALSE(FS::CreateDir(dir.Join("ro\\a\\b").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  ASSERT_TRUE(StartUnix("chmod 755 " + folder));
  EXPECT_TRUE(WaitUntil([&] { return !isLocked(); }));
}

TEST(FSCreateDir, InvalidNameFails) {
  TempDir dir;
  EXPECT_FALSE(FS::CreateDir(dir.Join("a<b").c_str()));
  EXPECT_NE(FS::LastError(), FS::fsErrNone);
  EXPECT_TRUE(NamesIn(dir.Path()).empty());
}

TEST(FSCreateDir, PathOf260IsRefused) {
  TempDir dir;
  const std::string path = dir.Join(std::string(260 - dir.Path().size() - 1, 'd'));
  ASSERT_EQ(path.size(), 260u);
  EXPECT_FALSE(FS::CreateDir(path.c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  EXPECT_TRUE(NamesIn(dir.Path()).empty());
}

TEST(FSCreateDir, AccentedName) {
  TempDir dir;
  EXPECT_TRUE(FS::CreateDir(dir.Join("R\xe9pertoire").c_str()));
  EXPECT_EQ(NamesIn(dir.Path()), std::vector<std::string>{"R\xe9pertoire"});
}

TEST(FSNetworkPath, FoldersAndFilesOnAShare) {
  // Where the machine's folders stand in for servers, the share is made for this test.
  const std::string drive = UnixPath("C:\\");
  const size_t devices = drive.find("/dosdevices/");
  if (devices == std::string::npos) GTEST_SKIP() << "no way to make a share here";
  const std::string server = drive.substr(0, devices) + "/dosdevices/unc/vtserver";
  ASSERT_TRUE(StartUnix("mkdir -p " + server + "/share"));
  ASSERT_TRUE(WaitUntil([] { return IsFolder("\\\\vtserver\\share\\"); }));

  EXPECT_TRUE(FS::CreateDir("\\\\vtserver\\share\\One\\Two"));
  EXPECT_TRUE(FS::IsDir("\\\\vtserver\\share\\One\\Two"));
  EXPECT_TRUE(FS::CreateDir("\\\\vtserver\\share"));
  TempDir dir;
  EXPECT_TRUE(FS::Copy(dir.Write("a", "x").c_str(), "\\\\vtserver\\share\\One\\a.txt", false));
  Str path("\\\\vtserver\\share\\ONE\\A.TXT");
  EXPECT_TRUE(FS::GetLongName(path));
  EXPECT_EQ(Text(path), "\\\\vtserver\\share\\One\\a.txt");
  uint32_t kb = 0;
  EXPECT_TRUE(FS::GetFreeKB(path, kb));
  EXPECT_GT(kb, 0u);
  EXPECT_TRUE(FS::RemoveDir("\\\\vtserver\\share\\One", true, true));
  EXPECT_FALSE(FS::Exists("\\\\vtserver\\share\\One"));

  ASSERT_TRUE(StartUnix("rm -r " + server));
  EXPECT_TRUE(WaitUntil([] { return !IsFolder("\\\\vtserver\\share\\"); }));
}

void FillTree(const TempDir& dir) {
  dir.Write("t\\a.txt", "1");
  dir.Write("t\\s\\b.txt", "2");
  dir.Write("t\\s\\u\\c.txt", "3");
  dir.MakeFolder("t\\empty");
}

TEST(FSRemoveDir, WholeTree) {
  TempDir dir;
  FillTree(dir);
  SetFileAttributesA(dir.Join("t\\s\\b.txt").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_TRUE(FS::RemoveDir(dir.Join("t").c_str(), true, true));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_FALSE(dir.Has("t"));
}

TEST(FSRemoveDir, ManyFiles) {
  TempDir dir;
  for (int i = 0; i < 300; i++) dir.Write("t\\file" + std::to_string(i), "");
  EXPECT_TRUE(FS::RemoveDir(dir.Join("t").c_str(), true, false));
  EXPECT_FALSE(dir.Has("t"));
}

TEST(FSRemoveDir, TrailingBackslash) {
  TempDir dir;
  FillTree(dir);
  EXPECT_TRUE(FS::RemoveDir((dir.Join("t") + "\\").c_str(), true, true));
  EXPECT_FALSE(dir.Has("t"));
}

TEST(FSRemoveDir, FilesWithoutRecursionStopAtAFullSubfolder) {
  TempDir dir;
  FillTree(dir);
  EXPECT_FALSE(FS::RemoveDir(dir.Join("t").c_str(), true, false));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  EXPECT_EQ(dir.Read("t\\s\\b.txt"), "2");
  EXPECT_EQ(dir.Read("t\\s\\u\\c.txt"), "3");
}

// The names in a folder in the order in which the system lists them.
std::vector<std::string> Listed(const std::string& folder) {
  std::vector<std::string> names;
  WIN32_FIND_DATAA entry;
  const FindHandle search(FindFirstFileA((folder + "\\*").c_str(), &entry));
  while (search) {
    if (entry.cFileName[0] != '.') names.push_back(entry.cFileName);
    if (!FindNextFileA(search.Get(), &entry)) break;
  }
  return names;
}

// What was listed from `first` on; the others came before it.
std::vector<std::string> From(const std::string& first, const std::vector<std::string>& listed) {
  return {std::find(listed.begin(), listed.end(), first), listed.end()};
}

TEST(FSRemoveDir, WhatComesBehindAFullSubfolderStays) {
  TempDir dir;
  for (const char* name : {"a.txt", "b\\x.txt", "c.txt"}) dir.Write(std::string("t\\") + name, "1");
  const std::vector<std::string> listed = Listed(dir.Join("t"));
  EXPECT_FALSE(FS::RemoveDir(dir.Join("t").c_str(), true, false));
  EXPECT_EQ(Listed(dir.Join("t")), From("b", listed));
}

TEST(FSRemoveDir, FilesWithoutRecursionTakeEmptySubfolders) {
  TempDir dir;
  dir.Write("t\\a.txt", "1");
  dir.MakeFolder("t\\empty");
  EXPECT_TRUE(FS::RemoveDir(dir.Join("t").c_str(), true, false));
  EXPECT_FALSE(dir.Has("t"));
}

TEST(FSRemoveDir, RecursionWithoutFilesTakesEmptyFoldersOnly) {
  TempDir dir;
  dir.MakeFolder("t\\a\\b");
  dir.MakeFolder("t\\c");
  EXPECT_TRUE(FS::RemoveDir(dir.Join("t").c_str(), false, true));
  EXPECT_FALSE(dir.Has("t"));
}

TEST(FSRemoveDir, RecursionWithoutFilesKeepsFiles) {
  TempDir dir;
  dir.Write("t\\s\\b.txt", "2");
  EXPECT_FALSE(FS::RemoveDir(dir.Join("t").c_str(), false, true));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  EXPECT_EQ(dir.Read("t\\s\\b.txt"), "2");
}

TEST(FSRemoveDir, NeitherFilesNorRecursionRemovesAnEmptyFolder) {
  TempDir dir;
  dir.MakeFolder("t");
  dir.MakeFolder("u\\v");
  EXPECT_TRUE(FS::RemoveDir(dir.Join("t").c_str(), false, false));
  EXPECT_FALSE(FS::RemoveDir(dir.Join("u").c_str(), false, false));
  EXPECT_TRUE(dir.Has("u\\v"));
}

TEST(FSRemoveDir, FirstFailureStopsTheWalk) {
  TempDir dir;
  dir.Write("t\\held.txt", "1");
  dir.Write("t\\s\\b.txt", "2");
  {
    OpenFile held(dir.Join("t\\held.txt"));
    EXPECT_FALSE(FS::RemoveDir(dir.Join("t").c_str(), true, true));
    EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  }
  EXPECT_EQ(dir.Read("t\\held.txt"), "1");
}

TEST(FSRemoveDir, WhatComesBehindTheFirstFailureStays) {
  TempDir dir;
  for (const char* name : {"a.txt", "b.txt", "c\\x.txt", "d.txt"}) dir.Write(std::string("t\\") + name, "1");
  const std::vector<std::string> listed = Listed(dir.Join("t"));
  {
    OpenFile held(dir.Join("t\\b.txt"));
    EXPECT_FALSE(FS::RemoveDir(dir.Join("t").c_str(), true, true));
    EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  }
  EXPECT_EQ(Listed(dir.Join("t")), From("b.txt", listed));
}

TEST(FSRemoveDir, MissingFolder) {
  TempDir dir;
  EXPECT_FALSE(FS::RemoveDir(dir.Join("none").c_str(), true, true));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

TEST(FSRemoveDir, EmptyPathTouchesNothing) {
  TempDir dir;
  dir.Write("a.txt", "x");
  char former[MAX_PATH];
  GetCurrentDirectoryA(sizeof former, former);
  ASSERT_TRUE(SetCurrentDirectoryA(dir.Path().c_str()));
  // Without a folder there is nothing to walk: not the current folder, and not the root of its drive.
  EXPECT_FALSE(FS::RemoveDir("", false, false));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  SetCurrentDirectoryA(former);
  EXPECT_TRUE(dir.Has("a.txt"));
}

TEST(FSRemoveDir, NeverLeavesItsTreeThroughALink) {
  TempDir dir;
  dir.Write("outside\\keep.txt", "kept");
  dir.MakeFolder("t");
  const std::string base = UnixPath(dir.Path());
  if (base.empty()) GTEST_SKIP() << "no way to make a link here";
  ASSERT_TRUE(StartUnix("ln -s " + base + "/outside " + base + "/t/link"));
  ASSERT_TRUE(WaitUntil([&] { return dir.Has("t\\link"); }));
  // Whether the link itself can be removed is the system's business; what it leads to must stay.
  (void)FS::RemoveDir(dir.Join("t").c_str(), true, true);
  EXPECT_EQ(dir.Read("outside\\keep.txt"), "kept");
  ASSERT_TRUE(StartUnix("rm -f " + base + "/t/link"));
  EXPECT_TRUE(WaitUntil([&] { return !dir.Has("t\\link"); }));
}

TEST(FSDeleteEmptyDir, RemovesAnEmptyFolder) {
  TempDir dir;
  EXPECT_TRUE(FS::DeleteEmptyDir(dir.MakeFolder("e").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_FALSE(dir.Has("e"));
}

TEST(FSDeleteEmptyDir, FullFolderIsAnAccessError) {
  TempDir dir;
  dir.Write("e\\a.txt", "x");
  EXPECT_FALSE(FS::DeleteEmptyDir(dir.Join("e").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  EXPECT_TRUE(dir.Has("e\\a.txt"));
}

TEST(FSDeleteEmptyDir, MissingFolderIsNotFound) {
  TempDir dir;
  EXPECT_FALSE(FS::DeleteEmptyDir(dir.Join("none").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

TEST(FSDeleteEmptyDir, AFileIsNoFolder) {
  TempDir dir;
  const std::string file = dir.Write("a.txt", "x");
  EXPECT_FALSE(FS::DeleteEmptyDir(file.c_str()));
  EXPECT_NE(FS::LastError(), FS::fsErrNone);
  EXPECT_TRUE(dir.Has("a.txt"));
}

// ---- files ----

TEST(FSDelete, RemovesAFile) {
  TempDir dir;
  const std::string file = dir.Write("a.txt", "x");
  EXPECT_TRUE(FS::Delete(file.c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_FALSE(dir.Has("a.txt"));
}

TEST(FSDelete, ReadOnlyFile) {
  TempDir dir;
  const std::string file = dir.Write("a.txt", "x");
  SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_TRUE(FS::Delete(file.c_str()));
  EXPECT_FALSE(dir.Has("a.txt"));
}

TEST(FSDelete, MissingFileIsNotFound) {
  TempDir dir;
  EXPECT_FALSE(FS::Delete(dir.Join("none").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

TEST(FSDelete, HeldFileIsAnAccessError) {
  TempDir dir;
  const std::string file = dir.Write("a.txt", "x");
  {
    OpenFile held(file);
    EXPECT_FALSE(FS::Delete(file.c_str()));
    EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  }
  EXPECT_EQ(dir.Read("a.txt"), "x");
}

TEST(FSDelete, AFolderIsNotDeleted) {
  TempDir dir;
  const std::string folder = dir.MakeFolder("f");
  EXPECT_FALSE(FS::Delete(folder.c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  EXPECT_TRUE(dir.Has("f"));
}

TEST(FSDelete, TellsTheTruthInAFolderThatKeepsItsFiles) {
  TempDir dir;
  const std::string file = dir.Write("ro\\a.txt", "x");
  const std::string folder = UnixPath(dir.Join("ro"));
  if (folder.empty()) GTEST_SKIP() << "no way to lock a folder here";
  const auto isLocked = [&] {
    return (GetFileAttributesA(dir.Join("ro").c_str()) & FILE_ATTRIBUTE_READONLY) != 0;
  };
  ASSERT_TRUE(StartUnix("chmod 555 " + folder));
  ASSERT_TRUE(WaitUntil(isLocked));
  EXPECT_FALSE(FS::Delete(file.c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  EXPECT_TRUE(dir.Has("ro\\a.txt"));
  ASSERT_TRUE(StartUnix("chmod 755 " + folder));
  EXPECT_TRUE(WaitUntil([&] { return !isLocked(); }));
}

TEST(FSRename, FileAndFolder) {
  TempDir dir;
  dir.Write("a.txt", "x");
  dir.Write("f\\b.txt", "y");
  EXPECT_TRUE(FS::Rename(dir.Join("a.txt").c_str(), dir.Join("c.txt").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_EQ(dir.Read("c.txt"), "x");
  EXPECT_FALSE(dir.Has("a.txt"));
  EXPECT_TRUE(FS::Rename(dir.Join("f").c_str(), dir.Join("g").c_str()));
  EXPECT_EQ(dir.Read("g\\b.txt"), "y");
}

TEST(FSRename, MovesToAnotherFolder) {
  TempDir dir;
  dir.Write("a.txt", "x");
  dir.MakeFolder("f");
  EXPECT_TRUE(FS::Rename(dir.Join("a.txt").c_str(), dir.Join("f\\a.txt").c_str()));
  EXPECT_EQ(dir.Read("f\\a.txt"), "x");
}

TEST(FSRename, NeverOverwrites) {
  TempDir dir;
  dir.Write("a.txt", "x");
  dir.Write("b.txt", "y");
  EXPECT_FALSE(FS::Rename(dir.Join("a.txt").c_str(), dir.Join("b.txt").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_EQ(dir.Read("a.txt"), "x");
  EXPECT_EQ(dir.Read("b.txt"), "y");
}

TEST(FSRename, MissingSourceOrTargetFolder) {
  TempDir dir;
  dir.Write("a.txt", "x");
  EXPECT_FALSE(FS::Rename(dir.Join("none").c_str(), dir.Join("b.txt").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  EXPECT_FALSE(FS::Rename(dir.Join("a.txt").c_str(), dir.Join("none\\b.txt").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

TEST(FSGetSize, BytesOfAFile) {
  TempDir dir;
  uint32_t size = 99;
  EXPECT_TRUE(FS::GetSize(dir.Write("a", std::string(12345, 'x')).c_str(), size));
  EXPECT_EQ(size, 12345u);
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_TRUE(FS::GetSize(dir.Write("b", "").c_str(), size));
  EXPECT_EQ(size, 0u);
}

TEST(FSGetSize, ZeroWhenItCannotBeOpened) {
  TempDir dir;
  uint32_t size = 99;
  EXPECT_FALSE(FS::GetSize(dir.Join("none").c_str(), size));
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  const std::string file = dir.Write("a", "xyz");
  OpenFile held(file);
  size = 99;
  EXPECT_FALSE(FS::GetSize(file.c_str(), size));
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
}

TEST(FSGetSize, OthersMayReadMeanwhile) {
  TempDir dir;
  const std::string file = dir.Write("a", "xyz");
  OpenFile reader(file, FILE_SHARE_READ);
  uint32_t size = 0;
  EXPECT_TRUE(FS::GetSize(file.c_str(), size));
  EXPECT_EQ(size, 3u);
}

TEST(FSGetSize, BeyondFourGigabytesIsTheLargestNumber) {
  TempDir dir;
  const std::string file = dir.Write("big", "");
  {
    FileHandle handle(CreateFileA(file.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    LONG high = 1;
    ASSERT_EQ(SetFilePointer(handle.Get(), 5, &high, FILE_BEGIN), 5u);
    ASSERT_TRUE(SetEndOfFile(handle.Get()));
  }
  uint32_t size = 0;
  EXPECT_TRUE(FS::GetSize(file.c_str(), size));
  EXPECT_EQ(size, 0xFFFFFFFFu);
}

// ---- current folder ----

TEST(FSCurDir, SetAndGet) {
  TempDir dir;
  Str former, now;
  ASSERT_TRUE(FS::GetCurDir(former));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_TRUE(FS::SetCurDir(dir.Path().c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_TRUE(FS::GetCurDir(now));
  EXPECT_EQ(Text(now), dir.Path());
  EXPECT_TRUE(FS::SetCurDir(former));
}

std::string gCurrent;
DWORD WINAPI GivenCurrentDirectory(DWORD size, LPSTR buffer) {
  if (gCurrent.size() >= size) return static_cast<DWORD>(gCurrent.size() + 1);  // the room it needs
  lstrcpyA(buffer, gCurrent.c_str());
  return static_cast<DWORD>(gCurrent.size());
}

TEST(FSCurDir, FolderOf259CharactersIsTheLongest) {
  const ImportDouble asking("GetCurrentDirectoryA", reinterpret_cast<void*>(&GivenCurrentDirectory));
  gCurrent = "C:\\" + std::string(256, 'd');
  Str dir("untouched");
  EXPECT_TRUE(FS::GetCurDir(dir));
  EXPECT_EQ(Text(dir), gCurrent);
  gCurrent += "d";
  dir = "untouched";
  EXPECT_FALSE(FS::GetCurDir(dir));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_EQ(Text(dir), "untouched");
}

DWORD WINAPI NoCurrentDirectory(DWORD, LPSTR) {
  SetLastError(ERROR_ACCESS_DENIED);
  return 0;
}

TEST(FSCurDir, GettingFailsWithTheSystemsReason) {
  const ImportDouble asking("GetCurrentDirectoryA", reinterpret_cast<void*>(&NoCurrentDirectory));
  Str dir("untouched");
  EXPECT_FALSE(FS::GetCurDir(dir));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  EXPECT_EQ(Text(dir), "untouched");
}

TEST(FSCurDir, SettingFailsWithNotFound) {
  TempDir dir;
  EXPECT_FALSE(FS::SetCurDir(dir.Join("none").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  EXPECT_FALSE(FS::SetCurDir(dir.Write("a.txt", "x").c_str()));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

}  // namespace
