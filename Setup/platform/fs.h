#pragma once
// Whole-file and folder operations. Each returns success and sets FS::LastError.
#include <cstdint>

#include "base/str.h"
#include "base/time.h"
#include "platform/fserror.h"
#include "platform/fspath.h"

namespace FS {

enum Attribute : uint32_t { kAttrLock = 1, kAttrHidden = 2 };
enum VolumeType : int32_t {
  volUnknown = 0,
  volFixed = 1,
  volRemovable = 2,
  volCDROM = 3,
  volRAMDisk = 4,
  volRemote = 5,
};
enum DateKind : uint32_t { kDateModified = 2 };
enum DateFlag : uint32_t { kSetCreated = 1, kSetModified = 2 };

bool Exists(const char* path);
// Exists and is a folder / a file. Something of the other kind counts as failed.
bool IsDir(const char* path);
bool IsFile(const char* path);
// Creates the folder and any missing parents.
[[nodiscard]] bool CreateDir(const char* dirPath);
// Empties (as far as asked) and removes a folder; the first failure stops the walk.
[[nodiscard]] bool RemoveDir(const char* dirPath, bool removeFiles, bool recursive);
bool DeleteEmptyDir(const char* dirPath);
// Clears the read-only attribute and deletes the file.
bool Delete(const char* path);
// Copies with attributes and dates, beside the target and then renamed, so that no torn file ever stands
// under the final name. A target that may be overwritten loses its read-only attribute first.
[[nodiscard]] bool Copy(const char* srcPath, const char* destPath, bool failIfExists);
[[nodiscard]] bool Rename(const char* oldPath, const char* newPath);
// In bytes, at most 0xFFFFFFFF; 0 when the file cannot be opened.
bool GetSize(const char* path, uint32_t& size);
// Free kilobytes of the path's volume, at most 0xFFFFFFFF.
[[nodiscard]] bool GetFreeKB(const char* volPath, uint32_t& kb);
[[nodiscard]] bool GetVolumeType(const char* volPath, VolumeType& type);
bool GetFileAttribute(const char* path, uint32_t attr, bool& value);
bool SetFileAttribute(const char* path, uint32_t attr, bool on);
[[nodiscard]] bool GetDate(const char* path, uint32_t kind, TimeValue& time);
[[nodiscard]] bool SetDate(const char* path, uint32_t which, const TimeValue& time);
[[nodiscard]] bool SetModDate(const char* path, const TimeValue& time);
[[nodiscard]] bool GetCurDir(Str& dir);
[[nodiscard]] bool SetCurDir(const char* dirPath);
// A unique temporary file, created empty, in `dir` (null: the temporary folder).
[[nodiscard]] bool GetUniqueName(const char* dir, const char* prefix, Str& path);
// A path not yet taken: `base` (folder and name without extension) plus `ext`, else numbered
// "<base>_01<ext>", ... False when no free name could be found.
[[nodiscard]] bool GetUniqueName(const Str& base, const Str& ext, Str& path);
// Replaces every component by its long, true-case name.
[[nodiscard]] bool GetLongName(Str& path);

// Told the full path of each temporary file before it is created. Null: nobody. Returns the former hook.
using TempNameHook = void (*)(const char* path);
TempNameHook SetTempNameHook(TempNameHook hook);

}  // namespace FS
