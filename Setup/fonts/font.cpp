#include "fonts/font.h"

#include <windows.h>

#include <vector>

#include "base/assert.h"
#include "base/handle.h"
#include "fonts/ttfreader.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "platform/WinRegistry.h"
#include "platform/fio.h"
#include "platform/fs.h"

namespace {

constexpr char kFontListKey[] = "Software\\Microsoft\\Windows NT\\CurrentVersion\\Fonts";
constexpr char kShellFoldersKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr char kTrueTypeSuffix[] = " (TrueType)";
// The name table of real fonts stays far below this; a larger one is taken for damage rather than loaded.
constexpr uint32_t kMaxTableSize = 16u << 20;

// Exactly `range` of the file; false when that much is not there.
bool ReadRange(FioFile& file, TtfRange range, std::vector<std::byte>& bytes) {
  if (range.length > kMaxTableSize || FioSeek(file, range.offset) != fioOK) return false;
  bytes.resize(range.length);
  uint32_t got = 0;
  return range.length == 0 ||
         (FioRead(file, range.length, bytes.data(), &got) == fioOK && got == range.length);
}

bool ReadTables(FioFile& file, TtfTables& tables) {
  uint32_t size = 0;
  std::vector<std::byte> bytes;
  if (FioGetSize(file, size) != fioOK || size < kTtfHeaderSize) return false;
  if (!ReadRange(file, {0, kTtfHeaderSize}, bytes)) return false;
  const uint32_t directorySize =
      kTtfHeaderSize + static_cast<uint32_t>(TtfTableCount(bytes)) * static_cast<uint32_t>(kTtfRecordSize);
  return directorySize <= size && ReadRange(file, {0, directorySize}, bytes) &&
         TtfFindTables(bytes, size, tables);
}

struct FindFont {
  const char* familyName;
  bool found;
};

int CALLBACK CompareFamily(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM param) {
  FindFont* findFont = reinterpret_cast<FindFont*>(param);
  findFont->found = Str::ICompare(findFont->familyName, font->lfFaceName) == 0;
  return findFont->found ? 0 : 1;
}

bool OpenFontList(KWinRegistry& fonts, WinRegMode mode) {
  KWinRegistry root;
  return root.OpenRooted("HKEY_LOCAL_MACHINE", mode) && root.OpenKey(kFontListKey, fonts, mode);
}

// Walks the font list; the visitor returns false to stop.
template <class Visitor>
void ForEachListedFont(Visitor visitor) {
  KWinRegistry fonts;
  if (!OpenFontList(fonts, wrRead)) return;
  Str name;
  Str data;
  for (uint32_t i = 0; fonts.EnumValue(i, name, data); ++i)
    if (!visitor(name, data)) return;
}

// Data written to the font list: the bare name for a file of the font folder, else the full path.
Str ListedFile(const char* fontPath) {
  const FSPath path(fontPath);
  const FSPath inFontFolder(JoinPath(AppGetExpanded("TTSysDir"), path.FileName()));
  return inFontFolder.Path().ICompare(path.Path()) == 0 ? path.FileName() : path.Path();
}

}  // namespace

bool ReadTrueTypeFile(const char* path, TrueTypeData& data) {
  FioFile file;
  TtfTables tables;
  std::vector<std::byte> bytes;
  TtfNames names;
  if (FioOpen(path, fioREAD, file) != fioOK || !ReadTables(file, tables)) return false;
  if (!ReadRange(file, tables.name, bytes) || !TtfReadNames(bytes, names)) return false;
  if (!ReadRange(file, tables.head, bytes) || !TtfReadRevision(bytes, data.version)) return false;
  data.style = 0;
  if (tables.os2.length != 0 && (!ReadRange(file, tables.os2, bytes) || !TtfReadStyle(bytes, data.style)))
    return false;
  data.fullName = names.full.c_str();
  data.familyName = names.family.c_str();
  return true;
}

bool IsFontFamilyInstalled(const char* familyName) {
  const ScreenHandle screen(GetDC(nullptr));
  FindFont findFont = {familyName, false};
  LOGFONTA all = {};
  all.lfCharSet = DEFAULT_CHARSET;
  EnumFontFamiliesExA(screen.Get(), &all, CompareFamily, reinterpret_cast<LPARAM>(&findFont), 0);
  return findFont.found;
}

