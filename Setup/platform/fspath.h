#pragma once
// FSPath: an 8-bit Windows path (backslash the only separator) split, joined and shortened.
#include <cstdint>

#include "base/str.h"

namespace FS {
constexpr int32_t kMaxPathNameLen = 260;  // MAX_PATH, terminator included
}

class FSPath {
 public:
  enum Component : uint32_t {
    compVolume = 1,    // ends in a backslash
    compDir = 2,       // without trailing backslash when no name flag is set
    compBaseName = 4,  // file name without extension
    compFileName = 8,  // file name with extension
  };

  FSPath() = default;
  FSPath(const char* path) : mPath(path) {}
  FSPath(const Str& path) : mPath(path) {}
  // Builds from components, each of which may be null; the backslash after the folder and the "." before the
  // extension are supplied when missing.
  FSPath(const char* volume, const char* dir, const char* file, const char* ext);

  const Str& Path() const { return mPath; }
  operator const char*() const { return mPath.Chars(); }
  int32_t Length() const { return mPath.Length(); }
  bool IsEmpty() const { return mPath.IsEmpty(); }

  // A path without volume comes out rooted when compVolume is asked for: make it full first.
  void GetComponents(uint32_t flags, Str& out) const;
  Str Components(uint32_t flags) const;
  Str FileName() const { return Components(compFileName); }
  Str BaseName() const { return Components(compBaseName); }
  // Folder of the last component (volume and folder, no trailing backslash except for a root).
  Str Parent() const { return Components(compVolume | compDir); }
  // The volume without its trailing backslash ("C:").
  void GetVolumeName(Str& out) const;
  // Joins with exactly one backslash.
  void Append(const char* component);
  // Makes the path absolute; failure sets FS::LastError and returns false.
  [[nodiscard]] bool MakeFull();
  bool IsFullPath() const;
  bool HasExtension() const;
  // The text from the last "." on; empty and false when there is none.
  bool GetExtension(Str& out) const;
  // Null removes the extension.
  void SetExtension(const char* ext);
  // Display form of at most `max` characters (more than 10); `reference` may be null.
  void Shorten(int32_t max, Str& out, const FSPath* reference) const;

  Str mPath;
};

// `dir` and `name` joined with one backslash; either may be empty.
Str JoinPath(const char* dir, const char* name);
