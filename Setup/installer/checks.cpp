#include "installer/checks.h"

#include <cstring>

#include "base/ascii.h"
#include "base/str.h"
#include "messages/format.h"
#include "messages/varlist.h"
#include "platform/WinRegistry.h"

namespace {

constexpr char kProductClassPrefix[] = "MainVTWin";
constexpr size_t kProductClassPrefixLen = sizeof kProductClassPrefix - 1;
constexpr DWORD_PTR kQuitting = 100;   // a copy's answer that it is quitting
constexpr UINT kAnswerTimeout = 2000;  // ms
constexpr int32_t kNewerVersionsTried = 3;
constexpr int32_t kLargestVersion = 9999;

constexpr char kMakerKey[] = "HKEY_LOCAL_MACHINE\\Software\\Quorvale";
constexpr char kTestValue[] = "TestKey";

constexpr const char* kOfficeClasses[] = {"OpusApp",        "PP8FrameClass",  "PP9FrameClass",
                                          "PP10FrameClass", "PP11FrameClass", "PP12FrameClass"};

// Asks every copy, also behind one that stays: each that quits is one less for the user to close.
BOOL CALLBACK CheckWindow(HWND window, LPARAM param) {
  char className[64];
  if (GetClassNameA(window, className, sizeof className) == 0) return TRUE;
  if (std::strncmp(className, kProductClassPrefix, kProductClassPrefixLen) != 0) return TRUE;
  DWORD_PTR answer = 0;
  const LRESULT sent =
      SendMessageTimeoutA(window, QuitIfNotBusyMessage(), 0, 0, SMTO_ABORTIFHUNG, kAnswerTimeout, &answer);
  if (sent == 0 || answer != kQuitting) *reinterpret_cast<bool*>(param) = true;
  return TRUE;
}

// A version number made of digits only; 0 for anything else.
int32_t VersionNumber(const Str& text) {
  int32_t number = 0;
  for (const char ch : text.View()) {
    if (!IsAsciiDigit(ch)) return 0;
    number = number * 10 + (ch - '0');
    if (number > kLargestVersion) return 0;
  }
  return number;
}

bool Tolerates(KWinRegistry& newerKey, int32_t version) {
  Str value;
  return newerKey.GetValue(Message("KVRX<ver>", kTemplateLiteral).With("ver", version), value) &&
         value == "1";
}

}  // namespace

UINT QuitIfNotBusyMessage() {
  static const UINT message = RegisterWindowMessageA("WM_QLI_QuitIfNotBusy");
  return message;
}

bool ProductStaysOpen() {
  bool stays = false;
  EnumWindows(CheckWindow, reinterpret_cast<LPARAM>(&stays));
  return stays;
}

int32_t FindNewerVersion() {
  const int32_t version = VersionNumber(AppGetExpanded("MajVersion"));
  if (version == 0) return 0;
  for (int32_t newer = version + 1; newer <= version + kNewerVersionsTried; ++newer) {
    KWinRegistry key;
    const Message path =
        Message("<Maker>\\KVRX<n>", kTemplateLiteral).With("Maker", kMakerKey).With("n", newer);
    if (key.OpenRooted(path, wrRead) && !Tolerates(key, version)) return newer;
  }
  return 0;
}

bool IsOfficeOpen() {
  for (const char* className : kOfficeClasses)
    if (FindWindowA(className, nullptr) != nullptr) return true;
  return false;
}

bool CanWriteMachineKey() {
  KWinRegistry key;
  if (!key.OpenRooted(kMakerKey, wrWrite)) return false;
  return key.SetValue(kTestValue, "1") && key.DeleteValue(kTestValue);
}
