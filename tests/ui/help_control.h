#pragma once
// A stand-in for the system's HTML Help control that records what it is asked for.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "support/files.h"
#include "support/process.h"
#include "support/registry_guard.h"
#include "ui/help.h"

// Puts the stand-in in the place of the system's help control while the object lives.
class HelpControl {
 public:
  explicit HelpControl(const std::string& calls) : mCalls(calls) {
    char folder[MAX_PATH] = "";
    GetSystemDirectoryA(folder, sizeof folder);
    mPlace = std::string(folder) + "\\hhctrl.ocx";
    mAside = std::string(folder) + "\\hhctrl.aside";
    mHadOne = MoveFileA(mPlace.c_str(), mAside.c_str());
    EXPECT_TRUE(CopyFileA(HelperPath("hhctrl.dll").c_str(), mPlace.c_str(), TRUE)) << GetLastError();
    SetEnvironmentVariableA("HELP_CALLS", calls.c_str());
    // Wine would take its own control all the same.
    SetRegistryString(HKEY_CURRENT_USER, "Software\\Wine\\DllOverrides", "hhctrl.ocx", "native");
  }
  ~HelpControl() {
    CloseHelp();
    SetEnvironmentVariableA("HELP_CALLS", nullptr);
    DeleteFileA(mPlace.c_str());
    if (mHadOne) {
      EXPECT_TRUE(MoveFileA(mAside.c_str(), mPlace.c_str()));
    }
  }
  void Remove() { DeleteFileA(mPlace.c_str()); }
  // What the control was asked for since the last call.
  std::string Calls() {
    if (!PathExists(mCalls)) return "";
    std::string calls = ReadWholeFile(mCalls);
    DeleteFileA(mCalls.c_str());
    return calls;
  }

 private:
  RegistryValueGuard mOverride{HKEY_CURRENT_USER, "Software\\Wine\\DllOverrides", "hhctrl.ocx"};
  std::string mCalls;
  std::string mPlace;
  std::string mAside;
  bool mHadOne = false;
};
