// old_setup: plays the setup program of an earlier version, told by the environment what to do:
//   OLD_SETUP_LOG      file that gets its command line at the start and "done" at the end, one line each
//   OLD_SETUP_WINDOW   shows a window of class VTInstallWin for so many milliseconds
//   OLD_SETUP_KEY      key below HKEY_CURRENT_USER that it deletes with its values
//   OLD_SETUP_FILES    files that it deletes, separated by "|"
//   OLD_SETUP_NEW      file that it writes afterwards, with the text "new"
//   OLD_SETUP_BATCH    batch file that it writes and starts to delete its own program file
//   OLD_SETUP_EXIT     its exit code
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::string Setting(const char* name) {
  char value[4096] = "";
  GetEnvironmentVariableA(name, value, sizeof value);
  return value;
}

void Log(const std::string& line) {
  const std::string path = Setting("OLD_SETUP_LOG");
  if (path.empty()) return;
  if (FILE* file = fopen(path.c_str(), "ab")) {
    fprintf(file, "%s\n", line.c_str());
    fclose(file);
  }
}

void ShowWindowFor(UINT milliseconds) {
  WNDCLASSA description = {};
  description.lpfnWndProc = DefWindowProcA;
  description.hInstance = GetModuleHandleA(nullptr);
  description.lpszClassName = "VTInstallWin";
  RegisterClassA(&description);
  const HWND window = CreateWindowA("VTInstallWin", "old setup", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200,
                                    100, nullptr, nullptr, description.hInstance, nullptr);
  SetTimer(window, 1, milliseconds, nullptr);
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0 && message.message != WM_TIMER) DispatchMessageA(&message);
  DestroyWindow(window);
}

void DeleteFiles(std::string list) {
  while (!list.empty()) {
    const size_t end = list.find('|');
    const std::string path = list.substr(0, end);
    SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileA(path.c_str());
    list.erase(0, end == std::string::npos ? end : end + 1);
  }
}

void WriteNew(const std::string& path) {
  if (path.empty()) return;
  if (FILE* file = fopen(path.c_str(), "wb")) {
    fputs("new", file);
    fclose(file);
  }
}

void StartBatch(const std::string& path) {
  char self[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, self, MAX_PATH);
  if (FILE* file = fopen(path.c_str(), "wb")) {
    fprintf(file, "@echo off\r\n:Repeat\r\ndel \"%s\"\r\nif exist \"%s\" goto Repeat\r\ndel \"%s\"\r\n", self,
            self, path.c_str());
    fclose(file);
  }
  std::string line = "\"" + path + "\"";
  STARTUPINFOA start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = SW_HIDE;
  PROCESS_INFORMATION info = {};
  if (CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &info)) {
    CloseHandle(info.hThread);
    CloseHandle(info.hProcess);
  }
}

}  // namespace

int main() {
  Log(GetCommandLineA());
  if (const int milliseconds = atoi(Setting("OLD_SETUP_WINDOW").c_str())) ShowWindowFor(milliseconds);
  const std::string key = Setting("OLD_SETUP_KEY");
  if (!key.empty()) RegDeleteKeyA(HKEY_CURRENT_USER, key.c_str());
  DeleteFiles(Setting("OLD_SETUP_FILES"));
  WriteNew(Setting("OLD_SETUP_NEW"));
  const std::string batch = Setting("OLD_SETUP_BATCH");
  if (!batch.empty()) StartBatch(batch);
  Log("done");
  return atoi(Setting("OLD_SETUP_EXIT").c_str());
}
