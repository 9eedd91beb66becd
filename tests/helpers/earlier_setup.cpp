// earlier_setup [ARG...]     plays the setup program of an earlier version in its silent removal. What it
// does stands in
// "<own path>.todo", one step on each line, in order:
//   window              shows a window of class "VTInstallWin", as the earlier versions' setup did
//   wait FILE           goes on when FILE exists (20 seconds at most)
//   unwindow            closes the window
//   delete FILE
//   forget KEY          deletes a key with all below it; KEY is below HKEY_CURRENT_USER
//   self                deletes its own program file after its end
//   exit CODE
// It writes its arguments to "<own path>.ran" first.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

std::string OwnPath() {
  char path[MAX_PATH + 1] = "";
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  return path;
}

void WriteText(const std::string& path, const std::string& text) {
  FILE* file = fopen(path.c_str(), "wb");
  if (file == nullptr) exit(98);
  fwrite(text.data(), 1, text.size(), file);
  fclose(file);
}

std::vector<std::string> ReadLines(const std::string& path) {
  std::vector<std::string> lines;
  FILE* file = fopen(path.c_str(), "rb");
  if (file == nullptr) exit(97);
  char line[1024];
  while (fgets(line, sizeof line, file) != nullptr) {
    std::string text = line;
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    if (!text.empty()) lines.push_back(text);
  }
  fclose(file);
  return lines;
}

void Pump() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
}

HWND OpenWindow() {
  WNDCLASSA description = {};
  description.lpfnWndProc = DefWindowProcA;
  description.hInstance = GetModuleHandleA(nullptr);
  description.lpszClassName = "VTInstallWin";
  RegisterClassA(&description);
  return CreateWindowA("VTInstallWin", "Old Setup", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20, 300, 200,
                       nullptr, nullptr, description.hInstance, nullptr);
}

void WaitFor(const std::string& path) {
  const DWORD start = GetTickCount();
  while (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES && GetTickCount() - start < 20000) {
    Pump();
    Sleep(10);
  }
}

void Forget(HKEY parent, const std::string& path) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(parent, path.c_str(), 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS) return;
  char name[256];
  while (RegEnumKeyA(key, 0, name, sizeof name) == ERROR_SUCCESS) Forget(key, name);
  RegCloseKey(key);
  RegDeleteKeyA(parent, path.c_str());
}

// A batch that tries until the program has ended, and deletes itself too.
void DeleteSelfAtTheEnd() {
  const std::string batch = OwnPath() + ".bat";
  WriteText(batch, "@echo off\r\n:again\r\ndel \"" + OwnPath() + "\"\r\nif exist \"" + OwnPath() +
                       "\" goto again\r\ndel \"" + batch + "\"\r\n");
  std::string line = "cmd.exe /c \"" + batch + "\"";
  STARTUPINFOA start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = SW_HIDE;
  PROCESS_INFORMATION info = {};
  char windows[MAX_PATH + 1] = "";
  GetWindowsDirectoryA(windows, MAX_PATH);  // a current folder that nobody wants to delete
  if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, windows,
                      &start, &info))
    exit(96);
  CloseHandle(info.hThread);
  CloseHandle(info.hProcess);
}

}  // namespace

int main(int argc, char** argv) {
  std::string args;
  for (int i = 1; i < argc; ++i) args += std::string(i > 1 ? " " : "") + argv[i];
  WriteText(OwnPath() + ".ran", args);
  HWND window = nullptr;
  int code = 0;
  for (const std::string& line : ReadLines(OwnPath() + ".todo")) {
    const size_t blank = line.find(' ');
    const std::string step = line.substr(0, blank);
    const std::string what = blank == std::string::npos ? "" : line.substr(blank + 1);
    if (step == "window") {
      window = OpenWindow();
    } else if (step == "unwindow") {
      DestroyWindow(window);
    } else if (step == "wait") {
      WaitFor(what);
    } else if (step == "delete") {
      DeleteFileA(what.c_str());
    } else if (step == "forget") {
      Forget(HKEY_CURRENT_USER, what);
    } else if (step == "self") {
      DeleteSelfAtTheEnd();
    } else if (step == "exit") {
      code = atoi(what.c_str());
    } else {
      return 99;
    }
    Pump();
  }
  return code;
}
