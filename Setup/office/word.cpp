#include "office/word.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <vector>

#include "base/assert.h"
#include "base/leadbyte.h"
#include "messages/filelog.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/res.h"
#include "messages/restext.h"
#include "messages/varlist.h"
#include "platform/fs.h"
#include "platform/fsdirit.h"
#include "platform/pathparts.h"
#include "stores/register.h"
#include "ui/err.h"
#include "ui/progmetr.h"

namespace {

#define OFFICE_KEY(version, name) "REG*HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Office\\" version ".0\\" name

constexpr WordVersion kWordVersions[kNumWordVersions] = {
    {270, 9, OFFICE_KEY("9", "Word"), OFFICE_KEY("9", "Common"), 1048, 1128, 1208},
    {271, 10, OFFICE_KEY("10", "Word"), OFFICE_KEY("10", "Common"), 1072, 1152, 1232},
    {272, 11, OFFICE_KEY("11", "Word"), OFFICE_KEY("11", "Common"), 1080, 1160, 1240},
    {273, 12, OFFICE_KEY("12", "Word"), OFFICE_KEY("12", "Common"), 1088, 1168, 1248},
};

// Keys of versions newer than the known ones: <ver> is filled in.
constexpr WordVersion kWordTemplate = {272, 0, OFFICE_KEY("<ver>", "Word"), OFFICE_KEY("<ver>", "Common"), 0,
                                       0,   0};

#undef OFFICE_KEY

constexpr unsigned kInstallingMacro = 795;
constexpr unsigned kRemovingMacro = 796;
constexpr int32_t kMaxName = 255;  // characters of a recorded file name
constexpr int32_t kMaxFirstDir = 259;
constexpr int32_t kMaxSecondDir = 255;

constexpr char kInstallRoot[] = "InstallRoot";
constexpr char kPathValue[] = "PATH";
constexpr int32_t kFirstWithCommonKey = 9;  // earlier versions keep no path in the shared key
constexpr int32_t kMaxVersionsAsked = 1000;

// Resource strings of the reasons and the advice follow this order.
enum Reason : int32_t { kNotWritable = 0, kFolderMissing = 1, kFolderLocked = 2, kFileLocked = 3 };

constexpr const char* kLoggedReasons[] = {
    "the folder can't be written to (the folder exists, but is NOT read-only)",
    "the folder doesn't exist",
    "the folder is locked",
    "the target file is read-only",
};

struct WordState {
  bool found = false;      // the startup folder was there when the files were recorded
  bool installed = false;  // the macro was copied into this version's folder
  WordMacroFiles files;
};

WordState gStates[kNumWordVersions];
bool gReportMacroErrors = true;  // only ever goes from set to clear

bool ReadInstallRoot(const char* officeKey, Str& path) {
  Str key(officeKey);
  key.Append('\\');
  key.Append(kInstallRoot);
  return RegGetValueStr(key, kPathValue, path) && !path.IsEmpty();
}

void StripQuotes(Str& path) {
  const int32_t length = path.Length();
  if (length < 2 || path.Chars()[0] != '"' || path.Chars()[length - 1] != '"') return;
  path.Delete(length - 1, 1);
  path.Delete(0, 1);
}

// Cuts a text to the room its field has towards the outside.
Str Fitting(const Str& text, int32_t room) {
  if (VT_ASSERT(text.Length() <= room, "Str::Length(text) <= room")) return text;
  Str cut;
  cut.Left(text, room);
  return cut;
}

Reason FindReason(const char* folder, const char* destPath) {
  bool locked = false;
  if (!FS::IsDir(folder)) return kFolderMissing;
  if (FS::GetFileAttribute(folder, FS::kAttrLock, locked) && locked) return kFolderLocked;
  if (FS::GetFileAttribute(destPath, FS::kAttrLock, locked) && locked) return kFileLocked;
  return kNotWritable;
}

// An administrator can ask not to hear of write-protected targets; the first one then
// silences all later reports.
bool ShouldShow(Reason reason) {
  if (!gReportMacroErrors) return false;
  const bool protectedTarget = reason == kFolderLocked || reason == kFileLocked;
  if (protectedTarget && AppGetBool("NoROMacroErrs")) {
    gReportMacroErrors = false;
    return false;
  }
  return true;
}

void ReportFailure(const WordVersion& word, const char* folder, const char* fileName, const char* destPath) {
  const Reason reason = FindReason(folder, destPath);
  if (ShouldShow(reason)) {
    Str reasonText;
    Str actionText;
    GetResStr(word.reasonId, reason, reasonText, kResExpand);
    GetResStr(word.actionId, reason, actionText, kResExpand);
    Message message(JoinResStrings(word.messageId).Chars());
    message.With("Reason", reasonText).With("Action", actionText).With("MacroFile", fileName);
    if (!message.Text().IsEmpty()) {
      ShowError(message);
      return;
    }
  }
  LogLine(Message("    Couldn't install <MacroFile> to the target folder, <StartupFolder>, because <Reason>.",
                  kTemplateLiteral)
              .With("MacroFile", fileName)
              .With("StartupFolder", folder)
              .With("Reason", kLoggedReasons[reason]));
}

bool InstallOne(const WordVersion& word, const char* sourceDir, const char* name, const char* folder) {
  const Str dest = JoinPath(folder, name);
  if (LoggedCopy(JoinPath(sourceDir, name), dest)) return true;
  ReportFailure(word, folder, name, dest);
  return false;
}

// The installed row that uses the same startup folder, or -1.
int32_t RowUsingFolder(const Str& folder) {
  for (int32_t row = 0; row < kNumWordVersions; ++row) {
    Str other;
    if (gStates[row].installed && FindWordStartup(kWordVersions[row], other) && other.ICompare(folder) == 0)
      return row;
  }
  return -1;
}

Str ProductName(int32_t row) {
  Str name;
  GetResStr(kWordVersions[row].nameId, 0, name, kResExpand);
  return name;
}

void InstallRow(int32_t row, const Str& folder) {
  WordState& state = gStates[row];
  SetProgressText(Message(kInstallingMacro).With("ProdName", ProductName(row)));
  const int32_t user = RowUsingFolder(folder);
  if (user >= 0) {
    LogLine(
        Message("    The startup folder for <Product> is also used by <ProdUsingFolder>. <MacroFile> was not "
                "installed.",
                kTemplateLiteral)
            .With("Product", ProductName(row))
            .With("ProdUsingFolder", ProductName(user))
            .With("MacroFile", state.files.firstName));
    return;
  }
  const WordVersion& word = kWordVersions[row];
  if (!state.files.firstName.IsEmpty()) {
    if (!InstallOne(word, state.files.firstDir, state.files.firstName, folder)) return;
    state.installed = true;
  }
  if (!state.files.secondName.IsEmpty())
    InstallOne(word, state.files.secondDir, state.files.secondName, folder);
}

void DeleteMatching(const Str& folder, const char* firstName, const char* secondName) {
  std::unique_ptr<FS::DirIterator> dirIter(new (std::nothrow)
                                               FS::DirIterator(folder, FS::DirIterator::modeFiles, false));
  if (!VT_ASSERT(dirIter, "dirIter")) return;
  std::vector<Str> matches;  // deleted after the walk, so that the walk sees the folder unchanged
  Str path;
  bool isDir = false;
  while (dirIter->Next(path, isDir)) {
    const Str name = FSPath(path).FileName();
    if (name.ICompare(firstName) == 0 || name.ICompare(secondName) == 0) matches.push_back(path);
  }
  for (const Str& match : matches) {
    const bool deleted = FS::Delete(match);
    LogLine(Message("<SetupName> found \"<MacroFile>\" and tried to delete it: <Result>")
                .With("MacroFile", FSPath(match).FileName())
                .With("Result", deleted ? "SUCCESS" : "FAILED"));
  }
}

}  // namespace

