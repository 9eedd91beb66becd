#include "platform/fsattr.h"

#include "base/assert.h"
#include "base/errormode.h"
#include "base/handle.h"
#include "platform/fs.h"

namespace FS {
namespace {

constexpr int64_t kTicksPerSecond = 10000000;         // a file time counts 100 ns steps
constexpr int64_t kTicksTo1970 = 116444736000000000;  // from 1 January 1601
constexpr WORD kTmYearBase = 1900;

// The system's bit for one of our attributes; 0 for an unknown one.
DWORD SystemBit(uint32_t attr) {
  switch (attr) {
    case kAttrLock:
      return FILE_ATTRIBUTE_READONLY;
    case kAttrHidden:
      return FILE_ATTRIBUTE_HIDDEN;
    default:
      VT_FAIL("Unknown attribute.");
      return 0;
  }
}

bool StoreAttributes(const char* path, DWORD attributes) {
  CriticalErrorGuard guard;
  const BOOL done = SetFileAttributesA(path, attributes ? attributes : FILE_ATTRIBUTE_NORMAL);
  SetFromSystem(done ? ERROR_SUCCESS : GetLastError());
  return done != FALSE;
}

int64_t TicksOf(const FILETIME& time) {
  ULARGE_INTEGER ticks;
  ticks.LowPart = time.dwLowDateTime;
  ticks.HighPart = time.dwHighDateTime;
  return static_cast<int64_t>(ticks.QuadPart);
}

// Local wall-clock time to the universal time that files carry.
bool ToFileTime(const TimeValue& time, FILETIME& result) {
  std::tm fields = {};
  if (!time.ToFields(fields)) return false;
  SYSTEMTIME system = {};
  system.wYear = static_cast<WORD>(fields.tm_year + kTmYearBase);
  system.wMonth = static_cast<WORD>(fields.tm_mon + 1);
  system.wDay = static_cast<WORD>(fields.tm_mday);
  system.wHour = static_cast<WORD>(fields.tm_hour);
  system.wMinute = static_cast<WORD>(fields.tm_min);
  system.wSecond = static_cast<WORD>(fields.tm_sec);
  FILETIME local = {};
  return SystemTimeToFileTime(&system, &local) && LocalFileTimeToFileTime(&local, &result);
}

}  // namespace

bool QueryAttributes(const char* path, DWORD& attributes) {
  CriticalErrorGuard guard;
  attributes = GetFileAttributesA(path);
  const bool found = attributes != INVALID_FILE_ATTRIBUTES;
  SetFromSystem(found ? ERROR_SUCCESS : GetLastError());
  return found;
}

bool ClearReadOnly(const char* path) {
  DWORD attributes = 0;
  if (!QueryAttributes(path, attributes)) return false;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) || !(attributes & FILE_ATTRIBUTE_READONLY)) return true;
  return StoreAttributes(path, attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
}

bool GetFileAttribute(const char* path, uint32_t attr, bool& value) {
  SetLastError(fsErrFailed);
  value = false;
  VT_ASSERT(path, "path");
  const DWORD bit = SystemBit(attr);
  DWORD attributes = 0;
  if (!path || bit == 0 || !QueryAttributes(path, attributes)) return false;
  value = (attributes & bit) != 0;
  return true;
}

bool SetFileAttribute(const char* path, uint32_t attr, bool on) {
  SetLastError(fsErrFailed);
  VT_ASSERT(path, "path");
  const DWORD bit = SystemBit(attr);
  DWORD attributes = 0;
  if (!path || bit == 0 || !QueryAttributes(path, attributes)) return false;
  const DWORD wanted = on ? attributes | bit : attributes & ~bit;
  // Some file systems change the hidden attribute of a writable file only, and say nothing.
  const DWORD writable = wanted & ~DWORD{FILE_ATTRIBUTE_READONLY};
  if (attr == kAttrHidden && writable != wanted && !StoreAttributes(path, writable)) return false;
  return StoreAttributes(path, wanted);
}

bool GetDate(const char* path, uint32_t kind, TimeValue& time) {
  SetLastError(fsErrFailed);
  time = TimeValue();
  if (!VT_ASSERT(path, "path") || kind != kDateModified) return false;
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  CriticalErrorGuard guard;
  if (!GetFileAttributesExA(path, GetFileExInfoStandard, &data)) {
    SetFromSystem(GetLastError());
    return false;
  }
  const int64_t ticks = TicksOf(data.ftLastWriteTime) - kTicksTo1970;
  if (ticks < 0) return false;
  time = TimeValue::FromSystem(ticks / kTicksPerSecond);
  if (!time.IsValid()) return false;
  SetLastError(fsErrNone);
  return true;
}

bool SetDate(const char* path, uint32_t which, const TimeValue& time) {
  SetLastError(fsErrFailed);
  VT_ASSERT(path, "path");
  VT_ASSERT(time.IsValid(), "time != kInvalidTime");
  FILETIME fileTime = {};
  if (!path || !ToFileTime(time, fileTime)) return false;
  CriticalErrorGuard guard;
  FileHandle file(CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) {
    SetFromSystem(GetLastError());
    return false;
  }
  const BOOL done = SetFileTime(file.Get(), which & kSetCreated ? &fileTime : nullptr, nullptr,
                                which & kSetModified ? &fileTime : nullptr);
  SetFromSystem(done ? ERROR_SUCCESS : GetLastError());
  return done != FALSE;
}

bool SetModDate(const char* path, const TimeValue& time) {
  SetLastError(fsErrFailed);
  if (!VT_ASSERT(path, "path")) return false;
  bool locked = false;
  if (!GetFileAttribute(path, kAttrLock, locked)) return false;
  if (locked && !SetFileAttribute(path, kAttrLock, false)) return false;
  const bool dated = SetDate(path, kSetModified, time);
  const uint32_t error = LastError();
  if (locked && !SetFileAttribute(path, kAttrLock, true)) return false;
  SetLastError(error);
  return dated;
}

}  // namespace FS
