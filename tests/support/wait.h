#pragma once
// Waiting for a condition instead of for a time.
#include <windows.h>

// Asks every 10 ms until `condition` is true or the time is over. Says whether it became true.
template <class Condition>
bool WaitUntil(Condition condition, DWORD timeoutMs = 10000) {
  const DWORD start = GetTickCount();
  while (!condition()) {
    if (GetTickCount() - start >= timeoutMs) return false;
    Sleep(10);
  }
  return true;
}
