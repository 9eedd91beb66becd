#pragma once
// Every message and question to the user. Each is also logged; in a silent run nothing is shown and a
// question takes its documented default.
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
// Back to "Setup" everywhere.
void ResetMessageTitles();
const char* ErrorTitle();
const char* WarningTitle();
const char* PlainTitle();

// Everywhere: a null text asserts and counts as empty.
void ShowError(const char* text);
void ShowWarning(const char* text);
void ShowInfo(const char* text);
void ShowPlain(const char* text);
// Each returns an Answer, or the system's failure value for a box that could not be
// shown (as the second button).
int32_t AskErrorOkCancel(const char* text);
int32_t AskOkCancel(const char* text);
int32_t AskYesNo(const char* text);
int32_t AskYesNoDefaultNo(const char* text);
// Callers do not ask this in a silent run; should one do so all the same, the answer is Yes.
int32_t AskYesToAll(const char* text);
void ShowOutOfMemory();

// Modeless status dialog; null in a silent run.
HWND ShowStatus(const char* text);
void CloseStatus(HWND dialog);

// Logs the code and shows message `msgId` with "<ErrMsg>" filled by the text whose id the code is.
void ReportInternalError(unsigned msgId, uint32_t code);
// Reports likewise and stops the run: what the entry's hook does then ends the process with exit code 8.
[[noreturn]] void FatalError(unsigned msgId, uint32_t code);

// Memory set aside at start-up; false (after ShowOutOfMemory) when it cannot be had.
[[nodiscard]] bool AllocateReserve();
void FreeReserve();
