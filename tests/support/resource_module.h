#pragma once
// The resources of the program (the test carries them too) and of its language libraries, read without the
// program's code.
#include <windows.h>

#include <string>
#include <vector>

#include "base/handle.h"

struct ResourceModule {
  std::string name;     // for messages of failed tests
  std::string file;     // full path; of the test itself for the program
  HMODULE module = {};  // as data for a library
  bool french = false;
  ModuleHandle owner;  // empty for the program
};

// The program, the French library, the English library, in this order. The libraries are those of the build,
// below testdata\languages. A library that cannot be loaded fails the test.
std::vector<ResourceModule> OpenResourceModules();

// False when there is no such text.
bool ReadText(HMODULE module, unsigned id, std::wstring& text);
// Every id below 20000 that has a text.
std::vector<unsigned> AllTextIds(HMODULE module);

struct DialogItem {
  int id = 0;
  std::wstring windowClass;  // "BUTTON", "EDIT", "STATIC", "LISTBOX", "SCROLLBAR", "COMBOBOX" or a name
  std::wstring text;
  DWORD style = 0;
  RECT place = {};  // dialog units
};

struct DialogResource {
  std::wstring title;
  DWORD style = 0;
  SIZE size = {};  // dialog units
  std::vector<DialogItem> items;

  const DialogItem* Find(int id) const;
};
// Reads both forms of template. False when there is no such dialog.
bool ReadDialog(HMODULE module, unsigned id, DialogResource& dialog);
extern const std::vector<unsigned> kDialogIds;

// The letter behind a single "&", in upper case; 0 without one.
wchar_t MnemonicOf(const std::wstring& text);
// In the system code page 1252, for messages and comparisons.
std::string Narrow(const std::wstring& text);
std::wstring Wide(const std::string& text);
