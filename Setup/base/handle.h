#pragma once
// Owners of Windows handles: each releases what it holds in its destructor. Predefined registry roots and
// other borrowed handles are never put into one.
#include <windows.h>

// Move-only owner of one handle. Policy gives Type, Invalid() and Close(Type).
template <class Policy>
class UniqueHandle {
 public:
  using Type = typename Policy::Type;
  UniqueHandle() = default;
  explicit UniqueHandle(Type handle) : mHandle(handle) {}
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;
  UniqueHandle(UniqueHandle&& other) noexcept : mHandle(other.Release()) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }
  ~UniqueHandle() { Reset(); }

  Type Get() const { return mHandle; }
  explicit operator bool() const { return mHandle != Policy::Invalid(); }
  // Closes what is held and returns the place for a new handle (for out parameters).
  Type* Put() {
    Reset();
    return &mHandle;
  }
  // Closes what is held and tells whether the system agreed; false when nothing is held.
  bool Close() { return static_cast<bool>(*this) && Policy::Close(Release()); }
  // Gives up ownership.
  Type Release() {
    Type handle = mHandle;
    mHandle = Policy::Invalid();
    return handle;
  }
  // Closes what is held, keeping the thread's last error, and takes `handle`.
  void Reset(Type handle = Policy::Invalid()) {
    if (mHandle != Policy::Invalid() && mHandle != handle) {
      const DWORD lastError = GetLastError();
      Policy::Close(mHandle);
      SetLastError(lastError);
    }
    mHandle = handle;
  }

 private:
  Type mHandle = Policy::Invalid();
};

struct FileHandlePolicy {
  using Type = HANDLE;
  static Type Invalid() { return INVALID_HANDLE_VALUE; }
  static bool Close(Type handle) { return CloseHandle(handle) != FALSE; }
};
struct FindHandlePolicy {
  using Type = HANDLE;
  static Type Invalid() { return INVALID_HANDLE_VALUE; }
  static void Close(Type handle) { FindClose(handle); }
};
struct KernelHandlePolicy {
  using Type = HANDLE;
  static Type Invalid() { return nullptr; }
  static void Close(Type handle) { CloseHandle(handle); }
};
struct KeyHandlePolicy {
  using Type = HKEY;
  static Type Invalid() { return nullptr; }
  static bool Close(Type key) { return RegCloseKey(key) == ERROR_SUCCESS; }
};
struct ModulePolicy {
  using Type = HMODULE;
  static Type Invalid() { return nullptr; }
  static void Close(Type module) { FreeLibrary(module); }
};
struct WindowPolicy {
  using Type = HWND;
  static Type Invalid() { return nullptr; }
  static void Close(Type window) { DestroyWindow(window); }
};
template <class Object>
struct GdiPolicy {
  using Type = Object;
  static Type Invalid() { return nullptr; }
  static void Close(Type object) { DeleteObject(object); }
};
struct ScreenPolicy {
  using Type = HDC;
  static Type Invalid() { return nullptr; }
  static void Close(Type dc) { ReleaseDC(nullptr, dc); }
};

using FileHandle = UniqueHandle<FileHandlePolicy>;      // CreateFile
using FindHandle = UniqueHandle<FindHandlePolicy>;      // FindFirstFile
using KernelHandle = UniqueHandle<KernelHandlePolicy>;  // processes, threads, tokens, mappings
using KeyHandle = UniqueHandle<KeyHandlePolicy>;        // opened registry keys, never the predefined roots
using ModuleHandle = UniqueHandle<ModulePolicy>;
using WindowHandle = UniqueHandle<WindowPolicy>;
using FontHandle = UniqueHandle<GdiPolicy<HFONT>>;
using ScreenHandle = UniqueHandle<ScreenPolicy>;  // GetDC of the whole screen
