#pragma once
// Drives the windows of a Setup.exe that runs beside the test: by control id, or with real keys where the
// keyboard is the subject. Every wait ends with a condition or after kPatience; after the first wait in vain
// all others fail at once, so that a failed test ends soon.
#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "support/process.h"
#include "support/setup_run.h"
#include "support/wait.h"

constexpr DWORD kPatience = 20000;        // ms for a window to come
constexpr DWORD kAnswerPatience = 10000;  // ms for a window to answer

inline std::string CaptionOfWindow(HWND window) {
  // For another process this reads what the system keeps, so that a busy program cannot hold the test up.
  char text[512] = "";
  GetWindowTextA(window, text, sizeof text);
  return text;
}

inline std::string ClassOfWindow(HWND window) {
  char text[64] = "";
  GetClassNameA(window, text, sizeof text);
  return text;
}

// The text of a control of another process, by asking it.
inline std::string AskedText(HWND control) {
  std::string text(4096, '\0');
  DWORD_PTR length = 0;
  if (control == nullptr ||
      !SendMessageTimeoutA(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                           SMTO_NORMAL, kAnswerPatience, &length))
    return "";
  text.resize(length);
  return text;
}

// A dialog, message box or other window of the run. All operations of a null one do nothing: whoever looked
// for it has failed the test already.
class Driven {
 public:
  Driven() = default;
  explicit Driven(HWND window) : mWindow(window) {}

  explicit operator bool() const { return mWindow != nullptr; }
  HWND Window() const { return mWindow; }
  HWND Control(int id) const { return mWindow == nullptr ? nullptr : GetDlgItem(mWindow, id); }
  std::string Caption() const { return mWindow == nullptr ? "" : CaptionOfWindow(mWindow); }
  std::string Text(int id) const { return AskedText(Control(id)); }
  bool Enabled(int id) const { return IsWindowEnabled(Control(id)) != FALSE; }
  bool Visible(int id) const { return IsWindowVisible(Control(id)) != FALSE; }
  bool Checked(int id) const { return Ask(Control(id), BM_GETCHECK) == BST_CHECKED; }
  // The id of the control that has the focus; 0 for none.
  int Focus() const {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    if (mWindow == nullptr || !GetGUIThreadInfo(GetWindowThreadProcessId(mWindow, nullptr), &info)) return 0;
    return info.hwndFocus == nullptr ? 0 : GetDlgCtrlID(info.hwndFocus);
  }

  void Set(int id, const std::string& text) const {
    if (Control(id) == nullptr) return;
    // Seen here, rarely: the first text sent to a window that has just been shown is lost.
    EXPECT_TRUE(WaitUntil(
        [&] {
          DWORD_PTR result = 0;
          SendMessageTimeoutA(Control(id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()), SMTO_NORMAL,
                              kAnswerPatience, &result);
          return Text(id) == text;
        },
        kAnswerPatience));
  }
  // What a click on a button tells its dialog. Posted: the dialog may end, or open another one.
  void Press(int id) const {
    if (mWindow == nullptr) return;
    EXPECT_NE(Control(id), nullptr) << "no control " << id << " in " << Caption();
    PostMessageA(mWindow, WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, BN_CLICKED)),
                 reinterpret_cast<LPARAM>(Control(id)));
  }
  // A click on a check box or radio button, which changes it.
  void Click(int id) const { Ask(Control(id), BM_CLICK); }
  void Close() const {
    if (mWindow != nullptr) PostMessageA(mWindow, WM_CLOSE, 0, 0);
  }
  void WaitGone() const {
    if (mWindow == nullptr) return;
    EXPECT_TRUE(WaitUntil([this] { return !IsWindow(mWindow) || !IsWindowVisible(mWindow); }, kPatience))
        << "stays: " << Caption();
  }
  // Presses it and waits until the window is gone.
  void End(int id) const {
    Press(id);
    WaitGone();
  }

  // ---- the keyboard ----

  // Brings the window to the front and presses the keys one after the other. They are taken in this order,
  // but perhaps after this returns: wait for what they do.
  void Keys(const std::vector<WORD>& keys) const {
    if (!ToFront()) return;
    for (const WORD key : keys) PressKeys({key});
  }
  // Alt with a key, such as a mnemonic.
  void AltKey(WORD key) const {
    if (ToFront()) PressKeys({VK_MENU, key});
  }
  // Types letters and digits.
  void Type(const std::string& text) const {
    if (!ToFront()) return;
    for (const char ch : text) {
      const SHORT code = VkKeyScanA(ch);
      const WORD key = LOBYTE(code);
      if ((HIBYTE(code) & 1) != 0) {
        PressKeys({VK_SHIFT, key});
      } else {
        PressKeys({key});
      }
    }
  }
  void WaitFocus(int id) const {
    if (mWindow == nullptr) return;
    EXPECT_TRUE(WaitUntil([&] { return Focus() == id; }, kAnswerPatience))
        << "the focus is on " << Focus() << ", not on " << id;
  }

 private:
  static LRESULT Ask(HWND window, UINT message) {
    DWORD_PTR result = 0;
    if (window != nullptr) SendMessageTimeoutA(window, message, 0, 0, SMTO_NORMAL, kAnswerPatience, &result);
    return static_cast<LRESULT>(result);
  }
  bool ToFront() const {
    if (mWindow == nullptr) return false;
    if (GetForegroundWindow() == mWindow) return true;
    SetForegroundWindow(mWindow);
    const bool front = WaitUntil([this] { return GetForegroundWindow() == mWindow; }, kAnswerPatience);
    EXPECT_TRUE(front) << "does not come to the front: " << Caption();
    return front;
  }
  // Holds all but the last key while it is pressed.
  void PressKeys(const std::vector<WORD>& keys) const {
    std::vector<INPUT> inputs;
    for (const WORD key : keys) Add(inputs, key, 0);
    for (size_t i = keys.size(); i > 0; --i) Add(inputs, keys[i - 1], KEYEVENTF_KEYUP);
    EXPECT_EQ(SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)), inputs.size());
  }
  static void Add(std::vector<INPUT>& inputs, WORD key, DWORD flags) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(key, 0));
    input.ki.dwFlags = flags;
    inputs.push_back(input);
  }

  HWND mWindow = nullptr;
};

