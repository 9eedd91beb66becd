// Copying one file: source prompts, version conflicts, files in use, and what the user is told.
#include <windows.h>

#include "base/assert.h"
#include "base/leadbyte.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "platform/fs.h"
#include "script/files.h"
#include "script/fullpath.h"
#include "script/tempnotes.h"
#include "script/verscopy.h"
#include "ui/err.h"
#include "ui/progmetr.h"

namespace {

constexpr unsigned kInstalling = 784;
constexpr unsigned kExpanding = 785;
constexpr unsigned kInsertSourceDisk = 4128;
constexpr unsigned kSourceMissing = 4164;
constexpr unsigned kKeepNewer = 4212;
constexpr unsigned kGeneralFailure = 4213;
constexpr unsigned kReadOnlyFile = 4214;

// What the user is told, by the first row whose bits the status has.
struct FailureRow {
  uint32_t bits;
  unsigned message;
};
constexpr FailureRow kFailures[] = {
    {vcInUse, 4208},
    {vcOutOfMemory, 4210},
    {vcDestFull, 4211},
    {vcSourceUnreadable | vcReserved | vcCompressedUnreadable | vcExpandedNameUnknown | vcNoSourceName, 4209},
};

// Setup's own files, which an installation from the product folder copies onto themselves.
constexpr const char* kOwnFiles[] = {
    "<CurrDir>\\<ProgName>.exe",
    "<CurrDir>\\<ShortAppKey>su<MajVersion><SysLang>.dll",
    "<CurrDir>\\setup.inf",
};

bool IsOwnFile(const char* path) {
  for (const char* own : kOwnFiles)
    if (Message(own).Text().ICompare(path) == 0) return true;
  return false;
}

// One source may be listed for several destinations, each from a disk of its own.
int32_t DiskOf(const char* infile, const char* outfile) {
  int32_t disk = 0;
  for (int32_t i = 0; i < GetNumFiles(); ++i) {
    const FileRecord record = GetFileRec(i);
    if (Str::ICompare(record.srcPath, infile) != 0) continue;
    if (JoinPath(record.destDir, record.destName).ICompare(outfile) == 0) return record.disk;
    if (disk == 0) disk = record.disk;
  }
  return disk == 0 ? 1 : disk;
}

// True when the user says that the source is there now. A silent run answers OK for ever, so
// it looks only once more.
bool AskForSource(const char* infile, const char* outfile, bool first) {
  if (NDisks() <= 1) {
    ShowError(Message(kSourceMissing).With("SourceFile", infile));
    return false;
  }
  if (Run().IsQuiet() && !first) return false;
  Str drive;
  FSPath(infile).GetVolumeName(drive);
  return AskOkCancel(Message(kInsertSourceDisk)
                         .With("InFile", infile)
                         .With("OutFile", outfile)
                         .With("Disk", DiskOf(infile, outfile))
                         .With("Drive", drive)) == kAnswerOK;
}

// Whether the newer file that is there stays.
bool KeepNewerFile(const Str& fileName) {
  if (Run().IsQuiet()) Run().keepAllNewer = true;
  if (!Run().keepAllNewer) {
    const int32_t answer = AskYesToAll(Message(kKeepNewer).With("FileName", fileName));
    if (answer == kAnswerYesToAll) Run().keepAllNewer = true;
    return answer != kAnswerNo;
  }
  LogLine(Message("  Keeping the newer file <FileName>", kTemplateLiteral).With("FileName", fileName));
  return true;
}

// A base name with a tilde in the place of its first character, which may have two bytes.
Str TildeName(Str name) {
  if (name.IsEmpty()) return "~";
  if (name.Length() > 1 && IsAnsiLeadByte(static_cast<unsigned char>(name.Chars()[0]))) name.Delete(0, 1);
  name.SetAt(0, '~');
  return name;
}

// The file that waits for the restart. It must lie on the destination's volume, or it
// could not be moved then.
bool MakeRestartPath(const FSPath& outfile, Str& tempPath) {
  Str folder = AppGetExpanded("ProgDir");
  if (folder.IsEmpty() ||
      FSPath(folder).Components(FSPath::compVolume).ICompare(outfile.Components(FSPath::compVolume)) != 0)
    folder = outfile.Parent();
  const Str name = TildeName(outfile.BaseName());
  Str ext;
  outfile.GetExtension(ext);
  return VT_ASSERT(FS::GetUniqueName(JoinPath(folder, name), ext, tempPath),
                   "FS::GetUniqueName(temp,ext,tempPath)");
}

// Arranges that a file in use is replaced at the next start of Windows.
bool InstallOnRestart(const char* infile, const char* outfile, Str* waiting) {
  Str tempPath;
  if (!MakeRestartPath(outfile, tempPath)) return false;
  LogLine(Message("  The file <DestFile> is in use. Installing this file on restart. TempPath = <TempPath>",
                  kTemplateLiteral)
              .With("DestFile", outfile)
              .With("TempPath", tempPath));
  const TempNotesScope scope;
  NoteTempFile(tempPath);
  if (VersionCopy(infile, tempPath, true) != 0) return false;
  if (ReplaceFileOnReboot(tempPath, outfile)) {
    ForgetTempFile(tempPath);
    if (waiting != nullptr) *waiting = tempPath;
    Run().restartNeeded = true;
    return true;
  }
  LogLine(Run().IsWin9x()
              ? "'ReplaceFileOnReboot' failed. Maybe the filename is long? (Win95/98 can't handle long "
                "filenames.)"
              : "'ReplaceFileOnReboot' failed.");
  FS::Delete(tempPath);
  return false;
}

unsigned FailureMessage(uint32_t status, const char* outfile) {
  for (const FailureRow& row : kFailures)
    if ((status & row.bits) != 0) return row.message;
  bool locked = false;
  return FS::GetFileAttribute(outfile, FS::kAttrLock, locked) && locked ? kReadOnlyFile : kGeneralFailure;
}

}  // namespace

