#include "support/setup_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <set>

#include "support/files.h"

namespace {

constexpr char kAbsent[] = "\x01";

std::string InTextForm(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

// This process's environment with another temporary folder.
std::string EnvironmentWithTemp(const std::string& folder) {
  std::string block;
  const std::unique_ptr<char, decltype(&FreeEnvironmentStringsA)> strings(GetEnvironmentStringsA(),
                                                                          FreeEnvironmentStringsA);
  for (const char* entry = strings.get(); *entry != '\0'; entry += strlen(entry) + 1) {
    if (_strnicmp(entry, "TMP=", 4) == 0 || _strnicmp(entry, "TEMP=", 5) == 0) continue;
    block += entry;
    block += '\0';
  }
  for (const char* name : {"TEMP=", "TMP="}) {
    block += name + folder;
    block += '\0';
  }
  return block;
}

struct WindowWatch {
  DWORD process;
  std::vector<std::string>* captions;
};

BOOL CALLBACK NoteWindow(HWND window, LPARAM param) {
  const auto& watch = *reinterpret_cast<WindowWatch*>(param);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != watch.process || !IsWindowVisible(window)) return TRUE;
  char caption[256] = "";
  GetWindowTextA(window, caption, sizeof caption);
  if (std::find(watch.captions->begin(), watch.captions->end(), caption) == watch.captions->end())
    watch.captions->push_back(caption);
  return TRUE;
}

bool WaitAndWatch(ChildProcess& child, DWORD timeoutMs, std::vector<std::string>& captions) {
  const DWORD start = GetTickCount();
  WindowWatch watch = {child.Id(), &captions};
  while (GetTickCount() - start < timeoutMs) {
    EnumWindows(NoteWindow, reinterpret_cast<LPARAM>(&watch));
    if (child.WaitForExit(10)) return true;
  }
  return false;
}

uint8_t SwapHalves(uint8_t byte) { return static_cast<uint8_t>((byte << 4) | (byte >> 4)); }

constexpr char kConfigHeader[] = "Quorvale Configuration File 1.0";

}  // namespace

std::string ProfileString(const char* section, const char* name) {
  char value[512] = "";
  GetProfileStringA(section, name, "", value, sizeof value);
  return value;
}

ProfileGuard::ProfileGuard(const char* section, const char* name) : mSection(section), mName(name) {
  char value[512] = "";
  GetProfileStringA(section, name, kAbsent, value, sizeof value);
  mValue = value;
}

ProfileGuard::~ProfileGuard() {
  WriteProfileStringA(mSection.c_str(), mName.c_str(), mValue == kAbsent ? nullptr : mValue.c_str());
}

bool RunOutcome::LoggedInOrder(std::string_view first, std::string_view second) const {
  const size_t pos = log.find(first);
  return pos != std::string::npos && log.find(second, pos + first.size()) != std::string::npos;
}

SetupRun::SetupRun(const std::string& distribution, const std::string& destination)
    : mMachineGuard(HKEY_LOCAL_MACHINE, "Software\\Quorvale"),
      mUserGuard(HKEY_CURRENT_USER, "Software\\Quorvale"),
      mCollisionsGuard("TrueType", "TTifCollisions"),
      mSubstituteGuard("FontSubstitutes", "VT Symbol") {
  mSource = mRoot.MakeFolder(distribution);
  mDest = mRoot.Join(destination);
  mRoot.MakeFolder("tmp");
  if (!CopyFileA(SetupProgram().c_str(), Source("Setup.exe").c_str(), FALSE))
    ADD_FAILURE() << "no program under test: " << SetupProgram();
}

std::string SetupRun::Startup(const std::string& extra) {
  return "[startup]\r\n"
         "AppName=Veltrane\r\n"
         "MajVersion=6\r\n"
         "MinVersion=0\r\n"
         "ShortAppKey=VT\r\n"
         "CompanyKey=KV\r\n"
         "AppProgName=Veltrane\r\n"
         "MachRegKey=REG*HKEY_LOCAL_MACHINE\\Software\\Quorvale\\KVRX6\r\n"
         "UserRegKey=REG*HKEY_CURRENT_USER\\Software\\Quorvale\\KVRX6\r\n"
         "ClassId={5D1E2C40-7A35-4B0E-9C11-3F6A8E0B7D26}\r\n" +
         extra + "\r\n";
}

void SetupRun::WriteScript(const std::string& text) const { WriteWholeFile(Source("setup.inf"), text); }

void SetupRun::AddFile(const std::string& name, std::string_view bytes, const std::string& prefix, int disk) {
  mRoot.Write(mSource.substr(mRoot.Path().size() + 1) + "\\" + name, bytes);
  FileLine line;
  line.key = "file" + std::to_string(mFiles.size() + 1);
  line.source = line.dest = name;
  line.prefix = prefix;
  line.size = bytes.size();
  line.disk = disk;
  mFiles.push_back(line);
}

std::string SetupRun::FileKeys() const {
  std::string text;
  for (const FileLine& line : mFiles) text += line.key + "\r\n";
  return text;
}

std::string SetupRun::FilesSection() const {
  std::string text = "[files]\r\n";
  for (const FileLine& line : mFiles)
    text += line.key + "=" + std::to_string(line.disk) + "," + line.source + "," + line.prefix +
            "<ProgDir>\\" + line.dest + "," + std::to_string(line.size) + "\r\n";
  return text + "\r\n";
}

