#pragma once
// Every message and question to the user. Each is also logged; in a silent run nothing is shown and a question takes
// its documented default.
#include <windows.h>

#include <cstdint>

#include "base/str.h"

enum Answer : int32_t {
  kAnswerOK = 1,
  kAnswerCancel = 2,
  kAnswerYes = 6,
  kAnswerNo = 7,
  kAnswerYesToAll = 21,
};

// Takes the box titles and the out-of-memory text from resource strings; until then every slot holds "Setup".
void SetMessageTitles(unsigned errorId, unsigned warningId, unsigned plainId, unsigned outOfMemoryId);
const char* ErrorTitle();
const char* WarningTitle();
const char* PlainTitle();

void ShowError(const char* text);
void ShowWarning(const char* text);
void ShowInfo(const char* text);
void ShowPlain(const char* text);
int32_t AskErrorOkCancel(const char* text);
int32_t AskOkCancel(const char* text);
int32_t AskYesNo(const char* text);
int32_t AskYesNoDefaultNo(const char* text);
int32_t AskYesToAll(const char* text);  // never called in a silent run
void ShowOutOfMemory();

// Modeless status dialog; null in a silent run.
HWND ShowStatus(const char* text);
void CloseStatus(HWND dialog);

void ReportInternalError(unsigned msgId, uint32_t code);
// Raised by FatalError after the report; the entry cleans up and ends with exit code 8.
struct FatalExit {};
[[noreturn]] void FatalError(unsigned msgId, uint32_t code);

// Memory set aside at start-up; false (after ShowOutOfMemory) when it cannot be had.
[[nodiscard]] bool AllocateReserve();
void FreeReserve();
