#include <gtest/gtest.h>
#include <windows.h>

#include <set>
#include <string>

#include "base/handle.h"
#include "platform/fs.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/import_double.h"
#include "support/temp_dir.h"

namespace {

std::string Text(const Str& text) { return text.Chars(); }

std::string FileNameOf(const std::string& path) { return path.substr(path.rfind('\\') + 1); }

std::string gNoted;
bool gExistedWhenNoted = false;

TEST(FSUniqueTempName, CreatesAnEmptyFileInTheFolder) {
  TempDir dir;
  Str path;
  ASSERT_TRUE(FS::GetUniqueName(dir.Path().c_str(), "qli", path));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_EQ(Text(path).substr(0, dir.Path().size() + 4), dir.Path() + "\\qli");
  EXPECT_EQ(ReadWholeFile(Text(path)), "");
  EXPECT_EQ(NamesIn(dir.Path()), std::vector<std::string>{FileNameOf(Text(path))});
}

TEST(FSUniqueTempName, EachIsAnother) {
  TempDir dir;
  std::set<std::string> names;
  for (int i = 0; i < 50; i++) {
    Str path;
    ASSERT_TRUE(FS::GetUniqueName(dir.Path().c_str(), "qli", path));
    names.insert(Text(path));
  }
  EXPECT_EQ(names.size(), 50u);
  EXPECT_EQ(NamesIn(dir.Path()).size(), 50u);
}

TEST(FSUniqueTempName, WithoutFolderInTheTemporaryFolder) {
  char temp[MAX_PATH];
  GetTempPathA(sizeof temp, temp);
  Str path;
  ASSERT_TRUE(FS::GetUniqueName(nullptr, "qli", path));
  EXPECT_EQ(Text(path).substr(0, std::string(temp).size() + 3), std::string(temp) + "qli");
  EXPECT_TRUE(DeleteFileA(path));
}

DWORD WINAPI NoTempPath(DWORD, LPSTR) { return 0; }

TEST(FSUniqueTempName, WithoutAnyTemporaryFolderFails) {
  const ImportDouble none("GetTempPathA", reinterpret_cast<void*>(&NoTempPath));
  Str path("untouched");
  EXPECT_FALSE(FS::GetUniqueName(nullptr, "qli", path));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_EQ(Text(path), "untouched");
}

decltype(&CreateFileA) gCreateFile = nullptr;
bool gTaken = false;

// Somebody else takes the first name just before we do.
HANDLE WINAPI CreateSecond(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                           DWORD disposition, DWORD flags, HANDLE pattern) {
  if (disposition == CREATE_NEW && !gTaken) {
    gTaken = true;
    WriteWholeFile(path, "of another");
  }
  return gCreateFile(path, access, share, security, disposition, flags, pattern);
}

TEST(FSUniqueTempName, NameTakenMeanwhileIsLeftToItsOwner) {
  TempDir dir;
  Str path;
  gTaken = false;
  {
    const ImportDouble creating("CreateFileA", reinterpret_cast<void*>(&CreateSecond));
    gCreateFile = reinterpret_cast<decltype(&CreateFileA)>(creating.Original());
    ASSERT_TRUE(FS::GetUniqueName(dir.Path().c_str(), "qli", path));
  }
  EXPECT_EQ(ReadWholeFile(Text(path)), "");
  EXPECT_EQ(NamesIn(dir.Path()).size(), 2u);
}

TEST(FSUniqueTempName, PrefixIsCutToThreeCharacters) {
  TempDir dir;
  Str path;
  ASSERT_TRUE(FS::GetUniqueName(dir.Path().c_str(), "xyzuvw", path));
  const std::string name = FileNameOf(Text(path));
  EXPECT_EQ(name.substr(0, 3), "xyz");
  EXPECT_NE(name[3], 'u');
}

TEST(FSUniqueTempName, MissingFolderFails) {
  TempDir dir;
  Str path("untouched");
  EXPECT_FALSE(FS::GetUniqueName(dir.Join("none").c_str(), "qli", path));
  EXPECT_NE(FS::LastError(), FS::fsErrNone);
  EXPECT_EQ(Text(path), "untouched");
}

UINT WINAPI NameBeyondTheRoom(LPCSTR, LPCSTR, UINT, LPSTR) {
  ADD_FAILURE() << "the system is asked for a name that may not fit";
  return 0;
}

TEST(FSUniqueTempName, FolderThatLeavesNoRoomForAName) {
  const ImportDouble naming("GetTempFileNameA", reinterpret_cast<void*>(&NameBeyondTheRoom));
  Str path("untouched");
  EXPECT_FALSE(FS::GetUniqueName(("C:\\" + std::string(244, 'd')).c_str(), "qli", path));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_EQ(Text(path), "untouched");
}

TEST(FSUniqueTempName, NullPrefixAsserts) {
  TempDir dir;
  Str path;
  AssertRecorder recorder;
  EXPECT_TRUE(FS::GetUniqueName(dir.Path().c_str(), nullptr, path));
  EXPECT_EQ(recorder.Only(), "prefix");
}

TEST(FSUniqueTempName, IsToldBeforeTheFileIsThere) {
  TempDir dir;
  gNoted.clear();
  const FS::TempNameHook former = FS::SetTempNameHook([](const char* path) {
    gNoted = path;
    gExistedWhenNoted = PathExists(path);
  });
  Str path;
  EXPECT_TRUE(FS::GetUniqueName(dir.Path().c_str(), "qli", path));
  FS::SetTempNameHook(former);
  EXPECT_EQ(gNoted, Text(path));
  EXPECT_FALSE(gExistedWhenNoted);
}

TEST(FSUniqueNumberedName, FreeNameIsTakenAsItIs) {
  TempDir dir;
  Str path;
  EXPECT_TRUE(FS::GetUniqueName(Str(dir.Join("~ame").c_str()), Str(".dll"), path));
  EXPECT_EQ(Text(path), dir.Join("~ame.dll"));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_TRUE(NamesIn(dir.Path()).empty());  // nothing is created
}

TEST(FSUniqueNumberedName, NumbersHaveTwoDigitsAtLeast) {
  TempDir dir;
  const Str base(dir.Join("~ame").c_str());
  Str path;
  dir.Write("~ame.dll", "");
  EXPECT_TRUE(FS::GetUniqueName(base, Str(".dll"), path));
  EXPECT_EQ(Text(path), dir.Join("~ame_01.dll"));
  dir.Write("~ame_01.dll", "");
  EXPECT_TRUE(FS::GetUniqueName(base, Str(".dll"), path));
  EXPECT_EQ(Text(path), dir.Join("~ame_02.dll"));
}

TEST(FSUniqueNumberedName, GoesOnBeyondNinetyNine) {
  TempDir dir;
  dir.Write("n", "");
  for (int i = 1; i <= 99; i++) {
    char name[20];
    wsprintfA(name, "n_%02d", i);
    dir.Write(name, "");
  }
  Str path;
  EXPECT_TRUE(FS::GetUniqueName(Str(dir.Join("n").c_str()), Str(""), path));
  EXPECT_EQ(Text(path), dir.Join("n_100"));
}

TEST(FSUniqueNumberedName, TooLongIsRefused) {
  Str path("untouched");
  const std::string base = "C:\\" + std::string(255, 'x');
  EXPECT_FALSE(FS::GetUniqueName(Str(base.c_str()), Str(".dll"), path));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_EQ(Text(path), "untouched");
  EXPECT_FALSE(FS::GetUniqueName(Str(("C:\\" + std::string(253, 'x')).c_str()), Str(".dll"), path));
  EXPECT_EQ(Text(path), "untouched");
  EXPECT_TRUE(FS::GetUniqueName(Str(("C:\\" + std::string(252, 'x')).c_str()), Str(".dll"), path));
}

TEST(FSUniqueNumberedName, TakenNameWithoutRoomForANumberIsRefused) {
  TempDir dir;
  const std::string base = dir.Join(std::string(259 - dir.Path().size() - 1, 'x'));
  ASSERT_EQ(base.size(), 259u);
  Str path;
  EXPECT_TRUE(FS::GetUniqueName(Str(base.c_str()), Str(""), path));
  const FileHandle file(CreateFileA(base.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
  ASSERT_TRUE(file);
  EXPECT_FALSE(FS::GetUniqueName(Str(base.c_str()), Str(""), path));
}

TEST(FSLongName, TrueCaseOfEveryComponent) {
  TempDir dir;
  dir.Write("Long Folder Name\\Long File Name.Text", "x");
  Str path(dir.Join("LONG folder NAME\\long FILE name.TEXT").c_str());
  ASSERT_TRUE(FS::GetLongName(path));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_EQ(Text(path), dir.Join("Long Folder Name\\Long File Name.Text"));
}

TEST(FSLongName, ShortFormsBecomeLong) {
  TempDir dir;
  const std::string file = dir.Write("Long Folder Name\\Long File Name.Text", "x");
  char shortPath[MAX_PATH];
  ASSERT_NE(GetShortPathNameA(file.c_str(), shortPath, sizeof shortPath), 0u);
  ASSERT_STRNE(shortPath, file.c_str());
  Str path(shortPath);
  ASSERT_TRUE(FS::GetLongName(path));
  EXPECT_EQ(Text(path), file);
}

TEST(FSLongName, DriveStaysAsWritten) {
  Str path("c:\\WINDOWS");
  ASSERT_TRUE(FS::GetLongName(path));
  EXPECT_EQ(Text(path), "c:\\windows");
}

TEST(FSLongName, TrailingBackslashAndRootsStay) {
  TempDir dir;
  dir.MakeFolder("Folder");
  Str path((dir.Join("FOLDER") + "\\").c_str());
  ASSERT_TRUE(FS::GetLongName(path));
  EXPECT_EQ(Text(path), dir.Join("Folder") + "\\");
  path = "C:\\";
  EXPECT_TRUE(FS::GetLongName(path));
  EXPECT_EQ(Text(path), "C:\\");
}

TEST(FSLongName, MissingComponentLeavesThePathUnchanged) {
  TempDir dir;
  dir.MakeFolder("Folder");
  const std::string before = dir.Join("FOLDER\\none\\x");
  Str path(before.c_str());
  EXPECT_FALSE(FS::GetLongName(path));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  EXPECT_EQ(Text(path), before);
}

TEST(FSLongName, WildcardsFindNothing) {
  TempDir dir;
  dir.Write("abc", "x");
  for (const char* pattern : {"a*", "a?c", "*", "???"}) {
    Str path(dir.Join(pattern).c_str());
    EXPECT_FALSE(FS::GetLongName(path)) << pattern;
    EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
    EXPECT_EQ(Text(path), dir.Join(pattern));
  }
}

TEST(FSLongName, RelativePath) {
  TempDir dir;
  dir.Write("Folder\\File", "x");
  char former[MAX_PATH];
  GetCurrentDirectoryA(sizeof former, former);
  ASSERT_TRUE(SetCurrentDirectoryA((dir.Join("Folder")).c_str()));
  Str path("..\\FOLDER\\.\\FILE");
  EXPECT_TRUE(FS::GetLongName(path));
  SetCurrentDirectoryA(former);
  EXPECT_EQ(Text(path), "..\\Folder\\.\\File");
}

TEST(FSLongName, EmptyPathFails) {
  Str path;
  EXPECT_FALSE(FS::GetLongName(path));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

}  // namespace
