#pragma once
// Self-registration of a library.

// Calls "DllRegisterServer", or "DllUnregisterServer", of the library at a full path. False when it cannot be
// loaded, lacks the function, or reports a failure.
[[nodiscard]] bool CallDllRegistration(const char* path, bool install);
