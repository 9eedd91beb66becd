// Stand-in for the HTML Help control: records each call as a line "file|command|data" in the file that the
// environment variable HELP_CALLS names.
#include <windows.h>

extern "C" HWND WINAPI HtmlHelpA(HWND, LPCSTR file, UINT command, DWORD_PTR data) {
  char path[MAX_PATH] = "";
  if (GetEnvironmentVariableA("HELP_CALLS", path, sizeof path) == 0) return nullptr;
  const HANDLE out = CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr);
  if (out == INVALID_HANDLE_VALUE) return nullptr;
  char line[MAX_PATH + 40] = "";
  const int length = wsprintfA(line, "%s|%u|%u\n", file ? file : "-", command, static_cast<UINT>(data));
  SetFilePointer(out, 0, nullptr, FILE_END);
  DWORD written = 0;
  WriteFile(out, line, static_cast<DWORD>(length), &written, nullptr);
  CloseHandle(out);
  return nullptr;
}
