#pragma once
// Shows the setup's help file through the HTML Help control, loaded at run time.
#include <windows.h>

#include "base/str.h"

// Full path of the help file: HelpFile, below SetupHelpDir unless it is a full path itself; empty when unset.
Str HelpFilePath();
// Topic id as compiled into the help file (the dialog's id). Nothing happens when the file is missing.
void ShowHelp(HWND owner, unsigned topic);
// Closes the help windows and lets the control go; for the end of the run.
void CloseHelp();
