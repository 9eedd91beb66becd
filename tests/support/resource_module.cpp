#include "support/resource_module.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cwctype>

namespace {

// A resource template, word by word.
class Reader {
 public:
  explicit Reader(const void* data) : mStart(static_cast<const char*>(data)), mAt(mStart) {}
  WORD Word() { return Take<WORD>(); }
  DWORD Long() { return Take<DWORD>(); }
  SHORT Short() { return Take<SHORT>(); }
  void Skip(int bytes) { mAt += bytes; }
  void AlignToLong() { mAt = mStart + ((mAt - mStart + 3) & ~3); }

  std::wstring Text() {
    std::wstring text;
    while (const WORD unit = Word()) text += static_cast<wchar_t>(unit);
    return text;
  }
  // Either a text or 0xFFFF and a number, given as "#number".
  std::wstring TextOrNumber() {
    const char* at = mAt;
    if (Word() == 0xFFFF) return L"#" + std::to_wstring(Word());
    mAt = at;
    return Text();
  }

 private:
  template <typename T>
  T Take() {
    T value;
    std::memcpy(&value, mAt, sizeof value);
    mAt += sizeof value;
    return value;
  }
  const char* mStart;
  const char* mAt;
};

std::wstring ClassName(const std::wstring& given) {
  static const wchar_t* const kNames[] = {L"BUTTON",  L"EDIT",      L"STATIC",
                                          L"LISTBOX", L"SCROLLBAR", L"COMBOBOX"};
  if (given.empty() || given[0] != L'#') return given;
  const int number = std::stoi(given.substr(1));
  return number >= 0x80 && number <= 0x85 ? kNames[number - 0x80] : given;
}

RECT ReadPlace(Reader& reader) {
  RECT place;
  place.left = reader.Short();
  place.top = reader.Short();
  place.right = place.left + reader.Short();
  place.bottom = place.top + reader.Short();
  return place;
}

DialogItem ReadItem(Reader& reader, bool extended) {
  DialogItem item;
  reader.AlignToLong();
  if (extended) reader.Skip(8);  // help id, extended style
  item.style = reader.Long();
  if (!extended) reader.Skip(4);
  item.place = ReadPlace(reader);
  item.id = extended ? static_cast<int>(reader.Long()) : reader.Short();
  item.windowClass = ClassName(reader.TextOrNumber());
  item.text = reader.TextOrNumber();
  reader.Skip(reader.Word());
  return item;
}

}  // namespace

const std::vector<unsigned> kDialogIds = {1200, 1600, 1700, 1800, 1900, 2000, 2100, 2200,
                                          2300, 2400, 2500, 2600, 2700, 2800, 2900, 3000};

std::vector<ResourceModule> OpenResourceModules() {
  std::vector<ResourceModule> modules(3);
  char path[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  modules[0].name = "program";
  modules[0].file = path;
  modules[0].module = GetModuleHandleA(nullptr);
  modules[0].french = true;
  const std::string folder = std::string(path, std::string(path).rfind('\\')) + "\\testdata\\languages\\";
  const char* const kLibraries[] = {"VTsu6fr.dll", "VTsu6en.dll"};
  for (int i = 0; i < 2; ++i) {
    ResourceModule& module = modules[i + 1];
    module.name = kLibraries[i];
    module.file = folder + kLibraries[i];
    module.owner = ModuleHandle(LoadLibraryExA(module.file.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    module.module = module.owner.Get();
    module.french = i == 0;
    EXPECT_TRUE(module.owner) << module.file;
  }
  return modules;
}

bool ReadText(HMODULE module, unsigned id, std::wstring& text) {
  wchar_t buffer[4096];
  SetLastError(0);
  const int length = LoadStringW(module, id, buffer, 4096);
  text.assign(buffer, length > 0 ? length : 0);
  return length > 0;
}

std::vector<unsigned> AllTextIds(HMODULE module) {
  std::vector<unsigned> ids;
  std::wstring text;
  for (unsigned block = 1; block <= 20000 / 16; ++block) {
    if (!FindResourceA(module, MAKEINTRESOURCEA(block), reinterpret_cast<LPCSTR>(RT_STRING))) continue;
    for (unsigned id = (block - 1) * 16; id < block * 16; ++id)
      if (ReadText(module, id, text)) ids.push_back(id);
  }
  return ids;
}

const DialogItem* DialogResource::Find(int id) const {
  for (const DialogItem& item : items)
    if (item.id == id) return &item;
  return nullptr;
}

bool ReadDialog(HMODULE module, unsigned id, DialogResource& dialog) {
  const HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(id), reinterpret_cast<LPCSTR>(RT_DIALOG));
  const void* data = found ? LockResource(LoadResource(module, found)) : nullptr;
  if (!data) return false;
  Reader reader(data);
  const DWORD first = reader.Long();
  const bool extended = first == 0xFFFF0001;
  if (extended) reader.Skip(8);  // help id, extended style
  dialog = DialogResource();
  dialog.style = extended ? reader.Long() : first;
  if (!extended) reader.Skip(4);
  const WORD count = reader.Word();
  const RECT place = ReadPlace(reader);
  dialog.size = {place.right - place.left, place.bottom - place.top};
  reader.TextOrNumber();  // menu
  reader.TextOrNumber();  // class
  dialog.title = reader.Text();
  if (dialog.style & DS_SETFONT) {
    reader.Skip(extended ? 6 : 2);
    reader.Text();
  }
  for (WORD i = 0; i < count; ++i) dialog.items.push_back(ReadItem(reader, extended));
  return true;
}

wchar_t MnemonicOf(const std::wstring& text) {
  for (size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != L'&') continue;
    if (text[i + 1] != L'&') return static_cast<wchar_t>(std::towupper(text[i + 1]));
    ++i;
  }
  return 0;
}

std::string Narrow(const std::wstring& text) {
  std::string result(text.size() * 2, '\0');
  const int length = WideCharToMultiByte(1252, 0, text.data(), static_cast<int>(text.size()), result.data(),
                                         static_cast<int>(result.size()), nullptr, nullptr);
  result.resize(length);
  return result;
}

std::wstring Wide(const std::string& text) {
  std::wstring result(text.size(), L'\0');
  const int length = MultiByteToWideChar(1252, 0, text.data(), static_cast<int>(text.size()), result.data(),
                                         static_cast<int>(result.size()));
  result.resize(length);
  return result;
}
