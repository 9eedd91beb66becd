#pragma once
// The equation-server conversion manager (dialogs 2000 and 2100).
#include <windows.h>

// Lists all equation servers and opens the manager over them; nothing in a silent run.
void RunConversionManager(HWND owner);