bool CopyOneFile(const char* infile, const char* outfile, Str* waiting) {
  if (!VT_ASSERT(infile != nullptr, "infile") || !VT_ASSERT(outfile != nullptr, "outfile")) return false;
  if (!VT_ASSERT(*infile != '\0', "Str::Length(infile) > 0") ||
      !VT_ASSERT(*outfile != '\0', "Str::Length(outfile) > 0"))
    return false;
  SetProgressText(Message(IsCompressedName(infile) ? kExpanding : kInstalling).With("DestPath", outfile));
  for (bool first = true; !FS::Exists(infile); first = false)
    if (!AskForSource(infile, outfile, first)) return false;
  if (IsSamePath(infile, outfile)) return true;
  return CopyFileByName(infile, outfile, waiting) == 0 || IsOwnFile(outfile);
}

uint32_t CopyFileByName(const char* infile, const char* outfile, Str* waiting) {
  const Str fileName = FSPath(outfile).FileName();
  uint32_t status = VersionCopy(infile, outfile, false);
  if ((status & vcConflict) != 0) {
    if ((status & vcSourceOld) != 0 && KeepNewerFile(fileName)) return 0;
    status = VersionCopy(infile, outfile, true);
  }
  if ((status & vcInUse) != 0 && InstallOnRestart(infile, outfile, waiting)) status = 0;
  if (status == 0) return 0;
  Str line;
  line.Format("CopyFileByName: vcError %d", static_cast<int>(status));
  LogLine(line);
  ShowError(Message(FailureMessage(status, outfile)).With("FileName", fileName));
  return status;
}

bool GetUniqueName(Str& path) {
  if (!FS::Exists(path)) return false;
  const FSPath original(path);
  Str base = JoinPath(original.Parent(), original.BaseName());
  Str ext;
  FSPath(original.FileName()).GetExtension(ext);
  Str free;
  if (FS::GetUniqueName(base, ext, free)) path = free;
  return true;
}
