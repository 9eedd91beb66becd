#pragma once
// Windows and machine states that other programs would bring about, made by the test itself.
#include <aclapi.h>
#include <gtest/gtest.h>
#include <sddl.h>
#include <windows.h>

#include <atomic>
#include <string>

#include "base/handle.h"

// A window of a chosen class in a thread of its own, so that it answers while the test waits for a run.
class StandInWindow {
 public:
  static constexpr LRESULT kHangs = -1;  // never answers the quit message

  // `answer`: to the message that asks a running copy to quit.
  explicit StandInWindow(const std::string& className, LRESULT answer = 0)
      : mClass(className), mAnswer(answer) {
    mReady.Reset(CreateEventA(nullptr, TRUE, FALSE, nullptr));
    mRelease.Reset(CreateEventA(nullptr, TRUE, FALSE, nullptr));
    mThread.Reset(CreateThread(nullptr, 0, Main, this, 0, nullptr));
    if (WaitForSingleObject(mReady.Get(), 10000) != WAIT_OBJECT_0 || mWindow == nullptr)
      ADD_FAILURE() << "no window of class " << className;
  }
  ~StandInWindow() {
    SetEvent(mRelease.Get());
    if (mWindow != nullptr) PostMessageA(mWindow, WM_CLOSE, 0, 0);
    if (WaitForSingleObject(mThread.Get(), 10000) != WAIT_OBJECT_0)
      ADD_FAILURE() << "the window's thread stays";
  }
  StandInWindow(const StandInWindow&) = delete;
  StandInWindow& operator=(const StandInWindow&) = delete;

  // How often the window was asked to quit.
  int Asked() const { return mAsked; }
  void Close() { PostMessageA(mWindow, WM_CLOSE, 0, 0); }

 private:
  static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<StandInWindow*>(GetWindowLongA(window, GWL_USERDATA));
    if (self != nullptr && message == self->mQuitMessage) {
      ++self->mAsked;
      if (self->mAnswer == kHangs) WaitForSingleObject(self->mRelease.Get(), 20000);
      return self->mAnswer;
    }
    if (message == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcA(window, message, wParam, lParam);
  }

  static DWORD WINAPI Main(void* parameter) {
    auto* self = static_cast<StandInWindow*>(parameter);
    self->mQuitMessage = RegisterWindowMessageA("WM_QLI_QuitIfNotBusy");
    WNDCLASSA description = {};
    description.lpfnWndProc = Proc;
    description.hInstance = GetModuleHandleA(nullptr);
    description.lpszClassName = self->mClass.c_str();
    RegisterClassA(&description);
    self->mWindow = CreateWindowA(self->mClass.c_str(), "stand-in", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100,
                                  nullptr, nullptr, description.hInstance, nullptr);
    if (self->mWindow != nullptr) SetWindowLongA(self->mWindow, GWL_USERDATA, reinterpret_cast<LONG>(self));
    SetEvent(self->mReady.Get());
    MSG message;
    while (self->mWindow != nullptr && GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
    UnregisterClassA(self->mClass.c_str(), description.hInstance);
    return 0;
  }

  std::string mClass;
  LRESULT mAnswer;
  UINT mQuitMessage = 0;
  std::atomic<int> mAsked = 0;
  HWND mWindow = nullptr;
  KernelHandle mReady;
  KernelHandle mRelease;
  KernelHandle mThread;
};

// Forbids writing to a key for the object's life; the key is created when missing.
class DeniedKey {
 public:
  DeniedKey(HKEY root, const std::string& path) {
    RegCreateKeyExA(root, path.c_str(), 0, nullptr, 0, KEY_READ | WRITE_DAC, nullptr, mKey.Put(), nullptr);
    SetAccess("D:P(A;;KR;;;WD)");
  }
  ~DeniedKey() { SetAccess("D:P(A;;KA;;;WD)"); }
  DeniedKey(const DeniedKey&) = delete;
  DeniedKey& operator=(const DeniedKey&) = delete;

 private:
  void SetAccess(const char* text) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorA(text, SDDL_REVISION_1, &descriptor, nullptr) ||
        RegSetKeySecurity(mKey.Get(), DACL_SECURITY_INFORMATION, descriptor) != ERROR_SUCCESS)
      ADD_FAILURE() << "the access rights cannot be set";
    LocalFree(descriptor);
  }
  KeyHandle mKey;
};
