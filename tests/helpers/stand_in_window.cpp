// stand_in_window CLASS CAPTION [OPTION...]     a program with a top-level window that plays another program
//   -message NAME ANSWER   answers the registered message NAME with a number (may be given several times)
//   -hang NAME             never answers the registered message NAME
//   -quit NAME             ends when the registered message NAME comes (answers 0 unless -message says
//   otherwise) -hidden                the window is not shown -log FILE              appends a line for each
//   registered message named, WM_CLOSE, WM_WININICHANGE (with its text),
//                          WM_FONTCHANGE, WM_QUERYENDSESSION and WM_ENDSESSION
//   -refuse-end            answers WM_QUERYENDSESSION with no
//   -for MS                ends after that time (60000)
// Prints "ready" once the window is there.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

namespace {

struct Answer {
  std::string name;
  LRESULT answer = 0;
  bool hang = false;
  bool quit = false;
};

std::map<UINT, Answer> gAnswers;
std::string gLog;
bool gRefuseEnd = false;

void Log(const std::string& line) {
  if (gLog.empty()) return;
  if (FILE* file = fopen(gLog.c_str(), "ab")) {
    fprintf(file, "%s\r\n", line.c_str());
    fclose(file);
  }
}

LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  const auto found = gAnswers.find(message);
  if (found != gAnswers.end()) {
    Log(found->second.name + " " + std::to_string(wparam) + " " + std::to_string(lparam));
    if (found->second.hang) Sleep(INFINITE);
    if (found->second.quit) PostMessageA(window, WM_TIMER, 1, 0);
    return found->second.answer;
  }
  switch (message) {
    case WM_WININICHANGE:
      Log("WM_WININICHANGE " + std::string(lparam ? reinterpret_cast<const char*>(lparam) : ""));
      return 0;
    case WM_FONTCHANGE:
      Log("WM_FONTCHANGE");
      return 0;
    case WM_QUERYENDSESSION:
      Log("WM_QUERYENDSESSION");
      return gRefuseEnd ? FALSE : TRUE;
    case WM_ENDSESSION:
      Log(wparam ? "WM_ENDSESSION yes" : "WM_ENDSESSION no");
      return 0;
    case WM_CLOSE:
      Log("WM_CLOSE");
      break;
    case WM_TIMER:
      DestroyWindow(window);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      break;
  }
  return DefWindowProcA(window, message, wparam, lparam);
}

Answer& AnswerTo(const char* name) {
  Answer& answer = gAnswers[RegisterWindowMessageA(name)];
  answer.name = name;
  return answer;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  bool hidden = false;
  DWORD milliseconds = 60000;
  for (int i = 3; i < argc; ++i) {
    const std::string option = argv[i];
    const char* next = i + 1 < argc ? argv[i + 1] : "";
    if (option == "-hidden") {
      hidden = true;
    } else if (option == "-refuse-end") {
      gRefuseEnd = true;
    } else if (option == "-message" && i + 2 < argc) {
      AnswerTo(next).answer = strtol(argv[i + 2], nullptr, 0);
      i += 2;
    } else {
      if (option == "-hang") AnswerTo(next).hang = true;
      if (option == "-quit") AnswerTo(next).quit = true;
      if (option == "-log") gLog = next;
      if (option == "-for") milliseconds = strtoul(next, nullptr, 0);
      ++i;
    }
  }
  WNDCLASSA window_class = {};
  window_class.lpfnWndProc = WindowProc;
  window_class.hInstance = GetModuleHandleA(nullptr);
  window_class.lpszClassName = argv[1];
  window_class.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  if (!RegisterClassA(&window_class)) return 3;
  HWND window = CreateWindowA(argv[1], argv[2], WS_OVERLAPPEDWINDOW, 50, 50, 300, 100, nullptr, nullptr,
                              window_class.hInstance, nullptr);
  if (!window) return 4;
  if (!hidden) ShowWindow(window, SW_SHOWNOACTIVATE);
  SetTimer(window, 1, milliseconds, nullptr);
  puts("ready");
  fflush(stdout);
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
  return 0;
}
