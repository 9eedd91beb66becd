#include "platform/fio.h"

#include <algorithm>

#include "base/assert.h"
#include "base/errormode.h"
#include "base/hooks.h"
#include "platform/fs.h"

namespace {

constexpr uint32_t kPieceSize = 10000;  // bytes of one transfer

struct ModeRow {
  DWORD access;
  DWORD sharing;
  DWORD openDisposition;
};
// By FioMode. A created file is never shared.
constexpr ModeRow kModes[] = {
    {GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING},
    {GENERIC_WRITE, 0, OPEN_EXISTING},
    {GENERIC_READ | GENERIC_WRITE, 0, OPEN_EXISTING},
    {GENERIC_WRITE, 0, TRUNCATE_EXISTING},
};

const ModeRow& RowOf(FioMode mode) {
  const size_t index = static_cast<size_t>(mode);
  return kModes[index < std::size(kModes) ? index : 0];
}

// Opens or creates into `file`; the system's error code.
DWORD OpenHandle(const char* path, DWORD access, DWORD sharing, DWORD disposition, FioFile& file) {
  CriticalErrorGuard guard;
  file.handle.Reset();
  const HANDLE handle =
      CreateFileA(path, access, sharing, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
  const DWORD error = handle == INVALID_HANDLE_VALUE ? GetLastError() : ERROR_SUCCESS;
  file.handle.Reset(handle);
  return error;
}

FioResult Failed(bool write) {
  Hooks().fileIoFailed(write);
  return fioIO_ERROR;
}

// Moves the position; `where` receives the new one.
FioResult Move(FioFile& file, int64_t distance, DWORD method, uint32_t* where = nullptr) {
  LARGE_INTEGER offset;
  offset.QuadPart = distance;
  const DWORD low =
      SetFilePointer(file.handle.Get(), static_cast<LONG>(offset.LowPart), &offset.HighPart, method);
  // This low half is also that of a valid position, told apart by the error code alone.
  if (low == INVALID_SET_FILE_POINTER && GetLastError() != NO_ERROR) return fioIO_ERROR;
  if (where) *where = low;
  return where && offset.HighPart != 0 ? fioIO_ERROR : fioOK;
}

bool IsLineEnd(char ch) { return ch == '\r' || ch == '\n'; }

// True when `second` belongs to the line end that `first` began.
bool IsPair(char first, char second) { return IsLineEnd(second) && first != second; }

}  // namespace

FioResult FioOpen(const char* path, FioMode mode, FioFile& file) {
  if (!VT_ASSERT(path, "path")) return fioOPEN_FAILED;
  const ModeRow& row = RowOf(mode);
  const DWORD error = OpenHandle(path, row.access, row.sharing, row.openDisposition, file);
  if (error == ERROR_SUCCESS) return fioOK;
  return error == ERROR_FILE_NOT_FOUND ? fioNOT_FOUND : fioOPEN_FAILED;
}

FioResult FioCreate(const char* path, FioMode mode, FioFile& file) {
  if (!VT_ASSERT(path, "path")) return fioOPEN_FAILED;
  if (FS::Exists(path)) return fioEXISTS;
  const DWORD error = OpenHandle(path, RowOf(mode).access, 0, CREATE_NEW, file);
  if (error == ERROR_SUCCESS) return fioOK;
  return error == ERROR_FILE_EXISTS ? fioEXISTS : fioOPEN_FAILED;
}

FioResult FioClose(FioFile& file) {
  VT_ASSERT(file.handle, "file");
  return file.handle.Close() ? fioOK : fioIO_ERROR;
}

FioResult FioRead(FioFile& file, uint32_t count, void* buffer, uint32_t* got) {
  if (got) *got = 0;
  VT_ASSERT(file.handle, "file");
  char* const bytes = static_cast<char*>(buffer);
  uint32_t done = 0;
  while (done < count) {
    const DWORD piece = std::min(count - done, kPieceSize);
    DWORD transferred = 0;
    const BOOL good = ReadFile(file.handle.Get(), bytes + done, piece, &transferred, nullptr);
    if (good) done += transferred;
    if (got) *got = done;
    if (!good) return Failed(false);
    if (transferred < piece) break;
  }
  return done ? fioOK : fioEOF;
}

FioResult FioWrite(FioFile& file, uint32_t count, const void* buffer) {
  VT_ASSERT(file.handle, "file");
  const char* const bytes = static_cast<const char*>(buffer);
  for (uint32_t done = 0; done < count;) {
    const DWORD piece = std::min(count - done, kPieceSize);
    DWORD transferred = 0;
    const BOOL good = WriteFile(file.handle.Get(), bytes + done, piece, &transferred, nullptr);
    if (!good || transferred != piece) return Failed(true);
    done += piece;
  }
  return fioOK;
}

FioResult FioReadLine(FioFile& file, int32_t maxlen, char* buffer) {
  if (!VT_ASSERT(maxlen > 0, "maxlen > 0")) return fioEOF;
  buffer[0] = '\0';
  uint32_t got = 0;
  const FioResult result = FioRead(file, static_cast<uint32_t>(maxlen - 1), buffer, &got);
  if (result != fioOK) return result;
  buffer[got] = '\0';
  const char* const end = buffer + got;
  char* const cut = std::find_if(buffer, buffer + got, IsLineEnd);
  if (cut == end) return fioOK;

  const char* rest = cut + 1;
  const char first = *cut;
  *cut = '\0';
  if (rest != end) {
    if (IsPair(first, *rest)) rest++;
    return rest == end ? fioOK : Move(file, rest - end, FILE_CURRENT);
  }
  // The line end stands last in the piece: its other half, if any, is still in the file.
  char next = '\0';
  const FioResult peek = FioRead(file, 1, &next);
  if (peek == fioEOF || (peek == fioOK && IsPair(first, next))) return fioOK;
  return peek == fioOK ? Move(file, -1, FILE_CURRENT) : peek;
}

FioResult FioWriteLine(FioFile& file, const char* text) {
  const FioResult result = FioWrite(file, static_cast<uint32_t>(Str::Length(text)), text);
  return result == fioOK ? FioWrite(file, 2, "\r\n") : result;
}

FioResult FioSeek(FioFile& file, uint32_t pos) {
  VT_ASSERT(file.handle, "file");
  return Move(file, pos, FILE_BEGIN);
}

FioResult FioGetPos(FioFile& file, uint32_t& pos) {
  VT_ASSERT(file.handle, "file");
  pos = 0;
  return Move(file, 0, FILE_CURRENT, &pos);
}

FioResult FioSetEOF(FioFile& file, uint32_t len) {
  const FioResult result = FioSeek(file, len);
  if (result != fioOK) return result;
  return SetEndOfFile(file.handle.Get()) ? fioOK : fioIO_ERROR;
}

FioResult FioGetSize(FioFile& file, uint32_t& size) {
  VT_ASSERT(file.handle, "file");
  size = 0;
  DWORD high = 0;
  const DWORD low = GetFileSize(file.handle.Get(), &high);
  if ((low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR) || high != 0) return fioIO_ERROR;
  size = low;
  return fioOK;
}
