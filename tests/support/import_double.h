#pragma once
// Replaces a function that the test program imports from a system library, for failures that the system does
// not produce at will.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>

class ImportDouble {
 public:
  // Every call of `name` in this program goes to `replacement` while the object lives.
  ImportDouble(const char* name, void* replacement) : mSlot(FindSlot(name)) {
    EXPECT_NE(mSlot, nullptr) << name << " is not imported";
    if (mSlot != nullptr) mOriginal = Exchange(replacement);
  }
  ~ImportDouble() {
    if (mSlot != nullptr) Exchange(mOriginal);
  }
  ImportDouble(const ImportDouble&) = delete;
  ImportDouble& operator=(const ImportDouble&) = delete;

  void* Original() const { return mOriginal; }

 private:
  static void** FindSlot(const char* name) {
    auto* const base = reinterpret_cast<BYTE*>(GetModuleHandleA(nullptr));
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS32*>(base + dos->e_lfanew);
    const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports);
    for (; library->Name != 0; ++library) {
      const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA32*>(base + library->OriginalFirstThunk);
      auto* slots = reinterpret_cast<void**>(base + library->FirstThunk);
      for (; names->u1.AddressOfData != 0; ++names, ++slots) {
        if ((names->u1.Ordinal & IMAGE_ORDINAL_FLAG32) != 0) continue;
        const auto* import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
        if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) == 0) return slots;
      }
    }
    return nullptr;
  }

  void* Exchange(void* function) const {
    void* const former = *mSlot;
    DWORD protection = 0;
    VirtualProtect(mSlot, sizeof(*mSlot), PAGE_READWRITE, &protection);
    *mSlot = function;
    VirtualProtect(mSlot, sizeof(*mSlot), protection, &protection);
    return former;
  }

  void** mSlot;
  void* mOriginal = nullptr;
};

// A disk with room for files of `limit` bytes: writing more fails as a full disk does, after what still fits.
class FullDisk {
 public:
  explicit FullDisk(DWORD limit) : mDouble("WriteFile", reinterpret_cast<void*>(&Write)) {
    sLimit = limit;
    sOriginal = reinterpret_cast<decltype(&WriteFile)>(mDouble.Original());
  }

 private:
  static BOOL WINAPI Write(HANDLE file, LPCVOID bytes, DWORD count, LPDWORD written,
                           LPOVERLAPPED overlapped) {
    const DWORD position = SetFilePointer(file, 0, nullptr, FILE_CURRENT);
    if (GetFileType(file) != FILE_TYPE_DISK || (position <= sLimit && count <= sLimit - position))
      return sOriginal(file, bytes, count, written, overlapped);
    if (position < sLimit) sOriginal(file, bytes, sLimit - position, written, overlapped);
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
  }

  inline static DWORD sLimit = 0;
  inline static decltype(&WriteFile) sOriginal = nullptr;
  ImportDouble mDouble;
};
