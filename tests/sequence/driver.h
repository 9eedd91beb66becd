#pragma once
// Drives the dialogs and boxes of a running Setup.exe by the ids of their controls; every wait is bounded.
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/process.h"
#include "support/setup_run.h"
#include "support/wait.h"

// Texts of a message box: its one text control.
constexpr int kBoxText = 0xFFFF;

class SetupDriver {
 public:
  SetupDriver(const SetupRun& setup, const std::string& args)
      : mSetup(setup), mChild(setup.Start(args)), mProcess(mChild->Id()) {
    if (!mChild->Started()) ADD_FAILURE() << "Setup.exe does not start";
  }
  SetupDriver(const SetupRun& setup, const std::string& folder, const std::string& args)
      : mSetup(setup), mChild(setup.StartFrom(folder, args)), mProcess(mChild->Id()) {}

  // For a run started by another program: the run is the process that owns the window of that class.
  void FollowWindow(const char* className) {
    HWND window = nullptr;
    if (!WaitUntil([&] { return (window = FindWindowA(className, nullptr)) != nullptr; }, 20000))
      ADD_FAILURE() << "no window of class " << className;
    GetWindowThreadProcessId(window, &mProcess);
  }

  // The enabled, visible window with that control that is in front of the run; null (and a
  // failed test) when none comes.
  HWND WaitFor(int controlId) {
    HWND found = nullptr;
    const bool came = WaitUntil([&] { return (found = Find(controlId)) != nullptr; }, 20000);
    EXPECT_TRUE(came) << "no window with control " << controlId << "; there are: " << Captions();
    return found;
  }
  // A message box whose text holds `part`.
  HWND WaitForBox(const std::string& part) {
    HWND found = nullptr;
    const bool came = WaitUntil(
        [&] {
          found = Find(kBoxText);
          return found != nullptr && Text(found, kBoxText).find(part) != std::string::npos;
        },
        20000);
    EXPECT_TRUE(came) << "no box with the text " << part << "; there are: " << Captions();
    return came ? found : nullptr;
  }
  // Waits for the box, takes its caption, and answers it.
  std::string AnswerBox(const std::string& part, int button = IDOK) {
    const HWND box = WaitForBox(part);
    const std::string caption = box != nullptr ? Caption(box) : "";
    if (box != nullptr) PressAndWait(box, button);
    return caption;
  }
  void PressAndWait(HWND window, int id) {
    Press(window, id);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(window) || !IsWindowVisible(window); }, 20000))
        << "the window stays: " << Captions();
  }
  static void Press(HWND window, int id) {
    PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, BN_CLICKED)),
                 reinterpret_cast<LPARAM>(GetDlgItem(window, id)));
  }
  static void Click(HWND window, int id) { Send(GetDlgItem(window, id), BM_CLICK, 0, 0); }
  static bool IsChecked(HWND window, int id) {
    return Send(GetDlgItem(window, id), BM_GETCHECK, 0, 0) == BST_CHECKED;
  }
  static void SetText(HWND window, int id, const std::string& text) {
    Send(GetDlgItem(window, id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
  }
  static std::string Text(HWND window, int id) {
    const HWND control = GetDlgItem(window, id);
    if (control == nullptr) return "";
    char text[4096] = "";
    Send(control, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
    return text;
  }
  static std::string Caption(HWND window) {
    char text[512] = "";
    GetWindowTextA(window, text, sizeof text);
    return text;
  }
  // The run's window of that class, visible or not.
  HWND FindClass(const char* className) {
    Search search = {mProcess, 0, className, false, nullptr, ""};
    EnumWindows(Visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
  }
  // Captions of all visible windows of the run.
  std::string Captions() {
    Search search = {mProcess, -2, nullptr, true, nullptr, ""};
    EnumWindows(Visit, reinterpret_cast<LPARAM>(&search));
    return search.captions.empty() ? "(none)" : search.captions;
  }

  RunOutcome End() { return mSetup.Outcome(*mChild, 30000); }
  ChildProcess& Child() { return *mChild; }

 private:
  struct Search {
    DWORD process;
    int control;
    const char* className;
    bool visibleOnly;
    HWND found;
    std::string captions;
  };

  static LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DWORD_PTR result = 0;
    if (!SendMessageTimeoutA(window, message, wParam, lParam, SMTO_NORMAL, 10000, &result)) return 0;
    return static_cast<LRESULT>(result);
  }
  static BOOL CALLBACK Visit(HWND window, LPARAM param) {
    auto* search = reinterpret_cast<Search*>(param);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search->process) return TRUE;
    if (search->visibleOnly && !IsWindowVisible(window)) return TRUE;
    search->captions += "\"" + Caption(window) + "\" ";
    if (search->className != nullptr) {
      char name[64] = "";
      GetClassNameA(window, name, sizeof name);
      if (std::string(name) != search->className) return TRUE;
    } else if (!IsWindowEnabled(window) || GetDlgItem(window, search->control) == nullptr) {
      return TRUE;
    }
    search->found = window;
    return FALSE;
  }
  HWND Find(int controlId) {
    Search search = {mProcess, controlId, nullptr, true, nullptr, ""};
    EnumWindows(Visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
  }

  const SetupRun& mSetup;
  std::unique_ptr<ChildProcess> mChild;
  DWORD mProcess;
};
