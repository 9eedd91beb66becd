#include "installer/installw.h"

#include <gtest/gtest.h>

#include "messages/app_vars.h"
#include "support/assert_recorder.h"
#include "ui/dlog.h"

namespace {

class BackgroundWindow : public AppVarsTest {
 protected:
  void SetUp() override {
    AppVarsTest::SetUp();
    AppSetVariable("SetupName", "Installation de <AppName>");
    AppSetVariable("AppName", "Veltrane");
    AppSetVariable("BackgroundText", "<AppName> 6");
  }
};

TEST_F(BackgroundWindow, ClassCaptionAndStyle) {
  ASSERT_TRUE(CreateBackgroundWindow(GetModuleHandleA(nullptr)));
  const HWND window = MainWindow();
  ASSERT_NE(window, nullptr);
  char text[64] = "";
  GetClassNameA(window, text, sizeof text);
  EXPECT_STREQ(text, "VT6InstallWin");
  GetWindowTextA(window, text, sizeof text);
  EXPECT_STREQ(text, "Installation de Veltrane");
  constexpr DWORD kStyle = WS_DISABLED | WS_MAXIMIZE | WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU |
                           WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
  EXPECT_EQ(static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)) & kStyle, kStyle);
  EXPECT_FALSE(IsWindowVisible(window));
  EXPECT_EQ(GetClassLongA(window, GCL_HCURSOR),
            reinterpret_cast<LONG>(LoadCursorA(nullptr, MAKEINTRESOURCEA(32512))));
  EXPECT_NE(GetClassLongA(window, GCL_HICON), 0);
  DestroyBackgroundWindow();
  EXPECT_EQ(MainWindow(), nullptr);
  EXPECT_FALSE(IsWindow(window));
}

TEST_F(BackgroundWindow, ShownMaximisedAndPainted) {
  ASSERT_TRUE(CreateBackgroundWindow(GetModuleHandleA(nullptr)));
  const HWND window = MainWindow();
  ShowBackgroundWindow();
  EXPECT_TRUE(IsWindowVisible(window));
  EXPECT_TRUE(IsZoomed(window));
  EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE));
  DestroyBackgroundWindow();
}

TEST_F(BackgroundWindow, ClosingItDoesNothing) {
  ASSERT_TRUE(CreateBackgroundWindow(GetModuleHandleA(nullptr)));
  const HWND window = MainWindow();
  ShowBackgroundWindow();
  SendMessageA(window, WM_CLOSE, 0, 0);
  SendMessageA(window, WM_SYSCOMMAND, SC_CLOSE, 0);
  EXPECT_TRUE(IsWindow(window));
  EXPECT_TRUE(IsWindowVisible(window));
  DestroyBackgroundWindow();
  EXPECT_FALSE(IsWindow(window));
}

TEST_F(BackgroundWindow, DestroyingNothingAsserts) {
  AssertRecorder recorder;
  DestroyBackgroundWindow();
  EXPECT_EQ(recorder.Only(), "Cannot destroy the MainWin window!");
}

}  // namespace
