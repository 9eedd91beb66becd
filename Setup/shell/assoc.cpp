#include "shell/assoc.h"

#include <windows.h>

#include "base/ascii.h"
#include "base/assert.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/restext.h"
#include "messages/varlist.h"
#include "platform/WinRegistry.h"
#include "platform/fspath.h"
#include "resources/ids.h"
#include "shell/stubscript.h"
#include "stores/profile.h"
#include "stores/register.h"

namespace {

constexpr char kFileExtsKey[] =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\";
constexpr char kOrderValue[] = "MRUList";

// A list entry is named by one letter.
bool IsEntryName(const Str& name) { return name.Length() == 1 && IsAsciiLetter(name.Chars()[0]); }

bool OpenOpenWithList(const Str& extension, KWinRegistry& list, WinRegMode mode) {
  Str path(kFileExtsKey);
  path.Append('.');
  path.Append(extension);
  path.Append("\\OpenWithList");
  return list.OpenRooted(path, mode);
}

void LogOpenWith(const char* text, const Str& extension, const Str& application) {
  LogLine(Message(text, kTemplateLiteral).With("app", application).With("ext", extension));
}

// What an open-with list holds: whether the application is in it, and the letters in use.
struct OpenWithEntries {
  Str found;  // the application's letter
  char greatest = 0;
  bool used[26] = {};
};

OpenWithEntries ReadEntries(KWinRegistry& list, const Str& application, bool anyName) {
  OpenWithEntries entries;
  Str name;
  Str data;
  for (uint32_t i = 0; list.EnumValue(i, name, data); ++i) {
    const bool isEntry = IsEntryName(name);
    if (isEntry) {
      const char letter = AsciiLower(name.Chars()[0]);
      entries.used[letter - 'a'] = true;
      if (letter > entries.greatest) entries.greatest = letter;
    }
    if ((isEntry || anyName) && entries.found.IsEmpty() && data.ICompare(application) == 0)
      entries.found = name;
  }
  return entries;
}

// The letter behind the greatest, "a" for an empty list; behind "z" the first that is
// free, 0 when there is none.
char NextLetter(const OpenWithEntries& entries) {
  if (entries.greatest == 0) return 'a';
  if (entries.greatest < 'z') return static_cast<char>(entries.greatest + 1);
  for (int i = 0; i < 26; ++i)
    if (!entries.used[i]) return static_cast<char>('a' + i);
  return 0;
}

Str ClassDefault(const Str& key) {
  Str value;
  RegQueryString(HKEY_CLASSES_ROOT, key, "", value);
  return value;
}

bool GetProgramName(Str& progName, const char* assertion) {
  return VT_ASSERT(AppGetVariable("AppProgName", progName), assertion) && !progName.IsEmpty();
}

// The text names the product's program. A program name of one or two letters would be
// found in almost any text.
bool NamesProgram(const Str& text, const Str& progName) {
  Str program(progName);
  program.Append(".exe");
  return Str::IFind(text, program) != nullptr ||
         (progName.Length() > 2 && Str::IFind(text, progName) != nullptr);
}

Str WithDot(const Str& extension) {
  Str text(extension);
  if (text.IsEmpty() || text.Chars()[0] != '.') text.Insert('.', 0);
  return text;
}

Str WithoutDot(const Str& extension) {
  Str text(extension);
  if (!text.IsEmpty() && text.Chars()[0] == '.') text.Delete(0, 1);
  return text;
}

void CleanWinIniLine(const Str& extension, const Str& progName) {
  const Str line = ProfileText("Extensions", extension);
  if (!NamesProgram(line, progName) || !WriteProfileStringA("Extensions", extension, nullptr)) return;
  LogLine(
      Message(
          "    Fixed possible file extension conflicts by deleting the \"<Extension> = <ExtLine>\" line from "
          "the [Extensions] section in WIN.INI.",
          kTemplateLiteral)
          .With("Extension", extension)
          .With("ExtLine", line));
}

void CleanExtensionValue(const char* root, const char* subKey, const Str& extension, const Str& progName) {
  KWinRegistry rootKey;
  KWinRegistry key;
  Str value;
  if (!rootKey.OpenRooted(root, wrUpdate) || !rootKey.OpenKey(subKey, key, wrUpdate)) return;
  if (!key.GetValue(extension, value) || !NamesProgram(value, progName) || !key.DeleteValue(extension))
    return;
  LogLine(Message("    Fixed possible file extension conflicts by deleting the value \"<Value>\" from the "
                  "\"<Root>\\<SubKey>\" registry key.",
                  kTemplateLiteral)
              .With("Value", extension)
              .With("Root", root)
              .With("SubKey", subKey));
}

}  // namespace

