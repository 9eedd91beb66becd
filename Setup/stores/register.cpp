#include "stores/register.h"

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "base/assert.h"
#include "base/handle.h"
#include "base/string.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "platform/WinRegistry.h"
#include "stores/ini.h"
#include "stores/regkey.h"

namespace {

constexpr uint32_t kMaxQuery = 1024;   // bytes of a value that are read
constexpr uint32_t kMaxKeyName = 512;  // characters, terminator included

const char* TextOf(const char* text) { return text != nullptr ? text : ""; }

// What a value's data looks like in the log.
Str DataText(const void* data, uint32_t size, uint32_t type) {
  Str text;
  if (data == nullptr) return text;
  if (type == REG_DWORD && size == sizeof(uint32_t)) {
    uint32_t number = 0;
    std::memcpy(&number, data, sizeof(number));
    text.Format("%lu", static_cast<unsigned long>(number));
  } else if (type == REG_SZ || type == REG_EXPAND_SZ) {
    text = std::string_view(static_cast<const char*>(data), size);
  }
  return text;
}

void LogCreateFailure(const char* line, HKEY key, const char* subKey, const char* valueName,
                      const Str& data) {
  const bool isDefault = TextOf(valueName)[0] == '\0';
  LogLine(Message(line, kTemplateLiteral)
              .With("RootKey", static_cast<int32_t>(reinterpret_cast<uintptr_t>(key)))
              .With("SubKey", subKey)
              .With("ValueName", isDefault ? "(Default)" : valueName)
              .With("ValueData", data));
}

// A subkey whose deletion would reach the given key itself.
bool IsEmptySubKey(const char* subKey) {
  return std::string_view(subKey).find_first_not_of('\\') == std::string_view::npos;
}

// Name of the first subkey.
bool FirstSubKey(HKEY key, WStr& name) {
  wchar_t buffer[kMaxKeyName];
  DWORD size = kMaxKeyName;
  if (RegEnumKeyExW(key, 0, buffer, &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) return false;
  name = buffer;
  return true;
}

// Deletes a key with all below it and counts the keys that stay; `unopened` is the count for a key
// that cannot be opened. Names are wide: one that the code page cannot hold would read as that of
// a key that is not there.
int32_t DeleteTree(HKEY key, const wchar_t* subKey, int32_t unopened) {
  KeyHandle opened;
  if (RegOpenKeyExW(key, subKey, 0, DELETE | KEY_ENUMERATE_SUB_KEYS, opened.Put()) != ERROR_SUCCESS)
    return unopened;
  int32_t failures = 0;
  WStr child;
  // A child that stays, be it only that it does not open, would be met again and again.
  while (failures == 0 && FirstSubKey(opened.Get(), child)) failures += DeleteTree(opened.Get(), child, 1);
  opened.Reset();
  if (RegDeleteKeyW(key, subKey) != ERROR_SUCCESS) ++failures;
  return failures;
}

}  // namespace

bool RegCreateKeyValue(HKEY key, const char* subKey, const char* valueName, const void* data, uint32_t size,
                       uint32_t type) {
  subKey = TextOf(subKey);
  const Str shown = DataText(data, size, type);
  RegKey created;
  if (created.Create(key, subKey, KEY_WRITE) != ERROR_SUCCESS) {
    LogCreateFailure("RegCreateKeyValue couldn't create key, \"0x<RootKey:08X>\\<SubKey>\".", key, subKey,
                     valueName, shown);
    return false;
  }
  if (RegSetValueExA(created.Get(), valueName, 0, type, static_cast<const BYTE*>(data), size) !=
      ERROR_SUCCESS) {
    LogCreateFailure(
        "RegCreateKeyValue couldn't set the value, \"<ValueName> = <ValueData>\" for key, "
        "\"0x<RootKey:08X>\\<SubKey>\".",
        key, subKey, valueName, shown);
    return false;
  }
  return true;
}

bool RegCreateKeyValue(HKEY key, const char* subKey, const char* valueName, const char* text) {
  if (!VT_ASSERT(text != nullptr, "value")) text = "";
  return RegCreateKeyValue(key, subKey, valueName, text, static_cast<uint32_t>(Str::Length(text)) + 1,
                           REG_SZ);
}

bool RegCreateKeyValue(HKEY key, const char* subKey, const char* valueName, uint32_t number) {
  return RegCreateKeyValue(key, subKey, valueName, &number, sizeof(number), REG_DWORD);
}

bool RegQueryString(HKEY root, const char* keyPath, const char* valueName, Str& out) {
  RegKey key;
  if (key.Open(root, TextOf(keyPath), KEY_READ) != ERROR_SUCCESS) return false;
  char buffer[kMaxQuery];
  DWORD size = sizeof(buffer);
  DWORD type = REG_NONE;
  if (RegQueryValueExA(key.Get(), valueName, nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size) !=
          ERROR_SUCCESS ||
      (type != REG_SZ && type != REG_EXPAND_SZ))
    return false;
  out = std::string_view(buffer, size);
  return true;
}

bool RegGetValueStr(const char* storePath, const char* valueName, Str& out) {
  HKEY root = nullptr;
  Str subKey;
  return IniParsePath(storePath, root, subKey) && root != nullptr &&
         RegQueryString(root, subKey, valueName, out);
}

bool RegKeyOrValueExists(const char* storePath, const char* valueName) {
  HKEY root = nullptr;
  Str subKey;
  if (!IniParsePath(storePath, root, subKey) || root == nullptr) return false;
  RegKey key;
  if (key.Open(root, subKey, KEY_READ) != ERROR_SUCCESS) return false;
  if (TextOf(valueName)[0] == '\0') return true;
  return RegQueryValueExA(key.Get(), valueName, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

int32_t RegValueContains(HKEY root, const char* subKey, const char* valueName, const char* text, Str* out) {
  Str value;
  if (!RegQueryString(root, subKey, valueName, value) || value.IsEmpty()) return kRegMissing;
  const bool contains = value.Find(TextOf(text)) >= 0;
  if (out != nullptr) *out = value;
  return contains ? kRegContains : kRegOther;
}

bool RegDeleteSubKeyValue(HKEY key, const char* subKey, const char* valueName) {
  RegKey opened;
  if (opened.Open(key, TextOf(subKey), KEY_WRITE) == ERROR_SUCCESS) RegDeleteValueA(opened.Get(), valueName);
  opened.Close();
  if (!IsPredefinedKey(key)) KeyHandle(key).Reset();
  return true;
}

int32_t RegDeleteKeyTree(HKEY key, const char* subKey) {
  if (IsEmptySubKey(TextOf(subKey))) return 1;
  WStr wideSubKey;
  wideSubKey = subKey;
  return DeleteTree(key, wideSubKey, 0);
}

HKEY RootKeyFromName(const char* text) {
  static const struct {
    std::string_view name;
    HKEY key;
  } kRoots[] = {
      {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},     {"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
      {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},   {"HKEY_DYN_DATA", HKEY_DYN_DATA},
      {"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG}, {"HKEY_USERS", HKEY_USERS},
  };
  std::string_view name(TextOf(text));
  if (name.starts_with("REG*")) name.remove_prefix(4);
  for (const auto& root : kRoots) {
    if (root.name == name) return root.key;
  }
  return nullptr;
}

bool GetProgramFilesDir(char* buffer, uint32_t size) {
  Str dir;
  if (buffer == nullptr || size == 0 ||
      !RegQueryString(HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows\\CurrentVersion", "ProgramFilesDir",
                      dir) ||
      static_cast<uint32_t>(dir.Length()) >= size)
    return false;
  std::memcpy(buffer, dir.Chars(), static_cast<size_t>(dir.Length()) + 1);
  return true;
}
