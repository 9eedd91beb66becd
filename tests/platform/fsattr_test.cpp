#include <gtest/gtest.h>
#include <windows.h>

#include "base/handle.h"
#include "platform/fs.h"
#include "support/assert_recorder.h"
#include "support/import_double.h"
#include "support/temp_dir.h"

namespace {

DWORD Attributes(const std::string& path) { return GetFileAttributesA(path.c_str()); }

// The last write (or creation) time as the system's own text form of universal time.
std::string FileTimeText(const std::string& path, bool created = false) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  if (!GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data)) return "";
  SYSTEMTIME time = {};
  FileTimeToSystemTime(created ? &data.ftCreationTime : &data.ftLastWriteTime, &time);
  char text[40];
  wsprintfA(text, "%04d-%02d-%02d %02d:%02d:%02d", time.wYear, time.wMonth, time.wDay, time.wHour,
            time.wMinute, time.wSecond);
  return text;
}

// What the system makes of a local time now.
std::string UniversalText(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second) {
  SYSTEMTIME time = {year, month, 0, day, hour, minute, second, 0};
  FILETIME local, universal;
  SystemTimeToFileTime(&time, &local);
  LocalFileTimeToFileTime(&local, &universal);
  FileTimeToSystemTime(&universal, &time);
  char text[40];
  wsprintfA(text, "%04d-%02d-%02d %02d:%02d:%02d", time.wYear, time.wMonth, time.wDay, time.wHour,
            time.wMinute, time.wSecond);
  return text;
}

TEST(FSAttribute, Values) {
  EXPECT_EQ(FS::kAttrLock, 1u);
  EXPECT_EQ(FS::kAttrHidden, 2u);
  EXPECT_EQ(FS::kDateModified, 2u);
  EXPECT_EQ(FS::kSetCreated, 1u);
  EXPECT_EQ(FS::kSetModified, 2u);
}

TEST(FSAttribute, ReadOnlyOnAndOff) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  bool value = true;
  EXPECT_TRUE(FS::GetFileAttribute(file.c_str(), FS::kAttrLock, value));
  EXPECT_FALSE(value);
  EXPECT_TRUE(FS::SetFileAttribute(file.c_str(), FS::kAttrLock, true));
  EXPECT_TRUE(Attributes(file) & FILE_ATTRIBUTE_READONLY);
  EXPECT_TRUE(FS::GetFileAttribute(file.c_str(), FS::kAttrLock, value));
  EXPECT_TRUE(value);
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_TRUE(FS::SetFileAttribute(file.c_str(), FS::kAttrLock, false));
  EXPECT_FALSE(Attributes(file) & FILE_ATTRIBUTE_READONLY);
}

TEST(FSAttribute, HiddenOnAndOff) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  bool value = true;
  EXPECT_TRUE(FS::GetFileAttribute(file.c_str(), FS::kAttrHidden, value));
  EXPECT_FALSE(value);
  EXPECT_TRUE(FS::SetFileAttribute(file.c_str(), FS::kAttrHidden, true));
  EXPECT_TRUE(FS::GetFileAttribute(file.c_str(), FS::kAttrHidden, value));
  EXPECT_TRUE(value);
  EXPECT_TRUE(FS::SetFileAttribute(file.c_str(), FS::kAttrHidden, false));
  EXPECT_FALSE(Attributes(file) & FILE_ATTRIBUTE_HIDDEN);
}

TEST(FSAttribute, TheOtherOnesStay) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  EXPECT_TRUE(FS::SetFileAttribute(file.c_str(), FS::kAttrHidden, true));
  EXPECT_TRUE(FS::SetFileAttribute(file.c_str(), FS::kAttrLock, true));
  EXPECT_EQ(Attributes(file) & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY),
            DWORD{FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY});
  EXPECT_TRUE(FS::SetFileAttribute(file.c_str(), FS::kAttrLock, false));
  EXPECT_TRUE(Attributes(file) & FILE_ATTRIBUTE_HIDDEN);
}

TEST(FSAttribute, HiddenOnAReadOnlyFile) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  EXPECT_TRUE(FS::SetFileAttribute(file.c_str(), FS::kAttrLock, true));
  EXPECT_TRUE(FS::SetFileAttribute(file.c_str(), FS::kAttrHidden, true));
  EXPECT_EQ(Attributes(file) & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY),
            DWORD{FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY});
  EXPECT_TRUE(FS::SetFileAttribute(file.c_str(), FS::kAttrHidden, false));
  EXPECT_EQ(Attributes(file) & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY),
            DWORD{FILE_ATTRIBUTE_READONLY});
}

