#pragma once
// Keeps Windows from showing a box of its own while a drive without medium is asked or a library misses one
// of its own libraries; the call then simply fails.
#include <windows.h>

class CriticalErrorGuard {
 public:
  CriticalErrorGuard() : mOldMode(SetErrorMode(SEM_FAILCRITICALERRORS)) {
    SetErrorMode(mOldMode | SEM_FAILCRITICALERRORS);
  }
  CriticalErrorGuard(const CriticalErrorGuard&) = delete;
  CriticalErrorGuard& operator=(const CriticalErrorGuard&) = delete;
  ~CriticalErrorGuard() { SetErrorMode(mOldMode); }

 private:
  UINT mOldMode;
};
