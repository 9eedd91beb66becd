#include "support/leak_check.h"

#include <windows.h>

#include <cstdint>
#include <vector>

#include "base/handle.h"

namespace {

using QuerySystem = LONG(WINAPI*)(ULONG kind, void* data, ULONG size, ULONG* needed);
using QueryObject = LONG(WINAPI*)(HANDLE object, ULONG kind, void* data, ULONG size, ULONG* needed);

constexpr ULONG kSystemHandles = 16;
constexpr ULONG kObjectName = 1;
constexpr ULONG kObjectType = 2;
constexpr LONG kTooSmall = static_cast<LONG>(0xC0000004);

struct SystemHandle {
  ULONG process;
  uint8_t type;
  uint8_t flags;
  uint16_t value;
  void* object;
  ULONG access;
};

struct UnicodeText {
  USHORT bytes;
  USHORT room;
  const wchar_t* text;
};

template <class Function>
Function NtFunction(const char* name) {
  return reinterpret_cast<Function>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), name)));
}

// The type or the name of what a handle stands for.
std::string Ask(HANDLE handle, ULONG kind) {
  static const QueryObject query = NtFunction<QueryObject>("NtQueryObject");
  alignas(8) char data[1024] = {};
  if (query(handle, kind, data, sizeof data, nullptr) != 0) return "?";
  const auto* name = reinterpret_cast<const UnicodeText*>(data);
  std::string text;
  for (int i = 0; i < name->bytes / 2; ++i) text.push_back(static_cast<char>(name->text[i]));
  return text;
}

// Events, semaphores and the like are left out: the system's libraries make them when
// first used and keep them.
bool IsOfInterest(const std::string& type) {
  for (const char* kind : {"File", "Key", "Process", "Thread", "Token", "Section"})
    if (type == kind) return true;
  return false;
}

// Settings that the system reads when first needed and keeps open.
bool IsKeptBySystem(const std::string& key) {
  for (const char* part : {"\\Control Panel", "\\Software\\Wine", "\\Keyboard Layout"})
    if (key.find(part) != std::string::npos) return true;
  return false;
}

BOOL CALLBACK AddWindow(HWND window, LPARAM data) {
  char name[64] = "";
  GetClassNameA(window, name, sizeof name);
  const std::string text = name;
  // Made by the system for the thread and kept.
  if (text == "IME" || text == "MSCTFIME UI" || text.rfind("Ole", 0) == 0) return TRUE;
  auto* handles = reinterpret_cast<LeakCheck::Handles*>(data);
  (*handles)[reinterpret_cast<uintptr_t>(window)] = "top-level window " + text;
  return TRUE;
}

LeakCheck::Handles OpenHandles() {
  static const QuerySystem query = NtFunction<QuerySystem>("NtQuerySystemInformation");
  std::vector<char> data(1 << 16);
  LONG code = 0;
  while ((code = query(kSystemHandles, data.data(), static_cast<ULONG>(data.size()), nullptr)) == kTooSmall)
    data.resize(data.size() * 2);
  LeakCheck::Handles found;
  if (code != 0) return found;
  const ULONG total = *reinterpret_cast<const ULONG*>(data.data());
  const auto* handles = reinterpret_cast<const SystemHandle*>(data.data() + sizeof(ULONG));
  const DWORD self = GetCurrentProcessId();
  for (ULONG i = 0; i < total; ++i) {
    if (handles[i].process != self) continue;
    const uintptr_t value = handles[i].value;
    const std::string type = Ask(reinterpret_cast<HANDLE>(value), kObjectType);
    if (type == "Key" && IsKeptBySystem(Ask(reinterpret_cast<HANDLE>(value), kObjectName))) continue;
    if (IsOfInterest(type)) found[value] = type;
  }
  EnumThreadWindows(GetCurrentThreadId(), AddWindow, reinterpret_cast<LPARAM>(&found));
  return found;
}

bool gExcused = false;

}  // namespace

void AllowOpenHandles(const char* reason) {
  gExcused = true;
  testing::Test::RecordProperty("open_handles_allowed", reason);
}

void LeakCheck::OnTestStart(const testing::TestInfo&) {
  gExcused = false;
  mBefore = OpenHandles();
}

// What was closed and opened again does not count: only a type of which there are more than before.
void LeakCheck::OnTestEnd(const testing::TestInfo&) {
  if (gExcused) return;
  const Handles after = OpenHandles();
  std::map<std::string, int> more;
  for (const auto& [value, type] : after) ++more[type];
  for (const auto& [value, type] : mBefore) --more[type];
  for (const auto& [type, count] : more) {
    if (count <= 0) continue;
    std::string names;
    for (const auto& [value, kind] : after)
      if (kind == type && mBefore.count(value) == 0 && type.find("window") == std::string::npos)
        names += "\n  " + Ask(reinterpret_cast<HANDLE>(value), kObjectName);
    ADD_FAILURE() << "the test leaves " << count << " more open: " << type << names;
  }
}
