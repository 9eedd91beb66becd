#pragma once
// Shows the setup's help file through the HTML Help control, loaded at run time.
#include <windows.h>

// Topic id as compiled into the help file (the dialog's id). Nothing happens when the file is missing.
void ShowHelp(HWND owner, unsigned topic);
