#include "platform/fserror.h"

#include <cerrno>

namespace FS {
namespace {

uint32_t gLastError = fsErrNone;

}  // namespace

uint32_t LastError() { return gLastError; }

void SetLastError(uint32_t error) { gLastError = error; }

void SetFromSystem(DWORD systemError) {
  switch (systemError) {
    case ERROR_SUCCESS:
      gLastError = fsErrNone;
      break;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      gLastError = fsErrNotFound;
      break;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
      gLastError = fsErrAccess;
      break;
    default:
      gLastError = fsErrFailed;
      break;
  }
}

void SetFromRunTime(int runTimeError) {
  switch (runTimeError) {
    case 0:
      gLastError = fsErrNone;
      break;
    case ENOENT:
      gLastError = fsErrNotFound;
      break;
    case EACCES:
    case ENOTEMPTY:
      gLastError = fsErrAccess;
      break;
    default:
      gLastError = fsErrFailed;
      break;
  }
}

}  // namespace FS