const WordVersion& WordRow(int32_t row) {
  if (!VT_ASSERT(row >= 0 && row < kNumWordVersions, "row >= 0 && row < kNumWordVersions"))
    row = kNumWordVersions - 1;
  return kWordVersions[row];
}

int32_t FindWordRow(int32_t version) {
  for (int32_t row = 0; row < kNumWordVersions; ++row)
    if (kWordVersions[row].version == version) return row;
  return -1;
}

bool FindWordStartup(const WordVersion& word, Str& path) {
  path = "";
  if (!RegKeyOrValueExists(word.wordKey, nullptr)) return false;
  if (!ReadInstallRoot(word.wordKey, path)) {
    if (word.version < kFirstWithCommonKey || !ReadInstallRoot(word.commonKey, path)) return false;
  }
  StripQuotes(path);
  if (!PathText::EndsInBackslash(path.View(), IsAnsiLeadByte)) path.Append('\\');
  if (word.version >= kFirstWithCommonKey) path.Append("Startup");
  return true;
}

void SetWordMacro(int32_t row, const WordMacroFiles& files) {
  const WordVersion& word = WordRow(row);
  WordState& state = gStates[row];
  Str path;
  state.found = FindWordStartup(word, path);
  LogLine(Message("MS Word <WordVer> <Found>, Office Loc is <Path>", kTemplateLiteral)
              .With("WordVer", word.version)
              .With("Found", state.found ? "found" : "not found")
              .With("Path", path));
  state.files.firstName = Fitting(files.firstName, kMaxName);
  state.files.firstDir = Fitting(files.firstDir, kMaxFirstDir);
  state.files.secondName = Fitting(files.secondName, kMaxName);
  state.files.secondDir = Fitting(files.secondDir, kMaxSecondDir);
}

