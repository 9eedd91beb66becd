#pragma once
// KWinRegistry: one open registry key with its access mode. All text is 8-bit, system code page.
#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "base/str.h"

enum WinRegMode : uint32_t {
  wrRead = 1,    // open an existing key for reading
  wrWrite = 2,   // open or create, read and write
  wrUpdate = 4,  // open an existing key, read and write
};

class KWinRegistry {
 public:
  KWinRegistry() = default;
  KWinRegistry(const KWinRegistry&) = delete;
  KWinRegistry& operator=(const KWinRegistry&) = delete;
  ~KWinRegistry();

  bool IsValid() const { return mHKey != nullptr; }
  bool IsWritable() const { return (mMode & wrRead) == 0; }
  HKEY Key() const { return mHKey; }

  // "HKEY_LOCAL_MACHINE\Software\..."; the first component may be abbreviated (first table entry wins).
  // An object must be closed before it is opened again.
  [[nodiscard]] bool OpenRooted(const char* rootedPath, WinRegMode mode);
  [[nodiscard]] bool OpenKey(const char* path, KWinRegistry& destKey, WinRegMode mode) const;
  void Close();
  // Text of a REG_SZ or REG_EXPAND_SZ value (not expanded); empty and false otherwise.
  bool GetValue(const char* name, Str& value);
  // Writes a REG_SZ value; an empty name is the key's default value. A refusal asserts.
  bool SetValue(const char* name, const char* value);
  bool SetDefaultValue(const char* value);
  // False also when there is no such value.
  bool DeleteValue(const char* name);
  // Deletes the subkey and everything below it; one that is missing is made and deleted.
  // An empty name is refused.
  bool DeleteKey(const char* name);
  // Copies every REG_SZ value and, recursively, every subkey into `destKey`.
  bool CopyKey(KWinRegistry& destKey);
  // Name of subkey / name and data of value `index`; false at the end. Values other than REG_SZ are skipped
  // by advancing `index` past them; the caller counts it up once more for the next. The number of subkeys and
  // values is that of the first call after opening or writing through this object.
  bool EnumSubKey(uint32_t index, Str& name);
  bool EnumValue(uint32_t& index, Str& name, Str& data);

 private:
  void Attach(HKEY key, WinRegMode mode);
  bool LoadInfo();
  bool DeleteTree(const char* name, WinRegMode mode);
  bool CopyValues(KWinRegistry& destKey);
  size_t NameBufferSize() const;

  HKEY mHKey = nullptr;
  bool mInfoCached = false;
  DWORD mMaxValueLen = 0;
  DWORD mMaxNameLen = 0;
  DWORD mNumValues = 0;
  DWORD mNumSubKeys = 0;
  uint32_t mMode = wrRead;
};

// True for a handle that must never be closed.
bool IsPredefinedKey(HKEY key);
