#pragma once
// What every dialog uses: the main window, texts filled from variables, centring, the message pump.
#include <windows.h>

#include "messages/varlist.h"

// The program's main (background) window, owner of all boxes; null until it exists. Set by start-up.
void SetMainWindow(HWND window);
HWND MainWindow();

// Expands the window's text (and those of its children) from the list.
void FillWindowTexts(HWND window, const VarList& vars, bool withChildren);
// Centres on the owner, else on the screen's work area.
void CentreWindow(HWND window);
// Centres on the screen's work area whoever owns the window.
void CentreOnScreen(HWND window);
// The loaded dialog template (borrowed from the module), from the language library, else from the program;
// null when neither has it.
HGLOBAL LoadDialogTemplate(unsigned id);
// Runs a modal dialog from the language library's resources; -1 when it cannot be created. In a silent run no
// dialog is ever created.
INT_PTR RunDialog(unsigned id, HWND owner, DLGPROC proc, LPARAM param);
// Null when it cannot be created, and in a silent run.
HWND CreateModelessDialog(unsigned id, HWND owner, DLGPROC proc, LPARAM param);
// Text of a window or of a dialog's control, any length.
Str WindowText(HWND window);
Str GetControlText(HWND dialog, int id);
// Dispatches all waiting messages of the thread (dialog keys included). A WM_QUIT is put back.
void PumpMessages();
// The modeless dialog whose keyboard messages PumpMessages handles; null for none.
void SetModelessDialog(HWND dialog);
// Dispatches messages for `milliseconds`.
void PumpFor(DWORD milliseconds);
// Waits without limit for a handle while dispatching messages.
void PumpUntilSignalled(HANDLE handle);
