// INI stores over files.
#include <algorithm>
#include <string>
#include <string_view>

#include "base/assert.h"
#include "stores/inistore.h"
#include "stores/readfile.h"

namespace {

bool OpenSource(IniStore& ini, const char* path) {
  if (ini.readOnly) return FioOpen(path, fioREAD, ini.file) == fioOK;
  FioResult result = FioOpen(path, fioREADWRITE, ini.file);
  if (result == fioNOT_FOUND) result = FioCreate(path, fioREADWRITE, ini.file);
  return result == fioOK;
}

bool WriteAt(FioFile& file, uint32_t pos, std::string_view bytes) {
  if (bytes.empty()) return true;
  return FioSeek(file, pos) == fioOK &&
         FioWrite(file, static_cast<uint32_t>(bytes.size()), bytes.data()) == fioOK;
}

// Replaces what the file holds. Where the new content is longer its end goes first: if the disk has no room
// for it the file gets its old size back and is as it was, and what follows needs no room.
bool Rewrite(FioFile& file, std::string_view content) {
  uint32_t oldSize = 0;
  if (FioGetSize(file, oldSize) != fioOK) return false;
  const std::string_view added = content.substr(std::min<size_t>(oldSize, content.size()));
  if (!WriteAt(file, oldSize, added)) {
    static_cast<void>(FioSetEOF(file, oldSize));  // the write has been reported already
    return false;
  }
  return WriteAt(file, 0, content.substr(0, content.size() - added.size()));
}

}  // namespace

bool OpenIniFile(IniStore& ini, const char* path) {
  if (!OpenSource(ini, path)) return false;
  std::string bytes;
  if (!ReadWholeFile(ini.file, bytes)) {
    FioClose(ini.file);
    return false;
  }
  ini.text.LoadFile(bytes);
  return true;
}

bool WriteIniFile(IniStore& ini) {
  if (!VT_ASSERT(ini.type == iniFILE, "ini->type == iniFILE")) return false;
  const std::string content = ini.text.ToFile();
  bool written = Rewrite(ini.file, content);
  if (written) {
    uint32_t end = 0;
    FioResult result = FioSeek(ini.file, static_cast<uint32_t>(content.size()));
    if (result == fioOK) result = FioGetPos(ini.file, end);
    written = VT_ASSERT(result == fioOK, "err == fioOK");
    written = VT_ASSERT(FioSetEOF(ini.file, end) == fioOK, "err == fioOK") && written;
  }
  return FioClose(ini.file) == fioOK && written;
}
