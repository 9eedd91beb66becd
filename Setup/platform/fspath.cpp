#include "platform/fspath.h"

#include <windows.h>

#include <string>

#include "base/assert.h"
#include "base/leadbyte.h"
#include "platform/fserror.h"
#include "platform/pathparts.h"

static_assert(uint32_t{FSPath::compVolume} == PathText::kVolume &&
              uint32_t{FSPath::compDir} == PathText::kDir &&
              uint32_t{FSPath::compBaseName} == PathText::kBaseName &&
              uint32_t{FSPath::compFileName} == PathText::kFileName);

namespace {

std::string_view ViewOrEmpty(const char* text) { return text ? std::string_view(text) : std::string_view(); }

Str ToStr(const std::string& text) { return Str(std::string_view(text)); }

}  // namespace

FSPath::FSPath(const char* volume, const char* dir, const char* file, const char* ext) {
  const std::string_view parts[] = {ViewOrEmpty(volume), ViewOrEmpty(dir), ViewOrEmpty(file),
                                    ViewOrEmpty(ext)};
  size_t total = 0;
  for (std::string_view part : parts) total += part.size();
  VT_ASSERT(
      total < size_t{FS::kMaxPathNameLen},
      "(volume ? Str::Length(volume) : 0) + (dir ? Str::Length(dir) : 0) + (file ? Str::Length(file) : 0) + "
      "(ext ? Str::Length(ext) : 0) < FS::kMaxPathNameLen");
  mPath = ToStr(PathText::Build(parts[0], parts[1], parts[2], parts[3], IsAnsiLeadByte));
}

void FSPath::GetComponents(uint32_t flags, Str& out) const { out = Components(flags); }

Str FSPath::Components(uint32_t flags) const {
  VT_ASSERT(!((flags & compBaseName) && (flags & compFileName)),
            "! ((flags & compBaseName) && (flags & compFileName))");
  if (!VT_ASSERT(mPath.Length() > 0, "mPath.Length() > 0")) return Str();
  return ToStr(PathText::Pick(mPath.View(), flags, IsAnsiLeadByte));
}

void FSPath::GetVolumeName(Str& out) const {
  GetComponents(compVolume, out);
  if (!out.IsEmpty()) out.Delete(out.Length() - 1, 1);
}

void FSPath::Append(const char* component) {
  if (!VT_ASSERT(Str::Length(component) > 0, "Str::Length(component) > 0")) return;
  std::string path(mPath.View());
  PathText::Append(path, component, IsAnsiLeadByte);
  mPath = ToStr(path);
}

bool FSPath::MakeFull() {
  char buffer[FS::kMaxPathNameLen];
  char* filePart = nullptr;
  // As in the run-time library, an empty path stands for the current folder.
  const char* path = mPath.IsEmpty() ? "." : mPath.Chars();
  const DWORD length = GetFullPathNameA(path, sizeof buffer, buffer, &filePart);
  if (length == 0 || length >= sizeof buffer) {
    FS::SetLastError(FS::fsErrNotFound);
    return false;
  }
  mPath = buffer;
  return true;
}

bool FSPath::IsFullPath() const { return PathText::IsFull(mPath.View()); }

bool FSPath::HasExtension() const {
  return PathText::FindExtension(mPath.View(), IsAnsiLeadByte) != PathText::kNone;
}

bool FSPath::GetExtension(Str& out) const {
  const size_t dot = PathText::FindExtension(mPath.View(), IsAnsiLeadByte);
  // Built apart from `out`, which may be this very path.
  Str extension;
  if (dot != PathText::kNone) extension = mPath.View().substr(dot);
  out = extension;
  return dot != PathText::kNone;
}

void FSPath::SetExtension(const char* ext) {
  const std::string_view extension = ViewOrEmpty(ext);
  VT_ASSERT(!ext || (extension.size() >= 2 && extension[0] == '.'),
            "(extension == NULL) || ((Str::Length(extension) >= 2) && (extension[0] == '.'))");
  std::string path(mPath.View());
  PathText::SetExtension(path, extension, IsAnsiLeadByte);
  mPath = ToStr(path);
}

void FSPath::Shorten(int32_t max, Str& out, const FSPath* reference) const {
  VT_ASSERT(max > 10, "max > 10");
  const Str name = FileName();
  const bool sameFolder = reference && Str::ICompare(reference->Parent(), Parent()) == 0;
  const Str& start = sameFolder ? name : mPath;
  const size_t limit = max > 0 ? static_cast<size_t>(max) : 0;
  out = ToStr(PathText::Shorten(start.View(), name.View(), limit, IsAnsiLeadByte));
}

Str JoinPath(const char* dir, const char* name) {
  const std::string_view tail = ViewOrEmpty(name);
  std::string path(ViewOrEmpty(dir));
  if (path.empty()) return Str(tail);
  PathText::Append(path, tail, IsAnsiLeadByte);
  return ToStr(path);
}
