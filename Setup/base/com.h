#pragma once
// Owners for COM: the library for a scope, and one interface pointer.
#include <windows.h>
#include <objbase.h>

// COM for a scope; closed only when it could be opened.
class ComScope {
 public:
  ComScope() : mResult(CoInitialize(nullptr)) {}
  ComScope(const ComScope&) = delete;
  ComScope& operator=(const ComScope&) = delete;
  ~ComScope() {
    if (SUCCEEDED(mResult)) CoUninitialize();
  }

 private:
  HRESULT mResult;
};

// Releases its interface in the destructor. It must not outlive the ComScope that it was made in.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(const ComPtr&) = delete;
  ComPtr& operator=(const ComPtr&) = delete;
  ~ComPtr() {
    if (mPtr) mPtr->Release();
  }
  Interface* operator->() const { return mPtr; }
  void** Put() { return reinterpret_cast<void**>(&mPtr); }

 private:
  Interface* mPtr = nullptr;
};
