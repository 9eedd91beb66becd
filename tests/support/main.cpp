// The entry of every test program.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <ole2.h>
#include <shlobj.h>
#include <windows.h>

#include "base/handle.h"
#include "base/hooks.h"
#include "base/runstate.h"
#include "support/heap_check.h"
#include "support/leak_check.h"
#include "support/stopped.h"

namespace {

void FailTest(const char* text, const char* file, int line) {
  ADD_FAILURE_AT(file, line) << "unexpected assertion: " << text;
}

// Each test starts with the state of a program that has just been started.
class FreshState : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override {
    HookTable hooks = {};
    hooks.assertFailed = FailTest;
    hooks.memoryExhausted = ThrowMemError;
    hooks.fatalError = ThrowFatalStop;
    SetHooks(hooks);
    Run() = RunState{};
    SetLastError(0);
  }
};

// Answers the box that WarmUp shows.
void CALLBACK EndBox(HWND, UINT, UINT_PTR timer, DWORD) {
  const HWND box = FindWindowA("#32770", "Warming up");
  if (!box) return;
  KillTimer(nullptr, timer);
  PostMessageA(box, WM_COMMAND, IDOK, 0);
}

// What the system opens at first use and keeps is opened here, so that it does not count as a test's leak.
void WarmUp() {
  for (HKEY root :
       {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER, HKEY_CLASSES_ROOT, HKEY_USERS, HKEY_CURRENT_CONFIG}) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(root, "Software", 0, KEY_READ, &key) == ERROR_SUCCESS) KeyHandle owner(key);
  }
  GetProfileIntA("windows", "none", 0);
  WindowHandle window(
      CreateWindowA("EDIT", "", WS_OVERLAPPEDWINDOW, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr));
  if (window) ShowWindow(window.Get(), SW_SHOW);
  if (window && SetTimer(nullptr, 0, 10, EndBox)) MessageBoxA(nullptr, "", "Warming up", MB_OK);
  LoadCursorA(nullptr, IDC_ARROW);
  LoadIconA(nullptr, IDI_QUESTION);
  // GoogleTest's own watcher thread, started at the first value kept for each thread.
  testing::TestPartResultArray results;
  testing::ScopedFakeTestPartResultReporter reporter(
      testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
  char path[MAX_PATH] = "";
  SHGetSpecialFolderPathA(nullptr, path, CSIDL_FONTS, FALSE);
}

}  // namespace

int main(int argc, char** argv) {
  // A missing drive or a damaged library answers with an error code, not with a box.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  testing::InitGoogleTest(&argc, argv);
  WarmUp();
  testing::UnitTest::GetInstance()->listeners().Append(new LeakCheck);
  testing::UnitTest::GetInstance()->listeners().Append(new HeapCheck);
  testing::UnitTest::GetInstance()->listeners().Append(new FreshState);
  return RUN_ALL_TESTS();
}
