// Names: unique ones, and the long form of short ones.
#include <windows.h>

#include "base/assert.h"
#include "base/errormode.h"
#include "base/handle.h"
#include "base/leadbyte.h"
#include "platform/folders.h"
#include "platform/fs.h"
#include "platform/fstemp.h"
#include "platform/pathparts.h"

namespace FS {
namespace {

constexpr int32_t kMaxNumber = 99999;  // of a numbered name; a folder never holds that many of one kind

// The name the system lists for the file or folder at `path`.
bool ListedName(const char* path, Str& name) {
  CriticalErrorGuard guard;
  WIN32_FIND_DATAA entry = {};
  FindHandle search(FindFirstFileA(path, &entry));
  if (!search) {
    SetFromSystem(GetLastError());
    return false;
  }
  name = entry.cFileName;
  return true;
}

// Appends the long form of the component that ends `prefix` (the path so far, as written) to `result`.
bool AppendLongName(const Str& prefix, const Str& component, Str& result) {
  // The system would answer these two with the name of the folder they stand for.
  if (component == "." || component == "..") {
    result.Append(component);
    return true;
  }
  // Wildcards would find some other file.
  if (component.Find('*') >= 0 || component.Find('?') >= 0) {
    SetLastError(fsErrNotFound);
    return false;
  }
  Str name;
  if (!ListedName(prefix, name)) return false;
  result.Append(name);
  return true;
}

}  // namespace

bool GetUniqueName(const char* dir, const char* prefix, Str& path) {
  SetLastError(fsErrFailed);
  VT_ASSERT(prefix, "prefix");
  Str folder;
  if (dir) {
    folder = dir;
  } else if (!Folders::GetTempDir(folder)) {
    return false;
  }
  TempNames names(folder, prefix ? prefix : "");
  CriticalErrorGuard guard;
  while (names.Next()) {
    FileHandle file(
        CreateFileA(names.Path(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    const DWORD error = file ? ERROR_SUCCESS : GetLastError();
    SetFromSystem(error);
    if (error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS) continue;
    if (error != ERROR_SUCCESS) return false;
    path = names.Path();
    return true;
  }
  return false;
}

bool GetUniqueName(const Str& base, const Str& ext, Str& path) {
  Str candidate = base;
  candidate.Append(ext);
  for (int32_t number = 1; candidate.Length() < kMaxPathNameLen; number++) {
    if (!Exists(candidate)) {
      path = candidate;
      SetLastError(fsErrNone);
      return true;
    }
    if (number > kMaxNumber) break;
    Str suffix;
    suffix.Format("_%02d", static_cast<int>(number));
    candidate = base;
    candidate.Append(suffix);
    candidate.Append(ext);
  }
  SetLastError(fsErrFailed);
  return false;
}

bool GetLongName(Str& path) {
  SetLastError(fsErrFailed);
  if (path.IsEmpty()) {
    SetLastError(fsErrNotFound);
    return false;
  }
  const std::string_view text = path.View();
  const size_t volume = PathText::Split(text, IsAnsiLeadByte).volume.size();
  Str result(text.substr(0, volume));
  for (size_t pos = volume; pos < text.size();) {
    const size_t slash = PathText::FindBackslash(text, pos, IsAnsiLeadByte);
    const size_t end = slash == PathText::kNone ? text.size() : slash;
    if (end > pos && !AppendLongName(Str(text.substr(0, end)), Str(text.substr(pos, end - pos)), result))
      return false;
    if (slash != PathText::kNone) result.Append('\\');
    pos = end + 1;
  }
  path = result;
  SetLastError(fsErrNone);
  return true;
}

}  // namespace FS