std::string SetupRun::SimpleScript(const std::string& install, const std::string& remove,
                                   const std::string& startup) const {
  return Startup(startup) + "[easy_install]\r\n" + FileKeys() + install + "\r\n[remove]\r\n" + FileKeys() +
         remove + "\r\n" + FilesSection();
}

std::string SetupRun::Source(const std::string& name) const {
  return name.empty() ? mSource : mSource + "\\" + name;
}
std::string SetupRun::Dest(const std::string& name) const {
  return name.empty() ? mDest : mDest + "\\" + name;
}
std::string SetupRun::Temp(const std::string& name) const {
  return name.empty() ? mRoot.Join("tmp") : mRoot.Join("tmp\\" + name);
}

void SetupRun::CopySetupToDest() const {
  for (const char* name : {"Setup.exe", "setup.inf"})
    if (!CopyFileA(Source(name).c_str(), Dest(name).c_str(), FALSE)) ADD_FAILURE() << "cannot copy " << name;
}

std::unique_ptr<ChildProcess> SetupRun::Start(const std::string& args) const {
  return StartFrom(mSource, args);
}

std::unique_ptr<ChildProcess> SetupRun::StartFrom(const std::string& folder, const std::string& args) const {
  DeleteFileA(Temp("Veltrane6.log").c_str());
  DeleteFileA(Temp("QLSetup.log").c_str());
  ProcessOptions options;
  options.folder = mRoot.Path();
  options.environment = EnvironmentWithTemp(Temp());
  const std::string commandLine = Quoted(folder + "\\Setup.exe") + " " + args;
  return std::make_unique<ChildProcess>(mLauncher.empty() ? commandLine : mLauncher + Quoted(commandLine),
                                        options);
}

RunOutcome SetupRun::Run(const std::string& args, DWORD timeoutMs) const {
  return RunFrom(mSource, args, timeoutMs);
}

RunOutcome SetupRun::RunFrom(const std::string& folder, const std::string& args, DWORD timeoutMs) const {
  const std::unique_ptr<ChildProcess> child = StartFrom(folder, args);
  return Outcome(*child, timeoutMs);
}

RunOutcome SetupRun::Outcome(ChildProcess& child, DWORD timeoutMs) const {
  RunOutcome outcome;
  outcome.started = child.Started();
  if (!outcome.started) {
    ADD_FAILURE() << "Setup.exe does not start, error " << child.StartError();
    return outcome;
  }
  outcome.timedOut = !WaitAndWatch(child, timeoutMs, outcome.windows);
  if (outcome.timedOut) ADD_FAILURE() << "Setup.exe did not end";
  child.Kill();
  outcome.exitCode = child.ExitCode();
  for (const char* name : {"Veltrane6.log", "QLSetup.log"}) {
    if (!PathExists(Temp(name)) || IsFolder(Temp(name))) continue;
    outcome.logName = name;
    outcome.log = InTextForm(ReadWholeFile(Temp(name)));
    break;
  }
  return outcome;
}

RunOutcome SetupRun::SilentRemoval() const { return RunFrom(mDest, "-Q -RS"); }

std::string DecodedConfig::Value(const std::string& name) const {
  for (const auto& [key, value] : entries)
    if (key == name || key == "%" + name) return value;
  return "";
}

DecodedConfig DecodeConfig(const std::string& bytes) {
  DecodedConfig result;
  std::string plain;
  for (const char ch : bytes) plain += static_cast<char>(SwapHalves(static_cast<uint8_t>(ch)) - 63);
  const std::string header(kConfigHeader, sizeof kConfigHeader);  // with its NUL
  if (plain.compare(0, header.size(), header) != 0) return result;
  size_t pos = header.size();
  const auto text = [&plain, &pos]() {
    const size_t end = plain.find('\0', pos);
    if (end == std::string::npos) {
      pos = plain.size();
      return std::string();
    }
    std::string piece = plain.substr(pos, end - pos);
    pos = end + 1;
    return piece;
  };
  while (pos < plain.size() && plain[pos] != '\0') {
    const std::string name = text();
    result.entries.emplace_back(name, text());
  }
  ++pos;  // the end marker
  uint32_t sum = 0;
  for (size_t i = 0; i < pos && i < plain.size(); ++i) sum += static_cast<uint8_t>(plain[i]);
  result.sound = pos < plain.size() && text() == std::to_string(sum) && pos == plain.size();
  if (!result.sound) result.entries.clear();
  return result;
}

std::string EncodeConfig(const std::vector<std::pair<std::string, std::string>>& entries) {
  std::string plain(kConfigHeader, sizeof kConfigHeader);
  for (const auto& [name, value] : entries) plain += name + '\0' + value + '\0';
  plain += '\0';
  uint32_t sum = 0;
  for (const char ch : plain) sum += static_cast<uint8_t>(ch);
  plain += std::to_string(sum) + '\0';
  for (char& ch : plain) ch = static_cast<char>(SwapHalves(static_cast<uint8_t>(ch + 63)));
  return plain;
}

std::string SetupProgram() { return TestFolder() + "\\Setup.exe"; }
