#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "base/handle.h"
#include "platform/fs.h"
#include "platform/unix_tool.h"
#include "support/files.h"
#include "support/import_double.h"
#include "support/temp_dir.h"
#include "support/wait.h"

namespace {

std::vector<std::string> gNames;      // what the hook was told
std::vector<bool> gExistedWhenNoted;  // whether that file was there already

void NoteName(const char* path) {
  gNames.push_back(path);
  gExistedWhenNoted.push_back(PathExists(path));
}

// Records the temporary names while it lives.
class NameRecorder {
 public:
  NameRecorder() : mFormer(FS::SetTempNameHook(NoteName)) {
    gNames.clear();
    gExistedWhenNoted.clear();
  }
  ~NameRecorder() { FS::SetTempNameHook(mFormer); }

 private:
  FS::TempNameHook mFormer;
};

std::string WriteTime(const std::string& path) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data);
  return std::to_string(data.ftLastWriteTime.dwHighDateTime) + "." +
         std::to_string(data.ftLastWriteTime.dwLowDateTime);
}

FileHandle Hold(const std::string& path, DWORD access, DWORD sharing) {
  return FileHandle(CreateFileA(path.c_str(), access, sharing, nullptr, OPEN_EXISTING, 0, nullptr));
}

TEST(FSCopy, NewFile) {
  TempDir dir;
  const std::string source = dir.Write("a", "content");
  EXPECT_TRUE(FS::Copy(source.c_str(), dir.Join("b").c_str(), true));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_EQ(dir.Read("b"), "content");
  EXPECT_EQ(dir.Read("a"), "content");
}

TEST(FSCopy, KeepsDateAndAttributes) {
  TempDir dir;
  const std::string source = dir.Write("a", "content");
  ASSERT_TRUE(FS::SetDate(source.c_str(), FS::kSetModified, TimeValue::FromFields(2001, 2, 3, 4, 5, 6)));
  SetFileAttributesA(source.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_TRUE(FS::Copy(source.c_str(), dir.Join("b").c_str(), false));
  EXPECT_EQ(WriteTime(dir.Join("b")), WriteTime(source));
  EXPECT_TRUE(GetFileAttributesA(dir.Join("b").c_str()) & FILE_ATTRIBUTE_READONLY);
}

TEST(FSCopy, HiddenSourceGivesAHiddenCopy) {
  TempDir dir;
  const std::string source = dir.Write("a", "content");
  SetFileAttributesA(source.c_str(), FILE_ATTRIBUTE_HIDDEN);
  EXPECT_TRUE(FS::Copy(source.c_str(), dir.Join("b").c_str(), false));
  EXPECT_TRUE(GetFileAttributesA(dir.Join("b").c_str()) & FILE_ATTRIBUTE_HIDDEN);
}

TEST(FSCopy, OverAnExistingFile) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const std::string target = dir.Write("b", "older and longer");
  EXPECT_TRUE(FS::Copy(source.c_str(), target.c_str(), false));
  EXPECT_EQ(dir.Read("b"), "new");
  EXPECT_EQ(NamesIn(dir.Path()), (std::vector<std::string>{"a", "b"}));
}

TEST(FSCopy, OverAnExistingFileWrittenInOtherCase) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  dir.Write("LONGNAME.TEXT", "old");
  EXPECT_TRUE(FS::Copy(source.c_str(), dir.Join("LongName.text").c_str(), false));
  EXPECT_EQ(dir.Read("longname.text"), "new");
  EXPECT_EQ(NamesIn(dir.Path()).size(), 2u);
}