bool GetFontDir(Str& folder) {
  KWinRegistry user;
  KWinRegistry shellFolders;
  if (!user.OpenRooted("HKEY_CURRENT_USER", wrRead) ||
      !user.OpenKey(kShellFoldersKey, shellFolders, wrRead)) {
    LogLine("GetFontDir: couldn't open the 'Shell Folders' key.");
  } else if (shellFolders.GetValue("Fonts", folder) && !folder.IsEmpty()) {
    return true;
  } else {
    LogLine("Couldn't get the 'Fonts' value from the 'Shell Folders' key");
  }
  folder = JoinPath(AppGetExpanded("WinDir"), "Fonts");
  if (FS::IsDir(folder)) return true;
  LogLine(Message("Appended '\\Fonts' to Windows Directory but it doesn't exist: <FontDir>", kTemplateLiteral)
              .With("FontDir", folder));
  return false;
}

bool DefineTTSysDir() {
  if (AppVariableExists("TTSysDir")) return true;
  Str folder;
  if (!GetFontDir(folder)) return false;
  AppSetVariable("TTSysDir", folder);
  LogLine(Message("    TTSysDir variable defined: <TTSysDir>"));
  return true;
}

bool FindRegistryFont(const char* fontName, Str& valueName, Str& regFile) {
  Str start(fontName);
  start.Append(" (");
  bool found = false;
  ForEachListedFont([&](const Str& name, const Str& data) {
    found = name.IBeginsWith(start);
    if (found) {
      valueName = name;
      regFile = data;
    }
    return !found;
  });
  return found;
}

bool IsFamilyInRegistry(const char* familyName) {
  bool found = false;
  ForEachListedFont([&](const Str& name, const Str&) {
    found = name.IBeginsWith(familyName);
    return !found;
  });
  return found;
}

bool RegistryFontPath(const char* regFile, Str& path) {
  const FSPath file(regFile);
  Str ext;
  if (!file.IsEmpty()) file.GetExtension(ext);
  const bool isFot = ext.ICompare(".FOT") == 0;
  if (!VT_ASSERT(isFot || ext.ICompare(".TTF") == 0, "Unknown font type.")) return false;
  if (file.IsFullPath()) {
    path = file.Path();
  } else {
    const Str folder = isFot ? JoinPath(AppGetExpanded("WinDir"), "System") : AppGetExpanded("TTSysDir");
    path = JoinPath(folder, file);
  }
  return true;
}

bool WriteFontToRegistry(const char* fullName, const char* fontPath) {
  KWinRegistry fonts;
  if (!OpenFontList(fonts, wrWrite)) {
    LogLine(Message("WriteFontToRegistry: couldn't open reg key <KeyName>.", kTemplateLiteral)
                .With("KeyName", kFontListKey));
    return false;
  }
  Str valueName(fullName);
  valueName.Append(kTrueTypeSuffix);
  const Str data = ListedFile(fontPath);
  const DWORD size = static_cast<DWORD>(data.Length()) + 1;
  if (RegSetValueExA(fonts.Key(), valueName, 0, REG_SZ, reinterpret_cast<const BYTE*>(data.Chars()), size) ==
      ERROR_SUCCESS)
    return true;
  LogLine(Message("WriteFontToRegistry: couldn't set value (<ValueName>) = (<ValueData>).", kTemplateLiteral)
              .With("ValueName", valueName)
              .With("ValueData", data));
  return false;
}

bool RemoveFontFromRegistry(const char* fullName) {
  Str valueName;
  Str regFile;
  const bool listed = FindRegistryFont(fullName, valueName, regFile);
  KWinRegistry fonts;
  if (!OpenFontList(fonts, wrUpdate)) {
    LogLine(Message("RemoveFontFromRegistry: couldn't open key <KeyName>", kTemplateLiteral)
                .With("KeyName", kFontListKey));
    return false;
  }
  return !listed || fonts.DeleteValue(valueName);
}