// A run of Setup.exe whose windows the test answers.
class GuiRun {
 public:
  GuiRun(const SetupRun& setup, const std::string& args) : GuiRun(setup, setup.Source(), args) {}
  GuiRun(const SetupRun& setup, const std::string& folder, const std::string& args)
      : mSetup(setup), mChild(setup.StartFrom(folder, args)) {}
  // For a run that a launcher starts: its windows are looked for in all programs but the test.
  void LookEverywhere() { mAnyProcess = true; }

  DWORD Id() const { return mChild->Id(); }
  bool Alive() const { return !mChild->WaitForExit(0); }

  // Waits for the enabled, visible window that has this control.
  Driven Dialog(int control) {
    return Wait("the dialog with control " + std::to_string(control),
                [control](HWND window) { return GetDlgItem(window, control) != nullptr; });
  }
  // The same for a window that a question on top of it keeps disabled.
  Driven Behind(int control) {
    return Wait(
        "the window with control " + std::to_string(control),
        [control](HWND window) { return GetDlgItem(window, control) != nullptr; }, false);
  }
  // Waits for the message box whose text holds `part`.
  Driven Box(const std::string& part) {
    return Wait("the message \"" + part + "\"",
                [&part](HWND window) { return BoxText(window).find(part) != std::string::npos; });
  }
  // Waits for a message box and answers it.
  void Answer(const std::string& part, int button) { Box(part).End(button); }
  // A window of that class, shown or not; null when there is none.
  HWND OfClass(const std::string& name) const {
    return Find([&name](HWND window) { return ClassOfWindow(window) == name; }, false, false);
  }
  // The visible window with that control, if it is there now.
  Driven Now(int control) const {
    return Driven(
        Find([control](HWND window) { return GetDlgItem(window, control) != nullptr; }, true, false));
  }
  // Waits for anything else, as long as the run goes on.
  template <class Condition>
  bool Until(const std::string& what, Condition condition) {
    if (mBroken) return false;
    bool alive = true;
    const bool reached =
        WaitUntil([&] { return condition() || !(alive = Alive()); }, kPatience) && condition();
    if (reached) return true;
    mBroken = true;
    ADD_FAILURE() << what << (alive ? " does not come" : ": the run ended before")
                  << "; there are: " << ListWindows();
    return false;
  }

  // Waits for the end of the run.
  RunOutcome End(DWORD timeoutMs = 60000) {
    if (mBroken) mChild->Kill();
    return mSetup.Outcome(*mChild, timeoutMs);
  }

  static std::string BoxText(HWND window) {
    if (ClassOfWindow(window) != "#32770") return "";
    std::string text;
    for (HWND child = nullptr; (child = FindWindowExA(window, child, "Static", nullptr)) != nullptr;)
      text += AskedText(child) + "\n";
    return text;
  }

 private:
  template <class Match>
  struct Search {
    DWORD process;  // 0: any but this one
    bool shown;
    bool enabled;
    const Match& match;
    HWND found;
    std::string list;
  };
  template <class Match>
  static BOOL CALLBACK Try(HWND window, LPARAM param) {
    auto& search = *reinterpret_cast<Search<Match>*>(param);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const bool wanted = search.process != 0 ? process == search.process : process != GetCurrentProcessId();
    if (!wanted || (search.shown && !IsWindowVisible(window)) || (search.enabled && !IsWindowEnabled(window)))
      return TRUE;
    if (!search.match(window)) return TRUE;
    search.found = window;
    return FALSE;
  }
  template <class Match>
  HWND Find(const Match& match, bool shown, bool enabled) const {
    Search<Match> search = {mAnyProcess ? 0 : mChild->Id(), shown, enabled, match, nullptr, ""};
    EnumWindows(Try<Match>, reinterpret_cast<LPARAM>(&search));
    return search.found;
  }
  template <class Match>
  Driven Wait(const std::string& what, const Match& match, bool enabled = true) {
    HWND found = nullptr;
    Until(what, [&] { return (found = Find(match, true, enabled)) != nullptr; });
    return Driven(found);
  }
  std::string ListWindows() const {
    std::string list;
    Find(
        [&list](HWND window) {
          list +=
              "[" + ClassOfWindow(window) + " \"" + CaptionOfWindow(window) + "\" " + BoxText(window) + "] ";
          return false;
        },
        true, false);
    return list;
  }

  const SetupRun& mSetup;
  std::unique_ptr<ChildProcess> mChild;
  bool mAnyProcess = false;
  bool mBroken = false;
};
