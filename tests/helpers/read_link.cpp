// read_link FILE     prints what a shell link says, one "name: text" on each line: path, description,
// arguments, icon
// ("file,index"), folder and hotkey. Exit code 1 when the file is no shell link.
#include <objbase.h>
#include <shlobj.h>
#include <windows.h>

#include <cstdio>

namespace {

void Print(const char* name, const wchar_t* text) {
  char bytes[2048] = "";
  WideCharToMultiByte(CP_ACP, 0, text, -1, bytes, sizeof bytes, nullptr, nullptr);
  printf("%s: %s\n", name, bytes);
}

int PrintLink(const wchar_t* path) {
  IShellLinkW* link = nullptr;
  IPersistFile* file = nullptr;
  if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                              reinterpret_cast<void**>(&link))) ||
      FAILED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file))))
    return 2;
  int code = 1;
  if (SUCCEEDED(file->Load(path, STGM_READ))) {
    wchar_t text[1024] = L"";
    WORD hotkey = 0;
    int icon = 0;
    link->GetPath(text, 1024, nullptr, SLGP_RAWPATH);
    Print("path", text);
    link->GetDescription(text, 1024);
    Print("description", text);
    link->GetArguments(text, 1024);
    Print("arguments", text);
    link->GetIconLocation(text, 1000, &icon);
    wcscat(text, L",");
    _itow(icon, text + wcslen(text), 10);
    Print("icon", text);
    link->GetWorkingDirectory(text, 1024);
    Print("folder", text);
    link->GetHotkey(&hotkey);
    printf("hotkey: %u\n", hotkey);
    code = 0;
  }
  file->Release();
  link->Release();
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || FAILED(CoInitialize(nullptr))) return 2;
  wchar_t path[1024] = L"";
  MultiByteToWideChar(CP_ACP, 0, argv[1], -1, path, 1024);
  const int code = PrintLink(path);
  CoUninitialize();
  return code;
}
