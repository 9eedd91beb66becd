#pragma once
// The progress window (dialog 1600) with its two-coloured meter; also reports progress to the machine's
// registry store. In a silent run only the window is missing.
#include <windows.h>

#include <cstdint>

void ShowProgressWindow();
void CloseProgressWindow();
bool IsProgressWindowShown();
// Shows and logs a text; while installing also written as "SetupMsg".
void SetProgressText(const char* text);
// While installing also written as "SetupPercent". The meter is not drawn for a negative value.
void SetPercentage(int32_t percent);
void ClearMeter();
// Draws the meter into `rect`; -1 = cleared.
void DrawMeter(HDC dc, const RECT& rect, int32_t percent);
