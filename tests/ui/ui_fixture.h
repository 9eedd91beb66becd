#pragma once
// What the tests of the user interface start from: known variables, an open log that can be read back, and
// nothing left of former tests' windows, titles and libraries.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "base/handle.h"
#include "base/runstate.h"
#include "messages/logfile.h"
#include "messages/res.h"
#include "messages/varlist.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/temp_dir.h"
#include "ui/dlog.h"
#include "ui/err.h"
#include "ui/langload.h"

class UiTest : public testing::Test {
 protected:
  void SetUp() override {
    Reset();
    AppSetVariable("AppName", "Veltrane");
    AppSetVariable("MajVersion", "6");
    AppSetVariable("SetupName", "Installation de Veltrane 6.0c");
    AppSetVariable("ShortAppKey", "VT");
    ASSERT_TRUE(OpenLog(mDir.Path().c_str(), "test.log"));
    mHeader = mDir.Read("test.log").size();
  }
  void TearDown() override {
    Reset();  // without the variables that form its final name the log keeps its own
    CloseAndRenameLog();
  }

  // What was logged since the start or the last call, with plain line feeds.
  std::string Log() {
    const std::string all = mDir.Read("test.log");
    std::string text;
    for (size_t i = mHeader; i < all.size(); ++i)
      if (all[i] != '\r') text += all[i];
    mHeader = all.size();
    return text;
  }
  static void BeSilent() { ::Run().setupFlags |= kQuiet; }

  TempDir mDir;

 private:
  static void Reset() {
    FreeLanguageLibrary();
    SetProgramModule(nullptr);
    SetMainWindow(nullptr);
    SetModelessDialog(nullptr);
    ResetMessageTitles();
    AppVars().Clear();
  }
  size_t mHeader = 0;
};

// A plain top-level window of this thread.
class TestWindow {
 public:
  explicit TestWindow(const char* caption, int x = 100, int y = 80, int width = 400, int height = 300,
                      bool shown = true)
      : mWindow(CreateWindowExA(0, "#32770", caption, WS_OVERLAPPEDWINDOW | (shown ? WS_VISIBLE : 0), x, y,
                                width, height, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr)) {}
  HWND Get() const { return mWindow.Get(); }
  // An edit field or another control on it.
  HWND Add(const char* kind, const char* text, int id, DWORD style = 0) {
    return CreateWindowExA(0, kind, text, WS_CHILD | WS_VISIBLE | style, 10, 10, 200, 20, Get(),
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleA(nullptr),
                           nullptr);
  }

 private:
  WindowHandle mWindow;
};

inline std::string TextOf(HWND window) {
  std::string text(static_cast<size_t>(SendMessageA(window, WM_GETTEXTLENGTH, 0, 0)) + 1, '\0');
  text.resize(static_cast<size_t>(
      SendMessageA(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}