TEST(FSCopy, OverAReadOnlyTarget) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const std::string target = dir.Write("b", "old");
  SetFileAttributesA(target.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_TRUE(FS::Copy(source.c_str(), target.c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_EQ(dir.Read("b"), "new");
  EXPECT_FALSE(GetFileAttributesA(target.c_str()) & FILE_ATTRIBUTE_READONLY);
}

TEST(FSCopy, ReadOnlyTargetIsClearedEvenWhenTheCopyFails) {
  TempDir dir;
  const std::string target = dir.Write("b", "old");
  SetFileAttributesA(target.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_FALSE(FS::Copy(dir.Join("none").c_str(), target.c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  EXPECT_FALSE(GetFileAttributesA(target.c_str()) & FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(dir.Read("b"), "old");
}

TEST(FSCopy, ExistingTargetFailsWhenAskedTo) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const std::string target = dir.Write("b", "old");
  SetFileAttributesA(target.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_FALSE(FS::Copy(source.c_str(), target.c_str(), true));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_EQ(dir.Read("b"), "old");
  EXPECT_TRUE(GetFileAttributesA(target.c_str()) & FILE_ATTRIBUTE_READONLY);
}

TEST(FSCopy, MissingSourceOrFolder) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  EXPECT_FALSE(FS::Copy(dir.Join("none").c_str(), dir.Join("b").c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  EXPECT_FALSE(FS::Copy(source.c_str(), dir.Join("none\\b").c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  EXPECT_EQ(NamesIn(dir.Path()), std::vector<std::string>{"a"});
}

TEST(FSCopy, ToItselfIsAnAccessErrorAndHarmless) {
  TempDir dir;
  const std::string file = dir.Write("LongerName.text", "content");
  EXPECT_FALSE(FS::Copy(file.c_str(), file.c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  EXPECT_FALSE(FS::Copy(file.c_str(), dir.Join("LONGERNAME.TEXT").c_str(), false));
  EXPECT_EQ(dir.Read("LongerName.text"), "content");
  EXPECT_EQ(NamesIn(dir.Path()).size(), 1u);
}

TEST(FSCopy, OntoAFolderIsAnAccessError) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const std::string folder = dir.MakeFolder("f");
  EXPECT_FALSE(FS::Copy(source.c_str(), folder.c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  EXPECT_EQ(NamesIn(dir.Path()), (std::vector<std::string>{"a", "f"}));
}

TEST(FSCopy, HeldSourceIsAnAccessError) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const FileHandle held = Hold(source, GENERIC_READ, 0);
  EXPECT_FALSE(FS::Copy(source.c_str(), dir.Join("b").c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  EXPECT_EQ(NamesIn(dir.Path()), std::vector<std::string>{"a"});
}

TEST(FSCopy, HeldTargetIsAnAccessErrorAndStaysWhole) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const std::string target = dir.Write("b", "old");
  {
    const FileHandle held = Hold(target, GENERIC_READ, 0);
    EXPECT_FALSE(FS::Copy(source.c_str(), target.c_str(), false));
    EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  }
  EXPECT_EQ(dir.Read("b"), "old");
  EXPECT_EQ(NamesIn(dir.Path()), (std::vector<std::string>{"a", "b"}));
}

TEST(FSCopy, TargetOpenForSharedWritingIsWrittenInPlace) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const std::string target = dir.Write("b", "older");
  const FileHandle held = Hold(target, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
  EXPECT_TRUE(FS::Copy(source.c_str(), target.c_str(), false));
  char bytes[10] = "";
  DWORD got = 0;
  EXPECT_TRUE(ReadFile(held.Get(), bytes, sizeof bytes, &got, nullptr));
  EXPECT_EQ(std::string(bytes, got), "new");
  EXPECT_EQ(NamesIn(dir.Path()), (std::vector<std::string>{"a", "b"}));
}

DWORD gMoveError = ERROR_SUCCESS;

BOOL WINAPI FailingMove(LPCSTR, LPCSTR, DWORD) {
  SetLastError(gMoveError);
  return FALSE;
}

TEST(FSCopy, TargetThatCannotBeReplacedIsWrittenInPlace) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const ImportDouble moving("MoveFileExA", reinterpret_cast<void*>(&FailingMove));
  for (const DWORD error : {ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION, ERROR_PATH_NOT_FOUND,
                            ERROR_FILENAME_EXCED_RANGE, ERROR_BUFFER_OVERFLOW}) {
    gMoveError = error;
    const std::string target = dir.Write("b", "older");
    EXPECT_TRUE(FS::Copy(source.c_str(), target.c_str(), false)) << error;
    EXPECT_EQ(dir.Read("b"), "new") << error;
    EXPECT_EQ(NamesIn(dir.Path()), (std::vector<std::string>{"a", "b"}));
  }
}

TEST(FSCopy, TargetStaysWholeWhenTheCopyCannotBePutInItsPlace) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const std::string target = dir.Write("b", "older");
  const ImportDouble moving("MoveFileExA", reinterpret_cast<void*>(&FailingMove));
  gMoveError = ERROR_WRITE_FAULT;
  EXPECT_FALSE(FS::Copy(source.c_str(), target.c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_EQ(dir.Read("b"), "older");
  EXPECT_EQ(NamesIn(dir.Path()), (std::vector<std::string>{"a", "b"}));
}

TEST(FSCopy, RelativeTarget) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  char former[MAX_PATH];
  GetCurrentDirectoryA(sizeof former, former);
  ASSERT_TRUE(SetCurrentDirectoryA(dir.Path().c_str()));
  EXPECT_TRUE(FS::Copy("a", "b", false));
  SetCurrentDirectoryA(former);
  EXPECT_EQ(dir.Read("b"), "new");
}

TEST(FSCopy, TargetWhosePathLeavesNoRoomForATemporaryName) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  // The folder takes all but a few characters of the longest path.
  std::string folder = dir.Path();
  while (folder.size() < 250) {
    const size_t room = 252 - folder.size();
    folder += "\\" + std::string(room > 100 ? 99 : room - 1, 'd');
    ASSERT_TRUE(CreateDirectoryA(folder.c_str(), nullptr) || folder.size() > 247) << folder.size();
  }
  if (!IsFolder(folder)) GTEST_SKIP() << "no folder that deep here";
  const std::string target = folder + "\\b";
  EXPECT_TRUE(FS::Copy(source.c_str(), target.c_str(), false));
  EXPECT_EQ(ReadWholeFile(target), "new");
}

TEST(FSCopy, FolderThatTakesNoNewFileStillLetsAFileBeOverwritten) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const std::string target = dir.Write("ro\\b", "old");
  const std::string folder = UnixPath(dir.Join("ro"));
  if (folder.empty()) GTEST_SKIP() << "no way to lock a folder here";
  const auto isLocked = [&] {
    return (GetFileAttributesA(dir.Join("ro").c_str()) & FILE_ATTRIBUTE_READONLY) != 0;
  };
  ASSERT_TRUE(StartUnix("chmod 555 " + folder));
  ASSERT_TRUE(WaitUntil(isLocked));
  EXPECT_TRUE(FS::Copy(source.c_str(), target.c_str(), false));
  EXPECT_EQ(dir.Read("ro\\b"), "new");
  EXPECT_FALSE(FS::Copy(source.c_str(), dir.Join("ro\\c").c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  EXPECT_EQ(NamesIn(dir.Join("ro")), std::vector<std::string>{"b"});
  ASSERT_TRUE(StartUnix("chmod 755 " + folder));
  EXPECT_TRUE(WaitUntil([&] { return !isLocked(); }));
}

TEST(FSCopy, LargeFile) {
  TempDir dir;
  std::string bytes(3000000, '\0');
  for (size_t i = 0; i < bytes.size(); i++) bytes[i] = static_cast<char>(i * 7 + i / 251);
  const std::string source = dir.Write("a", bytes);
  EXPECT_TRUE(FS::Copy(source.c_str(), dir.Join("b").c_str(), false));
  EXPECT_TRUE(dir.Read("b") == bytes);
}

int gReplacements = 0;

BOOL WINAPI NoReplacing(LPCSTR, LPCSTR, DWORD) {
  ++gReplacements;
  SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
  return FALSE;
}

TEST(FSCopy, SystemThatCannotReplaceInOneStep) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const std::string target = dir.Write("b", "old");
  SetFileAttributesA(target.c_str(), FILE_ATTRIBUTE_READONLY);
  const ImportDouble moving("MoveFileExA", reinterpret_cast<void*>(&NoReplacing));
  gReplacements = 0;
  EXPECT_TRUE(FS::Copy(source.c_str(), target.c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_EQ(gReplacements, 1);
  EXPECT_EQ(dir.Read("b"), "new");
  EXPECT_TRUE(FS::Copy(source.c_str(), dir.Join("c").c_str(), false));
  EXPECT_EQ(dir.Read("c"), "new");
  EXPECT_EQ(NamesIn(dir.Path()), (std::vector<std::string>{"a", "b", "c"}));
}

TEST(FSCopy, SystemThatCannotReplaceInOneStepAndAHeldTarget) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const std::string target = dir.Write("b", "old");
  {
    const FileHandle held = Hold(target, GENERIC_READ, FILE_SHARE_READ);
    const ImportDouble moving("MoveFileExA", reinterpret_cast<void*>(&NoReplacing));
    EXPECT_FALSE(FS::Copy(source.c_str(), target.c_str(), false));
  }
  EXPECT_EQ(dir.Read("b"), "old");
  EXPECT_EQ(NamesIn(dir.Path()), (std::vector<std::string>{"a", "b"}));
}

// Run with the drive D: a disk of 3 MB.
constexpr size_t kTwoMB = 2 << 20;

TEST(FullDiskChild, NewFileThatDoesNotFit) {
  TempDir dir("D:");
  dir.Write("filler", std::string(kTwoMB, 'f'));
  TempDir other;
  const std::string big = other.Write("big", std::string(kTwoMB, 'b'));
  EXPECT_FALSE(FS::Copy(big.c_str(), dir.Join("b").c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_EQ(NamesIn(dir.Path()), std::vector<std::string>{"filler"});
  // The room is free again.
  const std::string small = other.Write("small", std::string(kTwoMB / 4, 's'));
  EXPECT_TRUE(FS::Copy(small.c_str(), dir.Join("c").c_str(), false));
}

TEST(FullDiskChild, FileThatFitsInPlaceOfItsTargetOnly) {
  TempDir dir("D:");
  const std::string target = dir.Write("b", std::string(kTwoMB, 'o'));
  TempDir other;
  const std::string bytes(kTwoMB + kTwoMB / 4, 'n');
  const std::string source = other.Write("a", bytes);
  EXPECT_TRUE(FS::Copy(source.c_str(), target.c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_TRUE(dir.Read("b") == bytes);
  EXPECT_EQ(NamesIn(dir.Path()), std::vector<std::string>{"b"});
}

TEST(FullDiskChild, FileThatDoesNotEvenFitInPlaceLeavesItsTarget) {
  TempDir dir("D:");
  const std::string bytes(kTwoMB, 'o');
  const std::string target = dir.Write("b", bytes);
  TempDir other;
  const std::string source = other.Write("a", std::string(kTwoMB * 2, 'n'));
  EXPECT_FALSE(FS::Copy(source.c_str(), target.c_str(), false));
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_TRUE(dir.Read("b") == bytes);
  EXPECT_EQ(NamesIn(dir.Path()), std::vector<std::string>{"b"});
}

TEST(FSTempName, IsToldBeforeTheFileIsThereAndLiesBesideTheTarget) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  dir.MakeFolder("f");
  NameRecorder recorder;
  EXPECT_TRUE(FS::Copy(source.c_str(), dir.Join("f\\b").c_str(), false));
  ASSERT_EQ(gNames.size(), 1u);
  EXPECT_FALSE(gExistedWhenNoted[0]);
  EXPECT_EQ(gNames[0].substr(0, gNames[0].rfind('\\')), dir.Join("f"));
  EXPECT_EQ(gNames[0].substr(gNames[0].rfind('\\') + 1, 3), "~vt");
  EXPECT_EQ(gNames[0].substr(gNames[0].size() - 4), ".tmp");
  EXPECT_EQ(NamesIn(dir.Join("f")), std::vector<std::string>{"b"});
}

TEST(FSTempName, FailedCopyLeavesNoTemporaryFile) {
  TempDir dir;
  const std::string source = dir.Write("a", "new");
  const std::string target = dir.Write("b", "old");
  SetFileAttributesA(source.c_str(), FILE_ATTRIBUTE_READONLY);  // and so is the temporary copy
  const FileHandle held = Hold(target, GENERIC_READ, 0);
  NameRecorder recorder;
  EXPECT_FALSE(FS::Copy(source.c_str(), target.c_str(), false));
  EXPECT_FALSE(gNames.empty());
  EXPECT_EQ(NamesIn(dir.Path()), (std::vector<std::string>{"a", "b"}));
}

TEST(FSTempName, SettingTheHookReturnsTheFormer) {
  const FS::TempNameHook former = FS::SetTempNameHook(NoteName);
  EXPECT_EQ(FS::SetTempNameHook(nullptr), &NoteName);
  EXPECT_EQ(FS::SetTempNameHook(former), nullptr);
}

}  // namespace
