#include "script/verscopy.h"

#include <windows.h>

#include <algorithm>
#include <string>

#include "base/assert.h"
#include "base/handle.h"
#include "base/leadbyte.h"
#include "base/runstate.h"
#include "messages/logfile.h"
#include "platform/fs.h"
#include "platform/pathparts.h"
#include "script/filerecord.h"
#include "script/shortnames.h"
#include "script/szdd.h"
#include "script/tempnotes.h"
#include "script/versionapi.h"

namespace {

constexpr UINT kPathSize = FS::kMaxPathNameLen;  // bytes, terminator included
constexpr DWORD kForce = VIFF_FORCEINSTALL | VIFF_DONTDELETEOLD;

// Everything one call works with.
struct CopyJob {
  Str sourcePath;
  Str srcName;
  Str srcDir;
  Str destName;
  Str destDir;
  char curDir[kPathSize] = "";      // where a copy was found
  char installDir[kPathSize] = "";  // where the file belongs
};

struct BitRow {
  uint32_t installBit;
  uint32_t status;
};
constexpr BitRow kBits[] = {
    {VIF_OUTOFMEMORY, vcOutOfMemory},
    {VIF_OUTOFSPACE, vcDestFull},
    {VIF_SRCOLD, vcSourceOld},
    {VIF_DIFFLANG, vcDiffLanguage},
    {VIF_DIFFCODEPG, vcDiffCodePage},
    {VIF_CANNOTREADDST, vcDestUnreadable},
    {VIF_ACCESSVIOLATION, vcAccessViolation},
    {VIF_DIFFTYPE, vcDiffType},
    {VIF_CANNOTREADSRC, vcSourceUnreadable},
};

void SplitPath(const Str& path, Str& dir, Str& name) {
  std::string_view dirPart;
  std::string_view namePart;
  SplitPathText(path.View(), IsAnsiLeadByte, dirPart, namePart);
  dir = dirPart;
  name = namePart;
}

void LogCode(const char* text, uint32_t code) {
  Str line;
  line.Format("%s %d", text, static_cast<int>(code));
  LogLine(line);
}

uint32_t Refuse(const char* what, const char* path) {
  Str line;
  line.Format("VersionCopy: %s: %s", what, path);
  LogError(line);
  return vcOther;
}

// A folder as the install function can take it. It opens files through a structure that ends a path after 127
// characters; the folder's short name leaves room for `name` there.
Str OpenableFolder(const char* dir, const char* name) {
  constexpr int32_t kLongestTempName = 12;  // "verXXXX.tmp" behind its backslash
  constexpr int32_t kLongest = OFS_MAXPATHNAME - 1;
  Str folder(dir);
  if (folder.Length() + 1 + std::max(Str::Length(name), kLongestTempName) <= kLongest) return folder;
  char shortName[kPathSize];
  const DWORD length = GetShortPathNameA(dir, shortName, kPathSize);
  if (length > 0 && length < kPathSize) folder = shortName;
  return folder;
}

// False for a compressed file that ends before all of its bytes: the install function would install what is
// there and call that a success.
bool IsSourceWhole(const Str& path) {
  constexpr DWORD kPiece = 65536;  // bytes
  if (!IsCompressedName(path)) return true;
  const FileHandle file(CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file) return true;  // the install function will say so
  std::string bytes;
  for (DWORD got = kPiece; got > 0;) {
    const size_t before = bytes.size();
    bytes.resize(before + kPiece);
    if (!ReadFile(file.Get(), bytes.data() + before, kPiece, &got, nullptr)) return true;
    bytes.resize(before + got);
    if (!IsSzdd(bytes)) return true;
  }
  return IsSzddWhole(bytes);
}

// The name that the source has once expanded.
uint32_t DeriveDestName(const VersionApi& api, CopyJob& job) {
  char source[kPathSize];
  char expanded[kPathSize] = "";
  lstrcpynA(source, JoinPath(OpenableFolder(job.srcDir, job.srcName), job.srcName), kPathSize);
  OFSTRUCT info = {};
  info.cBytes = sizeof(info);
  const INT file = api.lzOpenFile(source, &info, OF_READ | OF_SHARE_DENY_WRITE);
  if (file < 0) return vcCompressedUnreadable;
  const INT result = api.getExpandedName(source, expanded);
  api.lzClose(file);
  if (result < 0) return vcExpandedNameUnknown;
  Str dir;
  SplitPath(Str(expanded), dir, job.destName);
  return job.destName.IsEmpty() ? static_cast<uint32_t>(vcExpandedNameUnknown) : 0;
}

// Where the file belongs and whether the copy there is in use.
uint32_t FindPlace(const VersionApi& api, CopyJob& job) {
  char windowsDir[kPathSize] = "";
  const UINT length = GetWindowsDirectoryA(windowsDir, kPathSize);
  VT_ASSERT(length > 0 && length < kPathSize, "GetWindowsDirectory");
  const DWORD flags = job.destDir.IsEmpty() ? VFFF_ISSHAREDFILE : 0;
  if (job.destDir.IsEmpty()) job.destDir = windowsDir;
  UINT curDirLen = kPathSize;
  UINT installDirLen = kPathSize;
  const DWORD found = api.verFindFile(flags, job.destName, windowsDir, job.destDir, job.curDir, &curDirLen,
                                      job.installDir, &installDirLen);
  job.curDir[kPathSize - 1] = '\0';
  job.installDir[kPathSize - 1] = '\0';
  if ((found & VFF_FILEINUSE) != 0 && job.destDir.ICompare(job.curDir) == 0) return vcInUse;
  return (found & VFF_BUFFTOOSMALL) != 0 ? static_cast<uint32_t>(vcBufferTooSmall) : 0;
}

// One call of the install function, with its temporary file removed again. `error`
// receives the system's error.
DWORD CallInstall(const VersionApi& api, DWORD flags, const CopyJob& job, const char* destName,
                  DWORD& error) {
  char tmpFile[kPathSize] = "";
  UINT tmpFileLen = kPathSize;
  const Str srcDir = OpenableFolder(job.srcDir, job.srcName);
  const Str installDir = OpenableFolder(job.installDir, destName);
  const DWORD result =
      api.verInstallFile(flags, job.srcName, destName, srcDir, installDir, job.curDir, tmpFile, &tmpFileLen);
  error = GetLastError();
  tmpFile[kPathSize - 1] = '\0';
  if ((result & VIF_TEMPFILE) != 0 && tmpFile[0] != '\0') FS::Delete(JoinPath(job.installDir, tmpFile));
  return result;
}

bool IsWritableFile(const char* path) {
  bool locked = false;
  return FS::IsFile(path) && FS::GetFileAttribute(path, FS::kAttrLock, locked) && !locked;
}

uint32_t MyVerInstallFile(const VersionApi& api, DWORD flags, CopyJob& job) {
  const Str target = JoinPath(job.installDir, job.destName);
  FS::SetFileAttribute(target, FS::kAttrLock, false);  // a missing file has none to clear
  Str destName = job.destName;
  Str temporary;  // Windows 95/98: the short-named file that becomes `target`
  if (Run().IsWin9x()) UseShortNames(job.sourcePath, target, job.srcName, destName, temporary);

  DWORD error = 0;
  DWORD result = CallInstall(api, flags, job, destName, error);
  uint32_t status = StatusOfInstall(result, result != 0 && IsWritableFile(target));
  if (result != 0 && (result & VIF_FILEINUSE) == 0) {
    LogCode("VerInstallFile: GetLastError", error);
    constexpr DWORD kNoReason = VIF_MISMATCH | VIF_TEMPFILE;
    if ((result & VIF_MISMATCH) != 0 && (result & ~kNoReason) == 0) {
      result = CallInstall(api, kForce, job, destName, error);
      status = StatusOfInstall(result, result != 0 && IsWritableFile(target));
    }
  }
  if (status == vcOther) LogCode("MyVerInstallFile: installCodes", result);
  if (result != 0) SweepInstallFolder(job.installDir);
  if (!temporary.IsEmpty()) FinishShortNames(status == 0, temporary, target);
  return status;
}

uint32_t InstallInto(const VersionApi& api, bool force, CopyJob& job) {
  FSPath place(job.installDir);
  if (place.IsEmpty()) place = FSPath(job.destDir);
  if (!place.MakeFull() || place.Length() >= static_cast<int32_t>(kPathSize))
    return Refuse("no usable folder", job.destDir);
  lstrcpynA(job.installDir, place, kPathSize);
  if (JoinPath(job.installDir, job.destName).Length() >= static_cast<int32_t>(kPathSize))
    return Refuse("the path is too long", job.destName);
  if (!FS::CreateDir(job.installDir)) return Refuse("the folder cannot be made", job.installDir);
  const TempNotesScope scope;
  NoteInstallFolder(job.installDir);
  return MyVerInstallFile(api, force ? kForce : VIFF_DONTDELETEOLD, job);
}

}  // namespace

