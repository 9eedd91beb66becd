// hold_file FILE SHARE [-write] [-for MS]     keeps a file open until it is ended or the time is over
// SHARE: none, read, write, delete, all. -write asks for write access too. Prints "ready".
// hold_file FILE -load [-for MS]              loads a library and keeps it
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  const std::string how = argv[2];
  DWORD access = GENERIC_READ;
  DWORD milliseconds = 60000;
  for (int i = 3; i < argc; ++i) {
    const std::string option = argv[i];
    if (option == "-write") access |= GENERIC_WRITE;
    if (option == "-for" && i + 1 < argc) milliseconds = strtoul(argv[++i], nullptr, 0);
  }
  if (how == "-load") {
    if (!LoadLibraryA(argv[1])) {
      printf("error %lu\n", GetLastError());
      return 1;
    }
  } else {
    DWORD share = 0;
    if (how == "read" || how == "all") share |= FILE_SHARE_READ;
    if (how == "write" || how == "all") share |= FILE_SHARE_WRITE;
    if (how == "delete" || how == "all") share |= FILE_SHARE_DELETE;
    if (share == 0 && how != "none") return 2;
    if (CreateFileA(argv[1], access, share, nullptr, OPEN_EXISTING, 0, nullptr) == INVALID_HANDLE_VALUE) {
      printf("error %lu\n", GetLastError());
      return 1;
    }
  }
  puts("ready");
  fflush(stdout);
  Sleep(milliseconds);
  return 0;
}
