#pragma once
// The system functions that install a file: the version library and the expander of compressed files, both
// loaded at run time from the system folder. Tests put their own in place.
#include <windows.h>

struct VersionApi {
  DWORD(WINAPI* verFindFile)
  (DWORD flags, LPCSTR fileName, LPCSTR winDir, LPCSTR appDir, LPSTR curDir, PUINT curDirLen, LPSTR destDir,
   PUINT destDirLen);
  DWORD(WINAPI* verInstallFile)
  (DWORD flags, LPCSTR srcFile, LPCSTR destFile, LPCSTR srcDir, LPCSTR destDir, LPCSTR curDir, LPSTR tmpFile,
   PUINT tmpFileLen);
  INT(WINAPI* lzOpenFile)(LPSTR fileName, LPOFSTRUCT info, WORD style);
  INT(WINAPI* getExpandedName)(LPSTR source, LPSTR expanded);
  void(WINAPI* lzClose)(INT file);
};

// The functions in force, loaded on first use. Null when a library lacks one.
const VersionApi* GetVersionApi();
// Puts other functions in force, null for the system's; `api` must outlive its use.
void SetVersionApi(const VersionApi* api);
