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

namespace {

// A folder may be named with a backslash at its end or without.
Str Closed(const char* path) {
  Str full = FullLongPath(path);
  if (!PathText::EndsInBackslash(full.View(), IsAnsiLeadByte)) full.Append('\\');
  return full;
}

}  // namespace

bool IsSamePath(const char* a, const char* b) { return Closed(a).ICompare(Closed(b)) == 0; }

bool HoldsPath(const char* folder, const char* inner) { return Closed(inner).IBeginsWith(Closed(folder)); }
