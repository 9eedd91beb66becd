#include "support/registry_guard.h"

#include <gtest/gtest.h>

#include "base/handle.h"

namespace {

KeyHandle OpenKey(HKEY root, const std::string& path, REGSAM access) {
  KeyHandle key;
  HKEY opened = nullptr;
  if (RegOpenKeyExA(root, path.c_str(), 0, access, &opened) == ERROR_SUCCESS) key.Reset(opened);
  return key;
}

bool QueryValue(HKEY root, const std::string& path, const std::string& name, DWORD* type, std::string* data) {
  KeyHandle key = OpenKey(root, path, KEY_READ);
  DWORD size = 0;
  if (!key || RegQueryValueExA(key.Get(), name.c_str(), nullptr, type, nullptr, &size) != ERROR_SUCCESS)
    return false;
  data->assign(size, '\0');
  return RegQueryValueExA(key.Get(), name.c_str(), nullptr, type, reinterpret_cast<BYTE*>(data->data()),
                          &size) == ERROR_SUCCESS;
}

void SetValue(HKEY root, const std::string& path, const std::string& name, DWORD type,
              const std::string& data) {
  HKEY created = nullptr;
  LONG code = RegCreateKeyExA(root, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &created, nullptr);
  if (code == ERROR_SUCCESS) {
    KeyHandle key(created);
    code = RegSetValueExA(key.Get(), name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.data()),
                          static_cast<DWORD>(data.size()));
  }
  if (code != ERROR_SUCCESS) ADD_FAILURE() << "cannot set " << path << " " << name << ", error " << code;
}

// By UTF-16 name: one that the code page cannot hold would never be found again.
bool DeleteBelow(HKEY parent, const wchar_t* name) {
  {
    KeyHandle key;
    if (RegOpenKeyExW(parent, name, 0, KEY_READ | KEY_WRITE, key.Put()) != ERROR_SUCCESS) return false;
    wchar_t child[256] = L"";
    while (RegEnumKeyW(key.Get(), 0, child, 256) == ERROR_SUCCESS)
      if (!DeleteBelow(key.Get(), child)) return false;
  }
  return RegDeleteKeyW(parent, name) == ERROR_SUCCESS;
}

}  // namespace

RegistryGuard::RegistryGuard(HKEY root, const std::string& path) : mRoot(root), mPath(path) {
  if (path.find('\\') == std::string::npos) {
    ADD_FAILURE() << "too near to the root for a test: " << path;
    mPath.clear();
    return;
  }
  if (!DeleteRegistryTree(mRoot, mPath)) ADD_FAILURE() << "cannot delete " << mPath;
}

RegistryGuard::~RegistryGuard() {
  if (!mPath.empty() && !DeleteRegistryTree(mRoot, mPath)) ADD_FAILURE() << "cannot delete " << mPath;
}

RegistryValueGuard::RegistryValueGuard(HKEY root, const std::string& path, const std::string& name)
    : mRoot(root), mPath(path), mName(name) {
  mExisted = QueryValue(root, path, name, &mType, &mData);
}

RegistryValueGuard::~RegistryValueGuard() {
  if (mExisted) {
    SetValue(mRoot, mPath, mName, mType, mData);
  } else {
    KeyHandle key = OpenKey(mRoot, mPath, KEY_SET_VALUE);
    if (key) RegDeleteValueA(key.Get(), mName.c_str());
  }
}

bool RegistryKeyExists(HKEY root, const std::string& path) {
  return static_cast<bool>(OpenKey(root, path, KEY_READ));
}

std::optional<std::string> RegistryString(HKEY root, const std::string& path, const std::string& name) {
  DWORD type = 0;
  std::string data;
  if (!QueryValue(root, path, name, &type, &data) || (type != REG_SZ && type != REG_EXPAND_SZ))
    return std::nullopt;
  return data.substr(0, data.find('\0'));
}

std::optional<DWORD> RegistryDword(HKEY root, const std::string& path, const std::string& name) {
  DWORD type = 0;
  std::string data;
  if (!QueryValue(root, path, name, &type, &data) || type != REG_DWORD || data.size() != sizeof(DWORD))
    return std::nullopt;
  DWORD value = 0;
  memcpy(&value, data.data(), sizeof value);
  return value;
}

void SetRegistryString(HKEY root, const std::string& path, const std::string& name,
                       const std::string& value) {
  SetValue(root, path, name, REG_SZ, value + '\0');
}

void SetRegistryDword(HKEY root, const std::string& path, const std::string& name, DWORD value) {
  SetValue(root, path, name, REG_DWORD, std::string(reinterpret_cast<const char*>(&value), sizeof value));
}

bool DeleteRegistryTree(HKEY root, const std::string& path) {
  {
    KeyHandle key = OpenKey(root, path, KEY_READ | KEY_WRITE);
    if (!key) return !RegistryKeyExists(root, path);
    wchar_t name[256] = L"";
    while (RegEnumKeyW(key.Get(), 0, name, 256) == ERROR_SUCCESS)
      if (!DeleteBelow(key.Get(), name)) return false;
  }
  return RegDeleteKeyA(root, path.c_str()) == ERROR_SUCCESS;
}