void RegisterDocumentClass(const Str& progId, const Str& classId, const Str& className) {
  KWinRegistry classes;
  KWinRegistry existing;
  // An empty name would be the key above all classes.
  if (progId.IsEmpty() || classId.IsEmpty()) return;
  if (!classes.OpenRooted("HKEY_CLASSES_ROOT", wrRead) || classes.OpenKey(progId, existing, wrRead)) return;
  VarList vars;
  vars.Set("StubProgId", progId);
  vars.Set("StubClassId", classId);
  vars.Set("StubClassName", className);
  StubScript script;
  Str command;
  for (int32_t i = 0; i < kMaxRunLength && GetRunText(IDS_STUB_SCRIPT, i, command); ++i) {
    vars.Expand(command);
    if (!script.Execute(command)) return;
  }
}

void AddToOpenWithList(const Str& extension, const Str& application) {
  KWinRegistry list;
  if (!OpenOpenWithList(extension, list, wrWrite)) return;
  const OpenWithEntries entries = ReadEntries(list, application, true);
  if (!entries.found.IsEmpty()) {
    LogOpenWith("<app> already exists in OpenWithList for <ext>", extension, application);
    return;
  }
  const char letter = NextLetter(entries);
  if (letter == 0) {
    LogOpenWith("    OpenWithList for <ext> is full: <app> was not added", extension, application);
    return;
  }
  const char name[] = {letter, '\0'};
  Str order;
  list.GetValue(kOrderValue, order);
  order.Append(letter);
  if (list.SetValue(name, application) && list.SetValue(kOrderValue, order))
    LogOpenWith("Added <app> to OpenWithList for <ext>", extension, application);
}

void RemoveFromOpenWithList(const Str& extension, const Str& application) {
  KWinRegistry list;
  OpenWithEntries entries;
  if (OpenOpenWithList(extension, list, wrUpdate)) entries = ReadEntries(list, application, false);
  if (entries.found.IsEmpty()) {
    LogOpenWith("<app> did not exist in OpenWithList for <ext>", extension, application);
    return;
  }
  list.DeleteValue(entries.found);
  Str order;
  if (list.GetValue(kOrderValue, order)) {
    const int32_t pos = order.Find(entries.found, 0, false);
    if (pos >= 0) {
      order.Delete(pos, 1);
      list.SetValue(kOrderValue, order);
    }
  }
  LogOpenWith("Deleted <app> from OpenWithList for <ext>", extension, application);
}

void CleanForeignAssociation(const Str& extension, const Str& typeName) {
  Str type;
  if (typeName.IsEmpty() ||
      RegValueContains(HKEY_CLASSES_ROOT, WithDot(extension), "", typeName, &type) != kRegOther ||
      Str::IFind(type, typeName) != nullptr)  // written in other letters it is the product's own all the same
    return;
  Str searchStr;
  if (!GetProgramName(searchStr, "AppGetVariable(\"AppProgName\",searchStr)")) return;
  searchStr.Append(".exe");
  const Str subKey = JoinPath(type, "shell\\open");
  if (Str::IFind(ClassDefault(JoinPath(subKey, "command")), searchStr) == nullptr) return;
  if (RegDeleteKeyTree(HKEY_CLASSES_ROOT, subKey) != 0) return;
  LogLine(
      Message(
          "    An independant application was found to be launching <AppName>. <SetupName> has removed the "
          "registry key \"HKEY_CLASSES_ROOT\\<SubKey>\" in order to eliminate the conflict.")
          .With("SubKey", subKey));
}

void CleanProfileAssociation(const Str& extension) {
  Str progName;
  const Str ext = WithoutDot(extension);
  if (!GetProgramName(progName, "AppGetVariable(\"AppProgName\",progName)") || ext.IsEmpty()) return;
  CleanWinIniLine(ext, progName);
  for (const char* subKey : {"Software\\Microsoft\\Windows NT\\CurrentVersion\\Extensions",
                             "Software\\Microsoft\\Windows\\CurrentVersion\\Extensions"})
    for (const char* root : {"HKEY_LOCAL_MACHINE", "HKEY_CURRENT_USER"})
      CleanExtensionValue(root, subKey, ext, progName);
}
