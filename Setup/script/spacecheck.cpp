// The free-space check of the file list, volume by volume.
#include <string>

#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "platform/fs.h"
#include "script/files.h"
#include "ui/err.h"

namespace {

constexpr unsigned kNoSpaceQuestion = 4099;
constexpr uint64_t kMarginKB = 2000;  // kept free on every volume

struct Volume {
  Str root;
  uint64_t bytes;
};

// A file without a folder goes to the Windows folders.
Str RootOf(const char* destDir) {
  FSPath dir(*destDir != '\0' ? Str(destDir) : AppGetExpanded("WinDir"));
  if (!dir.IsFullPath() && !dir.MakeFull()) return Str();
  return dir.Components(FSPath::compVolume);
}

std::vector<Volume> ListVolumes() {
  std::vector<Volume> volumes;
  for (int32_t i = 0; i < GetNumFiles(); ++i) {
    const FileRecord record = GetFileRec(i);
    const Str root = RootOf(record.destDir);
    size_t found = 0;
    while (found < volumes.size() && volumes[found].root.ICompare(root) != 0) ++found;
    if (found == volumes.size()) volumes.push_back({root, 0});
    volumes[found].bytes += record.size;
  }
  return volumes;
}

Str VolumeName(const Str& root) {
  Str name;
  if (!root.IsEmpty()) FSPath(root).GetVolumeName(name);
  return name;
}

// False when the user does not want to go on.
bool CheckVolume(const Volume& volume) {
  const uint64_t needed = (volume.bytes >> 10) + kMarginKB;
  uint32_t available = 0;
  if (!FS::GetFreeKB(volume.root, available) && Run().IsWin9x()) {
    LogLine(
        Message("<SetupName> can't get volume information for <UNCName> because of a bug in Win95. Skipping "
                "space-available tests.")
            .With("UNCName", volume.root));
    return true;
  }
  const Str name = VolumeName(volume.root);
  const std::string neededText = std::to_string(needed);
  const std::string availableText = std::to_string(available);
  LogLine(Message("Volume <VolumeName>... <KBAvail> KBytes available; <KBNeeded> KBytes needed.",
                  kTemplateLiteral)
              .With("VolumeName", name)
              .With("KBAvail", availableText.c_str())
              .With("KBNeeded", neededText.c_str()));
  if (needed <= available) return true;
  return AskOkCancel(Message(kNoSpaceQuestion)
                         .With("VolumeName", name)
                         .With("KBNeeded", neededText.c_str())
                         .With("KBAvail", availableText.c_str())) == kAnswerOK;
}

}  // namespace

bool CheckSpace() {
  for (const Volume& volume : ListVolumes()) {
    if (CheckVolume(volume)) continue;
    Run().abort = true;
    return false;
  }
  return true;
}
