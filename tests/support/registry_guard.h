#pragma once
// Registry places that a test writes to: cleaned before and put back after.
#include <windows.h>

#include <optional>
#include <string>

// Deletes a key with all below it when the object is made and again at its end.
class RegistryGuard {
 public:
  // `path` is at least two levels deep, for example "Software\\VeltraneTest".
  RegistryGuard(HKEY root, const std::string& path);
  ~RegistryGuard();
  RegistryGuard(const RegistryGuard&) = delete;
  RegistryGuard& operator=(const RegistryGuard&) = delete;

  HKEY Root() const { return mRoot; }
  const std::string& Path() const { return mPath; }

 private:
  HKEY mRoot;
  std::string mPath;
};

// Remembers one value of a key that is not the test's own, and puts it back (or deletes it) at its end.
class RegistryValueGuard {
 public:
  RegistryValueGuard(HKEY root, const std::string& path, const std::string& name);
  ~RegistryValueGuard();
  RegistryValueGuard(const RegistryValueGuard&) = delete;
  RegistryValueGuard& operator=(const RegistryValueGuard&) = delete;

 private:
  HKEY mRoot;
  std::string mPath;
  std::string mName;
  bool mExisted = false;
  DWORD mType = 0;
  std::string mData;
};

bool RegistryKeyExists(HKEY root, const std::string& path);
// The bytes of a string value up to its NUL; nothing when the key, the value or the type (REG_SZ,
// REG_EXPAND_SZ) is missing.
std::optional<std::string> RegistryString(HKEY root, const std::string& path, const std::string& name);
std::optional<DWORD> RegistryDword(HKEY root, const std::string& path, const std::string& name);
// Creates the key when needed.
void SetRegistryString(HKEY root, const std::string& path, const std::string& name, const std::string& value);
void SetRegistryDword(HKEY root, const std::string& path, const std::string& name, DWORD value);
// Deletes a key with all below it. True when nothing is left.
bool DeleteRegistryTree(HKEY root, const std::string& path);
