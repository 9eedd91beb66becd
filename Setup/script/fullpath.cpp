#include "script/fullpath.h"

#include "base/leadbyte.h"
#include "platform/fs.h"
#include "platform/pathparts.h"

Str FullLongPath(const char* path) {
  FSPath full(path);
  if (!full.MakeFull()) return Str(path);
  if (full.mPath.Find('~') >= 0)
    static_cast<void>(FS::GetLongName(full.mPath));  // a short form that is gone compares as it is
  return full.mPath;
}

bool IsSamePath(const char* a, const char* b) { return FullLongPath(a).ICompare(FullLongPath(b)) == 0; }

bool HoldsPath(const char* folder, const char* inner) {
  const auto closed = [](const char* path) {
    Str full = FullLongPath(path);
    if (!PathText::EndsInBackslash(full.View(), IsAnsiLeadByte)) full.Append('\\');
    return full;
  };
  return closed(inner).IBeginsWith(closed(folder));
}
