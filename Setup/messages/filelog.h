#pragma once
// File operations that leave a line in the log.

// Logs "Copying <Source> to <Dest>" and copies, overwriting.
[[nodiscard]] bool LoggedCopy(const char* source, const char* dest);
// Deletes and logs the outcome.
bool LoggedDelete(const char* path);
// Deletes a file that may be missing; only one that stays is logged.
void DeleteIfThere(const char* path);
// Logs "Deleting <PathName>, result = <Result>", a failure as an error.
void LogDeletion(const char* path, bool deleted);
