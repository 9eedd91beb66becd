#pragma once
// Answers dialogs and boxes from a second thread while the test's thread runs them.
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>
#include <thread>

#include "support/wait.h"

// The caption as the system keeps it: asking the window would wait for its thread.
inline std::string CaptionOf(HWND window) {
  wchar_t wide[256] = L"";
  char text[256] = "";
  InternalGetWindowText(window, wide, 256);
  WideCharToMultiByte(CP_ACP, 0, wide, -1, text, sizeof text, nullptr, nullptr);
  return text;
}

inline bool IsOwnDialog(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  char kind[16] = "";
  GetClassNameA(window, kind, sizeof kind);
  return process == GetCurrentProcessId() && std::string(kind) == "#32770" && IsWindowVisible(window);
}

struct DialogSearch {
  std::string caption;
  HWND found = nullptr;
  int count = 0;
  std::string captions;  // of all, for messages
};

inline BOOL CALLBACK SearchDialog(HWND window, LPARAM param) {
  auto* search = reinterpret_cast<DialogSearch*>(param);
  if (!IsOwnDialog(window)) return TRUE;
  ++search->count;
  search->captions += "\"" + CaptionOf(window) + "\" ";
  if (!search->found && IsWindowEnabled(window) && CaptionOf(window) == search->caption)
    search->found = window;
  return TRUE;
}

// The visible, enabled dialog or box of this process with that caption; null when there is none.
inline HWND FindDialog(const std::string& caption) {
  DialogSearch search;
  search.caption = caption;
  EnumWindows(SearchDialog, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

// Counts the visible dialogs and boxes of this process.
inline int VisibleDialogs() {
  DialogSearch search;
  EnumWindows(SearchDialog, reinterpret_cast<LPARAM>(&search));
  return search.count;
}

inline void Press(HWND dialog, int id, int notification = BN_CLICKED) {
  PostMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, notification)),
               reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)));
}

// Captions of the visible dialogs and boxes of this process.
inline std::string DialogCaptions() {
  DialogSearch search;
  EnumWindows(SearchDialog, reinterpret_cast<LPARAM>(&search));
  return search.captions;
}

inline BOOL CALLBACK EndOneDialog(HWND window, LPARAM) {
  if (IsOwnDialog(window)) EndDialog(window, -99);
  return TRUE;
}

// Waits for the dialog and lets `act` answer it. When it does not come or stays afterwards, all dialogs are
// ended with -99, so that a failed test does not hang. The destructor waits for all this and fails the test
// in these cases.
class Answerer {
 public:
  Answerer(std::string caption, std::function<void(HWND)> act)
      : mThread([this, caption = std::move(caption), act = std::move(act)] {
          HWND dialog = nullptr;
          mCame = WaitUntil([&] { return (dialog = FindDialog(caption)) != nullptr; });
          if (mCame) {
            act(dialog);
            mWent = WaitUntil([&] { return !IsWindow(dialog); });
          }
          if (mWent) return;
          mLeft = DialogCaptions();
          EnumWindows(EndOneDialog, 0);
        }) {}
  Answerer(const Answerer&) = delete;
  Answerer& operator=(const Answerer&) = delete;
  ~Answerer() {
    mThread.join();
    EXPECT_TRUE(mCame) << "the dialog never came; there were: " << mLeft;
    EXPECT_TRUE(!mCame || mWent) << "the dialog stayed; there were: " << mLeft;
  }

 private:
  bool mCame = false;
  bool mWent = false;
  std::string mLeft;
  std::thread mThread;  // last: it uses the others
};
