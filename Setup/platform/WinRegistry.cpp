#include "platform/WinRegistry.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "base/assert.h"
#include "base/handle.h"

namespace {

struct RootRow {
  std::string_view name;
  HKEY key;
};

// In the order in which abbreviations are resolved.
const RootRow kRoots[] = {
    {"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG},     {"HKEY_DYN_DATA", HKEY_DYN_DATA},
    {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},         {"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
    {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},       {"HKEY_USERS", HKEY_USERS},
    {"HKEY_PERFORMANCE_DATA", HKEY_PERFORMANCE_DATA},
};

// The first root whose name begins with `name`; null when there is none.
HKEY FindRoot(std::string_view name) {
  if (name.empty()) return nullptr;
  for (const RootRow& row : kRoots)
    if (row.name.substr(0, name.size()) == name) return row.key;
  return nullptr;
}

LONG OpenOrCreate(HKEY parent, const char* path, WinRegMode mode, HKEY* key) {
  if (mode & wrRead) return RegOpenKeyExA(parent, path, 0, KEY_READ, key);
  constexpr REGSAM kAccess = KEY_READ | KEY_WRITE;
  if (!(mode & wrWrite)) return RegOpenKeyExA(parent, path, 0, kAccess, key);
  return RegCreateKeyExA(parent, path, 0, nullptr, REG_OPTION_NON_VOLATILE, kAccess, nullptr, key, nullptr);
}

const char* OrEmpty(const char* text) { return text ? text : ""; }

// Text of value data, which need not be terminated.
std::string_view DataText(const std::vector<char>& data, DWORD size) {
  return {data.data(), std::min<size_t>(size, data.size())};
}

}  // namespace

bool IsPredefinedKey(HKEY key) {
  return std::any_of(std::begin(kRoots), std::end(kRoots),
                     [key](const RootRow& row) { return row.key == key; });
}

KWinRegistry::~KWinRegistry() { Close(); }

bool KWinRegistry::OpenRooted(const char* rootedPath, WinRegMode mode) {
  VT_ASSERT(rootedPath, "rootedPath");
  VT_ASSERT(!IsValid(), "! IsValid()");
  const std::string_view path = OrEmpty(rootedPath);
  const size_t slash = path.find('\\');
  const HKEY root = FindRoot(path.substr(0, slash));
  if (!root) {
    VT_FAIL("unknown root key");
    return false;
  }
  KWinRegistry rootKey;
  rootKey.Attach(root, mode);
  const char* const rest = slash == std::string_view::npos ? "" : rootedPath + slash + 1;
  Close();
  if (*rest != '\0') return rootKey.OpenKey(rest, *this, mode);
  Attach(root, mode);
  return true;
}

bool KWinRegistry::OpenKey(const char* path, KWinRegistry& destKey, WinRegMode mode) const {
  VT_ASSERT(IsValid(), "IsValid()");
  VT_ASSERT(path, "path");
  VT_ASSERT(!destKey.IsValid(), "mHKey == 0");
  HKEY key = nullptr;
  const LONG result = OpenOrCreate(mHKey, OrEmpty(path), mode, &key);
  destKey.Close();
  if (result != ERROR_SUCCESS) return false;
  destKey.Attach(key, mode);
  return true;
}

void KWinRegistry::Attach(HKEY key, WinRegMode mode) {
  mHKey = key;
  mMode = mode;
  mInfoCached = false;
}

void KWinRegistry::Close() {
  if (!IsValid()) return;
  const HKEY key = mHKey;
  mHKey = nullptr;
  mInfoCached = false;
  if (IsPredefinedKey(key)) return;
  KeyHandle owner(key);
  VT_ASSERT(owner.Close(), "result == ERROR_SUCCESS");
}

bool KWinRegistry::LoadInfo() {
  if (mInfoCached) return true;
  DWORD maxSubKey = 0, maxValueName = 0;
  const LONG result = RegQueryInfoKeyA(mHKey, nullptr, nullptr, nullptr, &mNumSubKeys, &maxSubKey, nullptr,
                                       &mNumValues, &maxValueName, &mMaxValueLen, nullptr, nullptr);
  if (result != ERROR_SUCCESS) return false;
  mMaxNameLen = std::max(maxSubKey, maxValueName);
  mInfoCached = true;
  return true;
}

bool KWinRegistry::GetValue(const char* name, Str& value) {
  VT_ASSERT(IsValid(), "IsValid()");
  VT_ASSERT(name, "name");
  value = "";
  LONG result = ERROR_MORE_DATA;
  // Somebody else may have written a longer value since the sizes were cached: then they
  // are asked for once more.
  for (int attempt = 0; attempt < 2 && result == ERROR_MORE_DATA; attempt++) {
    if (!LoadInfo()) return false;
    std::vector<char> data(mMaxValueLen + 1);
    DWORD type = 0;
    DWORD size = mMaxValueLen;
    result =
        RegQueryValueExA(mHKey, OrEmpty(name), nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size);
    mInfoCached = result != ERROR_MORE_DATA;
    if (result != ERROR_SUCCESS) continue;
    if (type != REG_SZ && type != REG_EXPAND_SZ) return false;
    value = DataText(data, size);
  }
  return result == ERROR_SUCCESS;
}

bool KWinRegistry::SetValue(const char* name, const char* value) {
  VT_ASSERT(IsValid(), "IsValid()");
  VT_ASSERT(IsWritable(), "IsWritable()");
  VT_ASSERT(name, "name");
  VT_ASSERT(value, "value");
  const char* const text = OrEmpty(value);
  const DWORD size = static_cast<DWORD>(Str::Length(text)) + 1;
  mInfoCached = false;
  const LONG result =
      RegSetValueExA(mHKey, OrEmpty(name), 0, REG_SZ, reinterpret_cast<const BYTE*>(text), size);
  return VT_ASSERT(result == ERROR_SUCCESS, "result == ERROR_SUCCESS");
}

bool KWinRegistry::SetDefaultValue(const char* value) { return SetValue("", value); }

bool KWinRegistry::DeleteValue(const char* name) {
  VT_ASSERT(IsValid(), "IsValid()");
  VT_ASSERT(IsWritable(), "IsWritable()");
  VT_ASSERT(name, "name");
  mInfoCached = false;
  // A missing name is not taken for the unnamed value: nothing may be deleted by mistake.
  return name && RegDeleteValueA(mHKey, name) == ERROR_SUCCESS;
}

bool KWinRegistry::DeleteKey(const char* name) {
  VT_ASSERT(IsValid(), "IsValid()");
  VT_ASSERT(IsWritable(), "IsWritable()");
  VT_ASSERT(name, "name");
  // The empty name would be this very key, at worst a whole root.
  return name && *name != '\0' && DeleteTree(name, wrWrite);
}

bool KWinRegistry::DeleteTree(const char* name, WinRegMode mode) {
  mInfoCached = false;
  {
    KWinRegistry subKey;
    if (!OpenKey(name, subKey, mode)) return false;
    Str child;
    while (subKey.EnumSubKey(0, child)) {
      // Opened only if it exists: a name that our code page cannot hold reads as another one, which would be
      // created and deleted for ever.
      if (!subKey.DeleteTree(child, wrUpdate)) return false;
    }
  }
  return RegDeleteKeyA(mHKey, name) == ERROR_SUCCESS;
}

bool KWinRegistry::CopyValues(KWinRegistry& destKey) {
  Str valueName, valueData;
  for (uint32_t i = 0; EnumValue(i, valueName, valueData); i++) {
    const bool stat = destKey.SetValue(valueName, valueData);
    if (!VT_ASSERT(stat, "stat = destKey.SetValue(valueName, valueData)")) return false;
  }
  return true;
}

bool KWinRegistry::CopyKey(KWinRegistry& destKey) {
  VT_ASSERT(IsValid(), "IsValid()");
  if (!CopyValues(destKey)) return false;
  Str subKeyName;
  for (uint32_t i = 0; EnumSubKey(i, subKeyName); i++) {
    KWinRegistry destSubKey, subKey;
    const bool stat = destKey.OpenKey(subKeyName, destSubKey, wrWrite);
    if (!VT_ASSERT(stat, "stat = destKey.OpenKey(subKeyName, destSubKey, wrWrite)")) return false;
    if (!OpenKey(subKeyName, subKey, wrRead) || !subKey.CopyKey(destSubKey)) return false;
  }
  return true;
}

bool KWinRegistry::EnumSubKey(uint32_t index, Str& name) {
  VT_ASSERT(IsValid(), "IsValid()");
  if (!LoadInfo() || index >= mNumSubKeys) return false;
  std::vector<char> buffer(NameBufferSize());
  DWORD length = static_cast<DWORD>(buffer.size());
  const LONG result = RegEnumKeyExA(mHKey, index, buffer.data(), &length, nullptr, nullptr, nullptr, nullptr);
  if (result != ERROR_SUCCESS) return false;
  name = buffer.data();
  return true;
}

bool KWinRegistry::EnumValue(uint32_t& index, Str& name, Str& data) {
  VT_ASSERT(IsValid(), "IsValid()");
  if (!LoadInfo()) return false;
  std::vector<char> nameBuffer(NameBufferSize());
  std::vector<char> dataBuffer(mMaxValueLen + 1);
  for (; index < mNumValues; index++) {
    DWORD nameLength = static_cast<DWORD>(nameBuffer.size());
    DWORD size = mMaxValueLen;
    DWORD type = 0;
    const LONG result = RegEnumValueA(mHKey, index, nameBuffer.data(), &nameLength, nullptr, &type,
                                      reinterpret_cast<BYTE*>(dataBuffer.data()), &size);
    if (result == ERROR_NO_MORE_ITEMS) return false;
    if (result != ERROR_SUCCESS || type != REG_SZ) continue;
    name = nameBuffer.data();
    data = DataText(dataBuffer, size);
    return true;
  }
  return false;
}

// Bytes for the longest name and its end. The system may count 16-bit units, each worth up to two bytes.
size_t KWinRegistry::NameBufferSize() const { return size_t{mMaxNameLen} * 2 + 1; }
