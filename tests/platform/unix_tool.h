#pragma once
// Runs commands of the machine below the Windows prefix, for what Windows programs cannot arrange there:
// folders that refuse new files, links. Not available on a real Windows.
#include <windows.h>

#include <string>

#include "support/leak_check.h"

// The machine's own path of a Windows path; empty where there is none.
inline std::string UnixPath(const std::string& path) {
  using GetUnixName = char*(CDECL*)(const WCHAR*);
  const auto get = reinterpret_cast<GetUnixName>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "wine_get_unix_file_name")));
  if (!get) return {};
  const std::wstring wide(path.begin(), path.end());  // the tests' folders are plain ASCII
  char* const name = get(wide.c_str());
  if (!name) return {};
  const std::string result = name;
  HeapFree(GetProcessHeap(), 0, name);
  return result;
}

// Starts a shell command and does not wait: the caller waits for its effect.
inline bool StartUnix(const std::string& command) {
  AllowOpenHandles("the system keeps two file handles for each program of the machine it starts");
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  std::string line = "\\\\?\\unix\\bin\\sh -c \"" + command + "\"";
  const BOOL started = CreateProcessA("\\\\?\\unix\\bin\\sh", line.data(), nullptr, nullptr, FALSE, 0,
                                      nullptr, nullptr, &startup, &process);
  // Wine gives no handles for a program of the machine: what stands in `process` is left from somewhere else
  // on the stack, and closing it would close an innocent handle.
  return started != FALSE;
}
