#include "messages/logfile.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "base/assert.h"
#include "base/errormode.h"
#include "base/handle.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/res.h"
#include "messages/varlist.h"
#include "platform/fs.h"
#include "platform/fspath.h"

namespace {

constexpr char kLogName[] = "QLSetup.log";
constexpr unsigned kNoLogQuestion = 368;

// The open log and its path. The path is kept in the OEM code page where the file
// could be opened by that form.
FileHandle gLog;
char gLogPath[FS::kMaxPathNameLen];

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char ch) { return static_cast<unsigned char>(ch) < 0x80; });
}

// Writes text as the C library's text mode does: each line feed becomes a carriage return and a line feed.
// One write per call, straight to the system, so that the log is complete when the process ends abruptly.
void Write(std::string_view text) {
  if (!gLog) return;
  std::string bytes;
  bytes.reserve(text.size() + 16);
  for (const char ch : text) {
    if (ch == '\n') bytes += '\r';
    bytes += ch;
  }
  // Behind whatever is there: another setup that runs at the same time writes to the same file.
  SetFilePointer(gLog.Get(), 0, nullptr, FILE_END);
  DWORD written = 0;
  WriteFile(gLog.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

// The folder in a form whose characters are the same in the ANSI and the OEM code page, where there is one.
Str PlainFolder(const char* dirName) {
  Str plain(dirName);
  if (IsAscii(plain.View())) return plain;
  char shortName[FS::kMaxPathNameLen];
  const DWORD length = GetShortPathNameA(dirName, shortName, sizeof(shortName));
  if (length > 0 && length < sizeof(shortName)) plain = shortName;
  return plain;
}

FileHandle CreateLog(const char* path) {
  return FileHandle(CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

void WriteHeader() {
  SYSTEMTIME now;
  GetSystemTime(&now);
  Message line("Logfile [Time: <Hour:02d>:<Minute:02d>] <Year:4d>-<Month:02d>-<Day:02d> (YYYY-MM-DD)",
               kTemplateLiteral);
  line.With("Hour", static_cast<int32_t>(now.wHour))
      .With("Minute", static_cast<int32_t>(now.wMinute))
      .With("Year", static_cast<int32_t>(now.wYear))
      .With("Month", static_cast<int32_t>(now.wMonth))
      .With("Day", static_cast<int32_t>(now.wDay));
  LogLine(line);
}

// Asks whether the run may go on without a log. At this point the installation's name is not known yet.
bool AskGoOnWithoutLog() {
  Str text(GetResStr(kNoLogQuestion));
  ReplaceItem(text, "SetupName", "Setup");
  return MessageBoxA(nullptr, text, "Veltrane", MB_YESNO | MB_ICONQUESTION | MB_TASKMODAL) == IDYES;
}

const char* SystemName() {
  if (Run().IsWin9x()) return "Windows 95";
  return (Run().platformFlags & kPlatformNT) != 0 ? "Windows NT" : "-can't tell-";
}

}  // namespace

bool OpenSetupLog(bool ask) {
  if (IsLogOpen()) return true;
  Str folder;
  if (AppVars().GetExpanded("TempDir", folder, VarList::kExpandApp) && !FS::IsDir(folder)) {
    folder = AppGetExpanded("WinDir");
  }
  if (OpenLog(folder, kLogName)) return true;
  if (!ask || Run().IsQuiet()) return true;
  return AskGoOnWithoutLog();
}

bool OpenLog(const char* dirName, const char* fileName) {
  const bool hasDir = VT_ASSERT(dirName != nullptr, "dirName");
  const bool hasName = VT_ASSERT(fileName != nullptr, "fileName");
  if (!hasDir || !hasName || IsLogOpen()) return false;

  const Str path = JoinPath(PlainFolder(dirName), fileName);
  if (path.Length() >= FS::kMaxPathNameLen) return false;
  {
    const CriticalErrorGuard noBoxes;
    CharToOemBuffA(path, gLogPath, static_cast<DWORD>(path.Length()) + 1);
    gLog = CreateLog(gLogPath);
    // An accented folder that has no short name: only its ANSI form names it.
    if (!gLog && !IsAscii(path.View())) {
      lstrcpynA(gLogPath, path, sizeof(gLogPath));
      gLog = CreateLog(gLogPath);
    }
  }
  if (!IsLogOpen()) return false;
  WriteHeader();
  return true;
}

bool IsLogOpen() { return static_cast<bool>(gLog); }

void LogLine(const char* text) {
  if (!IsLogOpen() || text == nullptr) return;
  Write(std::string(text) + '\n');
}

void LogError(const char* text) {
  if (!IsLogOpen() || text == nullptr) return;
  LogLine((std::string("##ERROR: ") + text).c_str());
}

void LogOutcome(bool done, const char* text) {
  if (done)
    LogLine(text);
  else
    LogError(text);
}

void LogBlock(const char* text) {
  if (!IsLogOpen() || text == nullptr) return;
  Write('\n' + std::string(text) + "\n\n");
}

void LogAssert(const char* text) {
  VT_FAIL(text != nullptr ? text : "");
  LogLine(text);
}

void LogInternalError(uint32_t code) {
  FormatSpec hex;
  hex.format = 'x';
  bool known = true;
  std::string number = NumberText(static_cast<int32_t>(code), hex, known);
  number.resize(std::max<size_t>(number.size(), 4), ' ');
  Write("\nQuorvale internal error: #0x" + number + "\n   ");
}

void LogSystemInfo(const SystemFacts& facts) {
  LogLine(Message("<SetupName> <Version> <BuildNum> Logfile"));
  LogLine(Message("Windows OS: <OpSys>, version: <VersionMaj>.<VersionMin:02x>", kTemplateLiteral)
              .With("OpSys", SystemName())
              .With("VersionMaj", int32_t{facts.versionMajor})
              .With("VersionMin", int32_t{facts.versionMinor}));
  LogLine(facts.mode == 3 ? "Windows Enhanced Mode" : "Windows Standard Mode");
  LogLine(Message("Pixels Per Inch: H(<HorizPPI>)xV(<VertPPI>), Total Pixels: H(<HorizRes>)xV(<VertRes>)",
                  kTemplateLiteral)
              .With("HorizPPI", facts.horizPPI)
              .With("VertPPI", facts.vertPPI)
              .With("HorizRes", facts.horizRes)
              .With("VertRes", facts.vertRes));
  if (facts.trueTypeAvailable) LogLine("TrueType Available");
  if (facts.trueTypeEnabled) LogLine("TrueType Enabled");
  if (facts.atmRunning) {
    LogLine(Message("ATM Version <VerMaj>.<VerMin:2d> Running", kTemplateLiteral)
                .With("VerMaj", int32_t{facts.atmMajor})
                .With("VerMin", int32_t{facts.atmMinor}));
  } else if (facts.atmInstalled) {
    LogLine("ATM appears to be installed, but not running");
  }
}

bool CloseAndRenameLog() {
  if (!IsLogOpen() || !gLog.Close()) return false;

  const Message name("<AppName><MajVersion>.log");
  if (name.Text().Find('<') >= 0) return true;
  const Str finalPath = JoinPath(FSPath(gLogPath).Parent(), name);
  if (finalPath.Length() >= FS::kMaxPathNameLen || finalPath.ICompare(gLogPath) == 0) return true;
  FS::Delete(finalPath);
  // A log that cannot be moved keeps its first name: it is closed, so nothing can be said about it there.
  static_cast<void>(FS::Rename(gLogPath, finalPath));
  return true;
}
