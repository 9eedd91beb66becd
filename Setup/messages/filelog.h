#pragma once
// File operations that leave a line in the log.

// Logs "Copying <Source> to <Dest>" and copies, overwriting.
[[nodiscard]] bool LoggedCopy(const char* source, const char* dest);
// Deletes and logs "Deleting <PathName>, result = <Result>", a failure as an error.
bool LoggedDelete(const char* path);
