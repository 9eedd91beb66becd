#include "support/leak_check.h"

#include <windows.h>

#include <cstdint>
#include <vector>

#include "base/handle.h"

namespace {

using QuerySystem = LONG(WINAPI*)(ULONG kind, void* data, ULONG size, ULONG* needed);
using QueryObject = LONG(WINAPI*)(HANDLE object, ULONG kind, void* data, ULONG size, ULONG* needed);

constexpr ULONG kSystemHandles = 16;
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

std::string TypeOf(HANDLE handle) {
  static const QueryObject query = NtFunction<QueryObject>("NtQueryObject");
  alignas(8) char data[1024] = {};
  if (query(handle, kObjectType, data, sizeof data, nullptr) != 0) return "?";
  const auto* name = reinterpret_cast<const UnicodeText*>(data);
  std::string type;
  for (int i = 0; i < name->bytes / 2; ++i) type.push_back(static_cast<char>(name->text[i]));
  return type;
}

// Events, semaphores and the like are left out: the system's libraries make them when first used and keep
// them.
bool IsOfInterest(const std::string& type) {
  for (const char* kind : {"File", "Key", "Process", "Thread", "Token", "Section"})
    if (type == kind) return true;
  return false;
}

BOOL CALLBACK CountWindow(HWND window, LPARAM count) {
  char name[64] = "";
  GetClassNameA(window, name, sizeof name);
  // Made by the system for the thread and kept.
  const std::string text = name;
  if (text != "IME" && text != "MSCTFIME UI" && text.rfind("Ole", 0) != 0) ++*reinterpret_cast<int*>(count);
  return TRUE;
}

std::map<std::string, int> OpenHandles() {
  static const QuerySystem query = NtFunction<QuerySystem>("NtQuerySystemInformation");
  std::vector<char> data(1 << 16);
  LONG code = 0;
  while ((code = query(kSystemHandles, data.data(), static_cast<ULONG>(data.size()), nullptr)) == kTooSmall)
    data.resize(data.size() * 2);
  std::map<std::string, int> counts;
  if (code != 0) return counts;
  const ULONG total = *reinterpret_cast<const ULONG*>(data.data());
  const auto* handles = reinterpret_cast<const SystemHandle*>(data.data() + sizeof(ULONG));
  const DWORD self = GetCurrentProcessId();
  for (ULONG i = 0; i < total; ++i) {
    if (handles[i].process != self) continue;
    const std::string type = TypeOf(reinterpret_cast<HANDLE>(static_cast<uintptr_t>(handles[i].value)));
    if (IsOfInterest(type)) ++counts[type];
  }
  int windows = 0;
  EnumThreadWindows(GetCurrentThreadId(), CountWindow, reinterpret_cast<LPARAM>(&windows));
  counts["top-level window"] = windows;
  return counts;
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

void LeakCheck::OnTestEnd(const testing::TestInfo&) {
  if (gExcused) return;
  for (const auto& [type, count] : OpenHandles())
    if (count > mBefore[type])
      ADD_FAILURE() << "the test leaves " << count - mBefore[type] << " more open: " << type;
}
