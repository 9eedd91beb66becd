// show_dialog LIBRARY ID [NAME=VALUE...]     shows a dialog of a language library as it is, with the
// placeholders <NAME> in its texts filled, until a button is pressed or 60 seconds are over. For dialogs that
// no run shows.
#include <windows.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

std::vector<std::pair<std::string, std::string>> gValues;

BOOL CALLBACK Fill(HWND window, LPARAM) {
  char buffer[2048] = "";
  GetWindowTextA(window, buffer, sizeof buffer);
  std::string text = buffer;
  for (const auto& [name, value] : gValues)
    for (size_t pos = text.find(name); pos != std::string::npos; pos = text.find(name, pos + value.size()))
      text.replace(pos, name.size(), value);
  if (text != buffer) SetWindowTextA(window, text.c_str());
  return TRUE;
}

INT_PTR CALLBACK Proc(HWND dialog, UINT message, WPARAM wparam, LPARAM) {
  switch (message) {
    case WM_INITDIALOG: {
      Fill(dialog, 0);
      EnumChildWindows(dialog, Fill, 0);
      SetTimer(dialog, 1, 60000, nullptr);
      return TRUE;
    }
    case WM_TIMER:
    case WM_COMMAND:
      if (message == WM_COMMAND && HIWORD(wparam) != BN_CLICKED) return FALSE;
      EndDialog(dialog, 1);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  const HMODULE library = LoadLibraryExA(argv[1], nullptr, LOAD_LIBRARY_AS_DATAFILE);
  if (library == nullptr) return 3;
  for (int i = 3; i < argc; ++i) {
    const std::string pair = argv[i];
    const size_t equals = pair.find('=');
    if (equals != std::string::npos)
      gValues.emplace_back("<" + pair.substr(0, equals) + ">", pair.substr(equals + 1));
  }
  return DialogBoxParamA(library, MAKEINTRESOURCEA(atoi(argv[2])), nullptr, Proc, 0) == 1 ? 0 : 4;
}
