#pragma once
// File operations that leave a line in the log.

// Logs "Copying <Source> to <Dest>" and copies, overwriting.
[[nodiscard]] bool LoggedCopy(const char* source, const char* dest);
// Deletes and logs "Deleting <PathName>, result = <Result>", a failure as an error.
bool LoggedDelete(const char* path);
// Deletes a file that may be missing; only one that stays is logged, as above.
void DeleteIfThere(const char* path);
