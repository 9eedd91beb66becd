#pragma once
// The background window: fills the screen behind all dialogs and owns them.
#include <windows.h>

// Registers the class "VT6InstallWin" and creates the window, hidden; false when Windows refuses (a session
// without a desktop). The window becomes the program's main window.
[[nodiscard]] bool CreateBackgroundWindow(HINSTANCE instance);
void ShowBackgroundWindow();
// Asserts when there is no window or it cannot be destroyed.
void DestroyBackgroundWindow();
