#pragma once
// Answers a message box of the test's own process from a second thread.
#include <windows.h>

#include <string>

#include "base/handle.h"
#include "support/wait.h"

class BoxDriver {
 public:
  // Waits for the box with this caption, notes what it shows, waits until `readyToAnswer` (if any) is true,
  // and presses the button `answer`.
  BoxDriver(const std::string& caption, int answer, bool (*readyToAnswer)() = nullptr)
      : mCaption(caption), mAnswer(answer), mReady(readyToAnswer) {
    mThread.Reset(CreateThread(nullptr, 0, Run, this, 0, nullptr));
  }
  // Ends the driver: called when the box is closed, or when none is to be expected any more.
  void Finish() {
    mStop = true;
    WaitForSingleObject(mThread.Get(), 30000);
    mThread.Reset();
  }
  ~BoxDriver() { Finish(); }
  BoxDriver(const BoxDriver&) = delete;
  BoxDriver& operator=(const BoxDriver&) = delete;

  bool mShown = false;
  std::string mText;
  bool mTopMost = false;
  bool mHasOwner = true;
  bool mHasYes = false;
  bool mHasNo = false;
  HICON mIcon = nullptr;
  bool mWasReady = false;
  int mBoxes = 0;  // boxes of that caption at the time of the answer

 private:
  static DWORD WINAPI Run(void* self) {
    static_cast<BoxDriver*>(self)->Drive();
    return 0;
  }

  void Drive() {
    HWND box = nullptr;
    const auto isBoxUp = [&] {
      box = FindWindowA("#32770", mCaption.c_str());
      return mStop || (box != nullptr && IsWindowVisible(box) && GetDlgItem(box, 0xFFFF) != nullptr);
    };
    if (!WaitUntil(isBoxUp) || box == nullptr) return;
    mShown = true;
    Note(box);
    mWasReady = mReady == nullptr || WaitUntil(mReady);
    mBoxes = CountBoxes();
    PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(mAnswer), 0);
  }

  void Note(HWND box) {
    char text[4096] = "";
    SendDlgItemMessageA(box, 0xFFFF, WM_GETTEXT, sizeof(text), reinterpret_cast<LPARAM>(text));
    mText = text;
    mTopMost = (GetWindowLongA(box, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
    mHasOwner = GetWindow(box, GW_OWNER) != nullptr;
    mHasYes = GetDlgItem(box, IDYES) != nullptr;
    mHasNo = GetDlgItem(box, IDNO) != nullptr;
    for (HWND part = GetWindow(box, GW_CHILD); part != nullptr; part = GetWindow(part, GW_HWNDNEXT)) {
      char kind[16] = "";
      GetClassNameA(part, kind, sizeof(kind));
      const auto icon =
          reinterpret_cast<HICON>(lstrcmpiA(kind, "static") == 0 ? SendMessageA(part, STM_GETICON, 0, 0) : 0);
      if (icon != nullptr && IsWindowVisible(part)) mIcon = icon;
    }
  }

  int CountBoxes() const {
    int count = 0;
    HWND box = nullptr;
    while ((box = FindWindowExA(nullptr, box, "#32770", mCaption.c_str())) != nullptr) ++count;
    return count;
  }

  std::string mCaption;
  int mAnswer;
  bool (*mReady)();
  KernelHandle mThread;
  volatile bool mStop = false;
};