void InstallWordMacros() {
  for (int32_t row = kNumWordVersions - 1; row >= 0; --row) {
    Str folder;
    if (gStates[row].found && FindWordStartup(kWordVersions[row], folder)) InstallRow(row, folder);
  }
}

void RemoveWordMacros() {
  for (int32_t row = 0; row < kNumWordVersions; ++row) {
    Str folder;
    if (!FindWordStartup(kWordVersions[row], folder)) continue;
    SetProgressText(Message(kRemovingMacro).With("ProdName", ProductName(row)));
    for (const Str* name : {&gStates[row].files.firstName, &gStates[row].files.secondName})
      if (!name->IsEmpty()) LoggedDelete(JoinPath(folder, *name));
  }
}

void DeleteMigratedMacros(const char* firstName, const char* secondName) {
  for (const WordVersion& word : kWordVersions) {
    Str folder;
    if (FindWordStartup(word, folder)) {
      DeleteMatching(folder, firstName, secondName);
    } else {
      LogLine(
          Message("<SetupName> couldn't determine the name of the MS Office/Word 'Startup' folder. Unable to "
                  "continue task 'fixup_word_migration'."));
    }
  }
}

bool IsWordInstalled(int32_t first, int32_t count) {
  constexpr int32_t kLargest = std::numeric_limits<int32_t>::max();
  for (int32_t i = 0; i < std::min(count, kMaxVersionsAsked) && first <= kLargest - i; ++i) {
    const int32_t version = first + i;
    Message wordKey(kWordTemplate.wordKey, kTemplateLiteral);
    Message commonKey(kWordTemplate.commonKey, kTemplateLiteral);
    wordKey.With("ver", version);
    commonKey.With("ver", version);
    WordVersion word = kWordTemplate;
    word.version = version;
    word.wordKey = wordKey;
    word.commonKey = commonKey;
    Str path;
    if (FindWordStartup(word, path)) return true;
  }
  return false;
}

void ResetWordMacros() {
  for (WordState& state : gStates) state = WordState{};
  gReportMacroErrors = true;
}