TEST(FSAttribute, UnknownOneAsserts) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  for (uint32_t attr : {0u, 3u, 4u}) {
    AssertRecorder recorder;
    bool value = true;
    EXPECT_FALSE(FS::GetFileAttribute(file.c_str(), attr, value));
    EXPECT_EQ(recorder.Only(), "Unknown attribute.");
    EXPECT_NE(FS::LastError(), FS::fsErrNone);
    recorder.Clear();
    const DWORD before = Attributes(file);
    EXPECT_FALSE(FS::SetFileAttribute(file.c_str(), attr, true));
    EXPECT_EQ(recorder.Only(), "Unknown attribute.");
    EXPECT_NE(FS::LastError(), FS::fsErrNone);
    EXPECT_EQ(Attributes(file), before);
  }
}

BOOL WINAPI RefusedSetAttributes(LPCSTR, DWORD) {
  SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}

TEST(FSAttribute, RefusedBySystemIsAnAccessError) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  const ImportDouble setting("SetFileAttributesA", reinterpret_cast<void*>(&RefusedSetAttributes));
  EXPECT_FALSE(FS::SetFileAttribute(file.c_str(), FS::kAttrLock, true));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
}

TEST(FSAttribute, MissingFileIsNotFound) {
  TempDir dir;
  bool value = true;
  EXPECT_FALSE(FS::GetFileAttribute(dir.Join("none").c_str(), FS::kAttrLock, value));
  EXPECT_FALSE(value);
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  EXPECT_FALSE(FS::SetFileAttribute(dir.Join("none").c_str(), FS::kAttrLock, true));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

TEST(FSAttribute, OfAFolder) {
  TempDir dir;
  EXPECT_TRUE(FS::SetFileAttribute(dir.MakeFolder("f").c_str(), FS::kAttrHidden, true));
  bool value = false;
  EXPECT_TRUE(FS::GetFileAttribute(dir.Join("f").c_str(), FS::kAttrHidden, value));
  EXPECT_TRUE(value);
}

TEST(FSDate, ModificationTimeIsLocalWallClock) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  const TimeValue time = TimeValue::FromFields(2004, 2, 29, 13, 5, 8);
  ASSERT_TRUE(FS::SetDate(file.c_str(), FS::kSetModified, time));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_EQ(FileTimeText(file), UniversalText(2004, 2, 29, 13, 5, 8));
}

TEST(FSDate, GetIsTheFilesTimeThroughTheTimeValue) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  constexpr uint32_t kSystemSeconds = 1078059908;  // 29 February 2004 13:05:08 UTC
  {
    FileHandle handle(CreateFileA(file.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ULARGE_INTEGER ticks;
    ticks.QuadPart = (uint64_t{kSystemSeconds} + 11644473600ull) * 10000000 + 7;
    const FILETIME time = {ticks.LowPart, ticks.HighPart};
    ASSERT_TRUE(SetFileTime(handle.Get(), nullptr, nullptr, &time));
  }
  TimeValue time;
  ASSERT_TRUE(FS::GetDate(file.c_str(), FS::kDateModified, time));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_EQ(time.Seconds(), TimeValue::FromSystem(kSystemSeconds).Seconds());
}

TEST(FSDate, OfAFolder) {
  TempDir dir;
  TimeValue time;
  EXPECT_TRUE(FS::GetDate(dir.Path().c_str(), FS::kDateModified, time));
  EXPECT_TRUE(time.IsValid());
}

TEST(FSDate, AnyOtherKindFails) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  for (uint32_t kind : {0u, 1u, 3u}) {
    TimeValue time(5);
    EXPECT_FALSE(FS::GetDate(file.c_str(), kind, time));
    EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
    EXPECT_FALSE(time.IsValid());
  }
}

TEST(FSDate, MissingFileIsNotFound) {
  TempDir dir;
  TimeValue time;
  EXPECT_FALSE(FS::GetDate(dir.Join("none").c_str(), FS::kDateModified, time));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  EXPECT_FALSE(FS::SetDate(dir.Join("none").c_str(), FS::kSetModified, TimeValue(1000000000)));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

TEST(FSDate, OnlyTheNamedTimesAreSet) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  ASSERT_TRUE(FS::SetDate(file.c_str(), FS::kSetModified, TimeValue::FromFields(2001, 1, 2, 3, 4, 5)));
  const std::string before = FileTimeText(file);
  ASSERT_TRUE(FS::SetDate(file.c_str(), 0, TimeValue::FromFields(2005, 1, 2, 3, 4, 5)));
  EXPECT_EQ(FileTimeText(file), before);
  ASSERT_TRUE(FS::SetDate(file.c_str(), FS::kSetCreated, TimeValue::FromFields(2005, 1, 2, 3, 4, 5)));
  EXPECT_EQ(FileTimeText(file), before);
}

