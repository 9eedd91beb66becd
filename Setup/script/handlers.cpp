// The standard line handlers of the script: files, registry lines and variables.
#include "base/assert.h"
#include "base/leadbyte.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "platform/fs.h"
#include "platform/pathparts.h"
#include "script/filerecord.h"
#include "script/files.h"
#include "script/setupinf.h"
#include "stores/register.h"

namespace {

// True when the file already stands there and this run must leave it alone. On a removal
// it is listed all the same.
bool KeepExistingFile(const RecordDest& dest, const Str& path) {
  if (!dest.keepExisting || !Run().install || !FS::Exists(path)) return false;
  LogLine(Message("      \"<DestPath>\" already exists. File not <Action>.", kTemplateLiteral)
              .With("DestPath", path)
              .With("Action", "copied"));
  return true;
}

}  // namespace

int32_t StandardFileHandler(const char* key, int32_t disk, const char* source, const char* dest,
                            int64_t& size, void* /*context*/) {
  if (!VT_ASSERT(disk != 0, "disk != 0"))
    LogScriptError(
        Message("The record of the file \"<key>\" names disk 0.", kTemplateLiteral).With("key", key));
  Str srcDir;
  if (AppVariableExists("InstallFromDir"))
    srcDir = AppGetExpanded("InstallFromDir");
  else
    VT_FAIL("AppGetVariable(\"InstallFromDir\",srcDir)");
  const RecordDest target = SplitRecordDest(dest, IsAnsiLeadByte);
  const Str destDir(target.dir);
  const Str destName(target.name);
  if (destName.IsEmpty()) {
    LogScriptError(Message("The record of the file \"<key>\" names no destination file.", kTemplateLiteral)
                       .With("key", key));
    return 1;
  }
  if (destDir.IsEmpty())
    LogScriptError(Message("The record of the file \"<key>\" names no destination folder.", kTemplateLiteral)
                       .With("key", key));
  if (KeepExistingFile(target, JoinPath(destDir, destName))) return 1;
  if (size < 0)
    LogScriptError(
        Message("The record of the file \"<key>\" has the size <Size:d>; it counts as 0.", kTemplateLiteral)
            .With("key", key)
            .With("Size", static_cast<int32_t>(size)));
  AddFile(destName, destDir, JoinPath(srcDir, source), disk, static_cast<uint32_t>(size < 0 ? 0 : size),
          target.hidden);
  return 1;
}

bool IsSafeKeyPath(std::string_view keyPath) {
  for (size_t pos = 0;;) {
    const size_t end = PathText::FindBackslash(keyPath, pos, IsAnsiLeadByte);
    if (end == pos || pos == keyPath.size()) return false;
    if (end == PathText::kNone) return true;
    pos = end + 1;
  }
}

bool SplitRegistryLine(const char* text, Str& root, Str& keyPath, Str& valueName) {
  const std::string_view line(text);
  const size_t first = line.find('\\');
  const size_t last = PathText::FindLastBackslash(line, IsAnsiLeadByte);
  if (first == std::string_view::npos || last == first) return false;
  const std::string_view path = line.substr(first + 1, last - first - 1);
  if (!IsSafeKeyPath(path)) return false;
  root = line.substr(0, first);
  keyPath = path;
  valueName = line.substr(last + 1);
  return true;
}

int32_t RegistryLineHandler(const char* key, const char* value, void* /*context*/) {
  if (!VT_ASSERT(key != nullptr && *key != '\0', "key") || !VT_ASSERT(value != nullptr, "value")) return 1;
  const bool remove = *key == '-';
  const char* path = key + 1;
  if (*key == '+' && *path == '$') ++path;
  Str rootName;
  Str keyPath;
  Str valueName;
  const bool split = SplitRegistryLine(path, rootName, keyPath, valueName);
  const HKEY root = split ? RootKeyFromName(rootName) : nullptr;
  if (root == nullptr) {
    LogScriptError(Message("The registry line \"<key>\" names no key.", kTemplateLiteral).With("key", key));
    return 1;
  }
  // Each registry operation logs what it could not do; the script goes on in any case.
  if (!remove)
    RegCreateKeyValue(root, keyPath, valueName, value);
  else if (!valueName.IsEmpty())
    RegDeleteSubKeyValue(root, keyPath, valueName);
  else
    RegDeleteKeyTree(root, keyPath);
  return 1;
}

int32_t VariableHandler(const char* name, const char* value, void* /*context*/) {
  AppSetVariable(name, value);
  return 1;
}
