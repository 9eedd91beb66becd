#include "script/restart.h"

#include <string>

#include "base/assert.h"
#include "base/runstate.h"
#include "messages/varlist.h"
#include "platform/fio.h"
#include "platform/fs.h"
#include "script/files.h"
#include "script/wininit.h"
#include "stores/readfile.h"

namespace {

constexpr DWORD kPathSize = FS::kMaxPathNameLen;

MoveFileExFn gMoveFileEx = MoveFileExA;

// The whole text of the list; an empty one is made when it is missing.
bool ReadList(const char* path, FioFile& file, std::string& text) {
  FioResult result = FioOpen(path, fioREADWRITE, file);
  if (result == fioNOT_FOUND) result = FioCreate(path, fioREADWRITE, file);
  return result == fioOK && ReadWholeFile(file, text);
}

bool WriteList(FioFile& file, const std::string& text) {
  const uint32_t size = static_cast<uint32_t>(text.size());
  return FioSeek(file, 0) == fioOK && FioWrite(file, size, text.data()) == fioOK &&
         FioSetEOF(file, size) == fioOK;
}

}  // namespace

void SetMoveFileEx(MoveFileExFn function) { gMoveFileEx = function != nullptr ? function : MoveFileExA; }

bool ReplaceThroughWinInit(const char* src, const char* dest) {
  char buf1[kPathSize] = "";
  char buf2[kPathSize] = "";
  const bool hasDest = dest != nullptr && *dest != '\0';
  DWORD len = hasDest ? GetShortPathNameA(dest, buf1, kPathSize) : 0;
  if (!VT_ASSERT(len <= kPathSize, "len <= Dim(buf1)")) return false;
  if (hasDest && len == 0)
    lstrcpynA(buf1, dest, kPathSize);  // nothing there yet: the name is its own short form
  if (hasDest && (FSPath(buf1).FileName().ICompare(FSPath(dest).FileName()) != 0 ||
                  !IsShortName(FSPath(dest).FileName().View())))
    return false;
  len = GetShortPathNameA(src, buf2, kPathSize);
  if (!VT_ASSERT(len <= kPathSize, "len <= Dim(buf2)") || len == 0) return false;
  FioFile file;
  std::string text;
  return ReadList(JoinPath(AppGetExpanded("WinDir"), "WinInit.Ini"), file, text) &&
         WriteList(file, AddWinInitRename(text, buf1, buf2));
}

bool ReplaceFileOnReboot(const char* src, const char* dest) {
  // Without the second flag a destination that exists, as it does here, would not be replaced.
  if (gMoveFileEx(src, dest, MOVEFILE_DELAY_UNTIL_REBOOT | MOVEFILE_REPLACE_EXISTING)) return true;
  return Run().IsWin9x() && ReplaceThroughWinInit(src, dest);
}