bool IsCompressedName(const char* path) {
  Str extension;
  FSPath(FSPath(path).FileName()).GetExtension(extension);
  return PathText::FindCharacter(extension.View(), '#', 0, IsAnsiLeadByte) != PathText::kNone ||
         PathText::FindCharacter(extension.View(), '_', 0, IsAnsiLeadByte) != PathText::kNone;
}

uint32_t StatusOfInstall(uint32_t installCodes, bool destWritable) {
  // A held source is no held destination.
  const bool held = (installCodes & VIF_SHARINGVIOLATION) != 0 && (installCodes & VIF_CANNOTREADSRC) == 0;
  constexpr uint32_t kRunning = VIF_ACCESSVIOLATION | VIF_CANNOTDELETE;
  if ((installCodes & VIF_FILEINUSE) != 0 || held || ((installCodes & kRunning) == kRunning && destWritable))
    return vcInUse;
  installCodes &= ~static_cast<uint32_t>(VIF_MISMATCH);
  if (installCodes == 0) return 0;
  uint32_t status = 0;
  for (const BitRow& row : kBits)
    if ((installCodes & row.installBit) != 0) status |= row.status;
  return status != 0 ? status : static_cast<uint32_t>(vcOther);
}

uint32_t VersionCopy(const char* szSourceFile, Str& destFile, bool force) {
  if (!VT_ASSERT(szSourceFile != nullptr, "szSourceFile")) return vcNoSourceName;
  CopyJob job;
  job.sourcePath = szSourceFile;
  SplitPath(job.sourcePath, job.srcDir, job.srcName);
  SplitPath(destFile, job.destDir, job.destName);
  if (job.srcName.IsEmpty()) return vcNoSourceName;
  if (job.sourcePath.Length() >= static_cast<int32_t>(kPathSize))
    return Refuse("the path is too long", szSourceFile);
  const VersionApi* api = GetVersionApi();
  if (api == nullptr) return Refuse("the version library cannot be used", szSourceFile);
  if (!IsSourceWhole(job.sourcePath)) {
    Refuse("the compressed file ends too early", szSourceFile);
    return vcSourceUnreadable;
  }
  if (job.destName.IsEmpty()) {
    const uint32_t status = DeriveDestName(*api, job);
    if (status != 0) return status;
  }
  uint32_t status = FindPlace(*api, job);
  if (status == 0) status = InstallInto(*api, force, job);
  if (status == 0 && destFile.IsEmpty()) destFile = JoinPath(job.installDir, job.destName);
  return status;
}

uint32_t VersionCopy(const char* szSourceFile, const char* destFile, bool force) {
  Str dest(destFile == nullptr ? "" : destFile);
  return VersionCopy(szSourceFile, dest, force);
}
