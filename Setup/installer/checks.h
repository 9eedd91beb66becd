#pragma once
// What may stop a run before it changes anything: other programs and other versions.
#include <windows.h>

#include <cstdint>

// The message that asks a running copy of the product to quit; registered once.
UINT QuitIfNotBusyMessage();
// Asks every running copy to quit; true when one stays (it answers anything but 100, or
// not within two seconds).
bool ProductStaysOpen();
// The first newer major version that is installed and has not declared that it
// tolerates this one; 0 for none.
int32_t FindNewerVersion();
// Word or PowerPoint is open.
bool IsOfficeOpen();
// The right to write under the maker's machine key, tried out.
[[nodiscard]] bool CanWriteMachineKey();
