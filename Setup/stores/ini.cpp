#include "stores/ini.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "base/assert.h"
#include "base/leadbyte.h"
#include "base/string.h"
#include "stores/inistore.h"

namespace {

constexpr std::string_view kRegistryPrefix = "REG*";

struct RootRow {
  std::string_view name;
  HKEY key;
};

const RootRow kRoots[] = {
    {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
    {"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
    {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
    {"HKEY_USERS", HKEY_USERS},
};

void LowerAnsi(char* text, size_t size) {
  if (std::any_of(text, text + size, [](char ch) { return static_cast<unsigned char>(ch) >= 0x80; }))
    CharLowerBuffA(text, static_cast<DWORD>(size));
  else
    AsciiIniRules().lower(text, size);
}

bool HasText(const char* text, const char* expression) { return VT_ASSERT(text != nullptr, expression); }

bool IsOpen(const IniStore* ini) { return VT_ASSERT(ini != nullptr, "ini"); }

bool WriteBack(IniStore& ini) {
  if (ini.readOnly) return true;
  switch (ini.type) {
    case iniFILE:
      return WriteIniFile(ini);
    case iniREG:
      return WriteIniKey(ini);
    case iniMEM:
      return WriteIniMemory(ini);
    case iniSTRLIST:
      break;
  }
  return true;
}

}  // namespace

IniStore::IniStore(IniType kind, bool isReadOnly)
    : type(kind), readOnly(isReadOnly), text({LowerAnsi, IsAnsiLeadByte}) {}

void IniStore::CheckName(const char* name, const char* expression) {
  if (KeyIsValid(name)) return;
  std::string complaint(expression);
  complaint += name;
  if (std::find(complaints.begin(), complaints.end(), complaint) != complaints.end()) return;
  complaints.push_back(std::move(complaint));
  VT_FAIL(expression);
}

void IniCloser::operator()(IniStore* ini) const {
  const std::unique_ptr<IniStore> owner(ini);
  WriteBack(*owner);
}

bool IniParsePath(const char* path, HKEY& root, Str& subKey) {
  root = nullptr;
  if (!HasText(path, "path")) return false;
  std::string_view rest(path);
  if (!rest.starts_with(kRegistryPrefix)) {
    subKey = rest;
    return true;
  }
  rest.remove_prefix(kRegistryPrefix.size());
  const size_t end = std::min(rest.find('\\'), rest.size());
  const auto row = std::find_if(std::begin(kRoots), std::end(kRoots),
                                [&](const RootRow& known) { return known.name == rest.substr(0, end); });
  if (row == std::end(kRoots)) return false;
  root = row->key;
  subKey = rest.substr(std::min(end + 1, rest.size()));
  return true;
}

IniStorePtr IniOpen(const char* path, bool readOnly) {
  HKEY root = nullptr;
  Str subKey;
  if (!IniParsePath(path, root, subKey)) return nullptr;
  auto ini = std::make_unique<IniStore>(root == nullptr ? iniFILE : iniREG, readOnly);
  const bool opened = root == nullptr ? OpenIniFile(*ini, subKey) : OpenIniKey(*ini, root, subKey);
  return IniStorePtr(opened ? ini.release() : nullptr);
}

IniStorePtr IniOpenMem(MemHandle& hand, bool readOnly) {
  VT_ASSERT(!hand.IsValid() || hand.GetLockCount() == 0, "hand.GetLockCount() == 0");
  auto ini = std::make_unique<IniStore>(iniMEM, readOnly);
  ini->hand = &hand;
  return IniStorePtr(OpenIniMemory(*ini) ? ini.release() : nullptr);
}

IniStorePtr IniOpenStrList(uint32_t number) {
  auto ini = std::make_unique<IniStore>(iniSTRLIST, true);
  ini->listNumber = number;
  LoadIniStringList(*ini);
  return IniStorePtr(ini.release());
}

bool IniClose(IniStorePtr& ini) {
  if (!IsOpen(ini.get())) return false;
  const std::unique_ptr<IniStore> owner(ini.release());
  return WriteBack(*owner);
}

bool IniCreate(const char* path) {
  IniStorePtr ini = IniOpen(path, false);
  return ini != nullptr && IniClose(ini);
}

bool IniFindSection(IniStore* ini, const char* section, bool create) {
  if (!IsOpen(ini) || !HasText(section, "section")) return false;
  if (ini->text.FindSection(section)) return true;
  if (!create || ini->text.SectionCount() >= kIniMaxSections) return false;
  ini->CheckName(section, "KeyIsValid(section)");
  ini->text.CreateSection(section);
  return true;
}

bool IniNextSection(IniStore* ini, bool first, const char* prefix, Str& name) {
  if (!IsOpen(ini)) return false;
  std::string_view found;
  if (!ini->text.NextSection(first, prefix != nullptr ? prefix : "", found)) return false;
  name = found;
  return true;
}

void IniDeleteSection(IniStore* ini, const char* section) {
  if (!IsOpen(ini) || !HasText(section, "section")) return;
  ini->text.DeleteSection(section);
}

void IniRenameSection(IniStore* ini, const char* newName) {
  if (!IsOpen(ini) || !HasText(newName, "section")) return;
  ini->CheckName(newName, "KeyIsValid(section)");
  ini->text.RenameSection(newName);
}

MemHandle IniCopySection(IniStore* ini) {
  if (!IsOpen(ini) || !ini->text.HasCurrent()) return MemHandle();
  const std::string text(ini->text.CurrentText());
  return MemHandle(text.c_str(), static_cast<uint32_t>(text.size()) + 1);
}

bool IniSetSection(IniStore* ini, const char* section, MemHandle block) {
  if (!IniFindSection(ini, section, true)) return false;
  std::string text;
  if (block.IsValid()) {
    const MemLock lock(block);
    const std::string_view bytes(lock.Ptr(), block.Size());
    text = bytes.substr(0, bytes.find('\0'));
  }
  ini->text.SetSectionText(std::move(text));
  return true;
}

bool IniNextKey(IniStore* ini, bool first, const char* prefix, Str& key, Str* value) {
  if (!IsOpen(ini)) return false;
  std::string foundKey;
  std::string foundValue;
  if (!ini->text.NextKey(first, prefix != nullptr ? prefix : "", foundKey, foundValue)) return false;
  key = foundKey.c_str();
  if (value != nullptr) *value = foundValue.c_str();
  return true;
}

bool IniNextLine(IniStore* ini, bool first, Str& key, Str& value) {
  if (!IsOpen(ini)) return false;
  std::string foundKey;
  std::string foundValue;
  if (!ini->text.NextLine(first, foundKey, foundValue)) return false;
  key = foundKey.c_str();
  value = foundValue.c_str();
  return true;
}

bool IniSeekLine(IniStore* ini, int32_t count) { return IsOpen(ini) && ini->text.SeekLine(count); }

bool IniDeleteKey(IniStore* ini, const char* key) {
  return IsOpen(ini) && HasText(key, "key") && ini->text.DeleteKey(key);
}

bool IniWriteString(IniStore* ini, const char* key, const char* value) {
  if (!IsOpen(ini) || !HasText(key, "key") || !HasText(value, "value")) return false;
  ini->CheckName(key, "KeyIsValid(key)");
  return ini->text.WriteKey(key, value);
}

bool IniAddString(IniStore* ini, const char* key, const char* value) {
  if (!IsOpen(ini) || !HasText(key, "key") || !HasText(value, "value")) return false;
  ini->CheckName(key, "KeyIsValid(key)");
  return ini->text.AddKey(key, value);
}

bool KeyIsValid(const char* key) {
  if (!HasText(key, "key")) return false;
  if (key[0] == '\0') return true;
  const auto wide = AnsiToWide(key);
  if (wide == nullptr) return false;
  const int32_t length = WStr::Length(wide.get());
  const auto types = std::make_unique<WORD[]>(static_cast<size_t>(length));
  if (!GetStringTypeW(CT_CTYPE1, wide.get(), length, types.get())) return false;
  for (int32_t i = 0; i < length; ++i) {
    if ((types[static_cast<size_t>(i)] & (C1_ALPHA | C1_DIGIT)) == 0 && wide[static_cast<size_t>(i)] != L'_')
      return false;
  }
  return true;
}
