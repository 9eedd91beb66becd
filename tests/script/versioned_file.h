#pragma once
// Source files for the install tests: libraries of a chosen version, type and language.
#include <windows.h>

#include <string>

#include "support/files.h"
#include "support/library_maker.h"

struct FileVersion {
  unsigned major = 1;
  unsigned minor = 0;
  DWORD type = VFT_DLL;
  unsigned language = 0x040C;
};

// Makes a library of that version; `tail` is appended so that files can be told apart.
inline void MakeVersionedFile(const std::string& path, const FileVersion& version,
                              const std::string& tail = "") {
  LibrarySpec spec;
  spec.fileVersion = {version.major, version.minor, 0, 0};
  spec.productVersion = spec.fileVersion;
  spec.fileType = version.type;
  spec.translations = {{version.language, 1252}};
  WriteWholeFile(path, MakeLibrary(spec) + tail);
}
