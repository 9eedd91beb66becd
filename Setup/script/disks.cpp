// Copying and deleting the whole file list, disk by disk, and the prompts for disks.
#include <windows.h>

#include <algorithm>

#include "base/assert.h"
#include "base/runstate.h"
#include "messages/filelog.h"
#include "messages/format.h"
#include "messages/varlist.h"
#include "platform/fs.h"
#include "script/files.h"
#include "script/tempnotes.h"
#include "ui/dlog.h"
#include "ui/err.h"
#include "ui/progmetr.h"

namespace {

constexpr unsigned kInsertDisk = 4129;
constexpr unsigned kInsertFirstDisk = 4130;

// The meter of one copy loop; not touched at all when the script switched it off.
class CopyMeter {
 public:
  CopyMeter() : mShown(!AppGetBool("no_prog_meter")) { Show(0); }
  void Show(int32_t percent) {
    if (mShown) SetPercentage(percent);
  }
  void Add(uint32_t size) {
    mCopied += size;
    const uint64_t total = TotalFileSize();
    Show(total == 0 ? 0 : static_cast<int32_t>(mCopied * 100 / total));
  }
  void Hide() {
    if (mShown) ClearMeter();
  }

 private:
  bool mShown;
  uint64_t mCopied = 0;
};

// Disk numbers in use, ascending; only disks from 1 on are copied.
std::vector<int32_t> ListDisks() {
  std::vector<int32_t> disks;
  for (int32_t i = 0; i < GetNumFiles(); ++i) {
    const int32_t disk = GetFileRec(i).disk;
    if (disk >= 1) disks.push_back(disk);
  }
  std::sort(disks.begin(), disks.end());
  disks.erase(std::unique(disks.begin(), disks.end()), disks.end());
  return disks;
}

bool CopyRecord(const FileRecord& record, CopyMeter& meter) {
  PumpMessages();
  if (Run().abort) return false;
  const Str destination = JoinPath(record.destDir, record.destName);
  Str waiting;
  const bool copied = CopyOneFile(record.srcPath, destination, &waiting);
  if (record.hidden != 0) {
    SetFileAttributesA(destination, FILE_ATTRIBUTE_HIDDEN);
    if (!waiting.IsEmpty())
      SetFileAttributesA(waiting, FILE_ATTRIBUTE_HIDDEN);  // it takes the place as it is
  }
  if (!copied || Run().abort) return false;
  meter.Add(record.size);
  return true;
}

bool CopyDisk(int32_t disk, CopyMeter& meter) {
  if (disk > 1 && !PromptForDisk(disk)) return false;
  for (int32_t i = 0; i < GetNumFiles(); ++i) {
    const FileRecord record = GetFileRec(i);
    if (record.disk == disk && !CopyRecord(record, meter)) return false;
  }
  return true;
}

}  // namespace

bool CopyAll() {
  if (GetNumFiles() == 0) return true;
  const TempNotesScope notes;
  CopyMeter meter;
  for (const int32_t disk : ListDisks()) {
    if (!CopyDisk(disk, meter)) {
      meter.Hide();
      return false;
    }
  }
  meter.Show(100);
  meter.Hide();
  return true;
}

bool DeleteAll(const Str& held) {
  for (int32_t i = 0; i < GetNumFiles(); ++i) {
    const FileRecord record = GetFileRec(i);
    if (record.destDir[0] != '\0') {
      const Str path = JoinPath(record.destDir, record.destName);
      if (path.ICompare(held) != 0) LoggedDelete(path);
      continue;
    }
    // Without a folder the name would be looked for in the current one, where it was never installed.
    LogDeletion(record.destName, false);
  }
  return true;
}

bool PromptForDisk(int32_t disk) {
  VT_ASSERT(NDisks() > 1, "NDisks > 1");
  const Str installFrom = AppGetExpanded("InstallFromDir");
  Str drive;
  if (!installFrom.IsEmpty()) FSPath(installFrom).GetVolumeName(drive);
  if (!Run().IsQuiet()) MessageBeep(MB_ICONEXCLAMATION);
  return AskOkCancel(
             Message(disk == 1 ? kInsertFirstDisk : kInsertDisk).With("Disk", disk).With("Drive", drive)) ==
         kAnswerOK;
}