bool gCreationGiven = false;
bool gAccessGiven = false;
bool gWriteGiven = false;
SYSTEMTIME gCreation = {};

BOOL WINAPI RecordedSetFileTime(HANDLE, const FILETIME* creation, const FILETIME* access,
                                const FILETIME* write) {
  gCreationGiven = creation != nullptr;
  gAccessGiven = access != nullptr;
  gWriteGiven = write != nullptr;
  if (creation) FileTimeToSystemTime(creation, &gCreation);
  return TRUE;
}

// Not every file system keeps a creation time: looked at on its way to the system.
TEST(FSDate, CreationAndWriteTimeAreAskedForByTheirBits) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  const TimeValue time = TimeValue::FromFields(2004, 2, 29, 13, 5, 8);
  const ImportDouble setting("SetFileTime", reinterpret_cast<void*>(&RecordedSetFileTime));
  for (uint32_t which : {0u, 1u, 2u, 3u}) {
    EXPECT_TRUE(FS::SetDate(file.c_str(), which, time));
    EXPECT_EQ(gCreationGiven, (which & 1) != 0) << which;
    EXPECT_EQ(gWriteGiven, (which & 2) != 0) << which;
    EXPECT_FALSE(gAccessGiven) << which;
  }
  char text[40];
  wsprintfA(text, "%04d-%02d-%02d %02d:%02d:%02d", gCreation.wYear, gCreation.wMonth, gCreation.wDay,
            gCreation.wHour, gCreation.wMinute, gCreation.wSecond);
  EXPECT_EQ(std::string(text), UniversalText(2004, 2, 29, 13, 5, 8));
}

BOOL WINAPI RefusedSetFileTime(HANDLE, const FILETIME*, const FILETIME*, const FILETIME*) {
  SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}

TEST(FSDate, RefusedBySystemIsAnAccessError) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  const ImportDouble setting("SetFileTime", reinterpret_cast<void*>(&RefusedSetFileTime));
  EXPECT_FALSE(FS::SetDate(file.c_str(), FS::kSetModified, TimeValue::FromFields(2004, 2, 29, 13, 5, 8)));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
}

TEST(FSDate, InvalidTimeAssertsAndChangesNothing) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  const std::string before = FileTimeText(file);
  AssertRecorder recorder;
  EXPECT_FALSE(FS::SetDate(file.c_str(), FS::kSetModified, TimeValue()));
  ASSERT_FALSE(recorder.Texts().empty());
  EXPECT_EQ(recorder.Texts().front(), "time != kInvalidTime");
  EXPECT_EQ(FS::LastError(), FS::fsErrFailed);
  EXPECT_EQ(FileTimeText(file), before);
}

TEST(FSDate, SetOnAReadOnlyFileIsAnAccessError) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_FALSE(FS::SetDate(file.c_str(), FS::kSetModified, TimeValue(1000000000)));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
}

TEST(FSModDate, ReadOnlyFileIsReadOnlyAgain) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_TRUE(FS::SetModDate(file.c_str(), TimeValue::FromFields(2003, 7, 8, 9, 10, 12)));
  EXPECT_EQ(FS::LastError(), FS::fsErrNone);
  EXPECT_EQ(FileTimeText(file), UniversalText(2003, 7, 8, 9, 10, 12));
  EXPECT_TRUE(Attributes(file) & FILE_ATTRIBUTE_READONLY);
}

TEST(FSModDate, WritableFileStaysWritable) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  EXPECT_TRUE(FS::SetModDate(file.c_str(), TimeValue::FromFields(2003, 7, 8, 9, 10, 12)));
  EXPECT_EQ(FileTimeText(file), UniversalText(2003, 7, 8, 9, 10, 12));
  EXPECT_FALSE(Attributes(file) & FILE_ATTRIBUTE_READONLY);
}

TEST(FSModDate, HeldReadOnlyFileKeepsItsAttributeAndFails) {
  TempDir dir;
  const std::string file = dir.Write("a", "x");
  SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
  FileHandle held(CreateFileA(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(held);
  EXPECT_FALSE(FS::SetModDate(file.c_str(), TimeValue::FromFields(2003, 7, 8, 9, 10, 12)));
  EXPECT_EQ(FS::LastError(), FS::fsErrAccess);
  EXPECT_TRUE(Attributes(file) & FILE_ATTRIBUTE_READONLY);
}

TEST(FSModDate, MissingFileIsNotFound) {
  TempDir dir;
  EXPECT_FALSE(FS::SetModDate(dir.Join("none").c_str(), TimeValue(1000000000)));
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
}

}  // namespace
