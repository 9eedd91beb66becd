#pragma once
// Unbuffered file access by handle, with small integer result codes.
#include <cstdint>

#include "base/handle.h"
#include "base/str.h"

enum FioMode : int32_t { fioREAD = 0, fioWRITE = 1, fioREADWRITE = 2, fioWRITE_TRUNC = 3 };

enum FioResult : int32_t {
  fioOK = 0,
  fioEOF = 1,  // nothing was read
  fioNOT_FOUND = 2,
  fioEXISTS = 3,
  fioOPEN_FAILED = 4,
  fioIO_ERROR = 8,
};

struct FioFile {
  FileHandle handle;
};

[[nodiscard]] FioResult FioOpen(const char* path, FioMode mode, FioFile& file);
[[nodiscard]] FioResult FioCreate(const char* path, FioMode mode, FioFile& file);
FioResult FioClose(FioFile& file);
// Reads up to `count` bytes; `got`, when given, receives how many. Nothing read: fioEOF.
// A failure tells the user.
[[nodiscard]] FioResult FioRead(FioFile& file, uint32_t count, void* buffer, uint32_t* got = nullptr);
[[nodiscard]] FioResult FioWrite(FioFile& file, uint32_t count, const void* buffer);
// Reads one line (or a piece of maxlen - 1 bytes of a longer one), terminated, without its line end.
[[nodiscard]] FioResult FioReadLine(FioFile& file, int32_t maxlen, char* buffer);
[[nodiscard]] FioResult FioWriteLine(FioFile& file, const char* text);
[[nodiscard]] FioResult FioSeek(FioFile& file, uint32_t pos);
[[nodiscard]] FioResult FioGetPos(FioFile& file, uint32_t& pos);
[[nodiscard]] FioResult FioSetEOF(FioFile& file, uint32_t len);
[[nodiscard]] FioResult FioGetSize(FioFile& file, uint32_t& size);
