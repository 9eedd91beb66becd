// A version.dll whose install functions answer as the test wants. Put it into C:\windows\system32 and run the
// program with WINEDLLOVERRIDES=version=n. The environment decides:
//   VT_VERINSTALL       results of the calls of VerInstallFileA, for example "0x80,0"; the last one stays. 0
//   by default VT_VERINSTALL_ONLY  only for this source file name; others are installed with result 0
//   VT_VERINSTALL_TEMP  the name handed back as temporary file; the source is copied under it into the
//   destination folder VT_VERFIND          results of the calls of VerFindFileA, in the same way
//   VT_VERFIND_CURRENT  the folder handed back as the place where the file is now
//   VT_VERSION_LOG      a file that gets one line for each call
// A result of 0 copies the source over the destination (or, as the real one, over the name in
// the destination folder).
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::string Environment(const char* name) {
  char text[1024] = "";
  GetEnvironmentVariableA(name, text, sizeof text);
  return text;
}

void Log(const std::string& line) {
  const std::string path = Environment("VT_VERSION_LOG");
  if (path.empty()) return;
  if (FILE* file = fopen(path.c_str(), "ab")) {
    fprintf(file, "%s\r\n", line.c_str());
    fclose(file);
  }
}

// The element number `call` of a list of numbers, or its last one.
DWORD ResultOf(const std::string& list, unsigned call) {
  const char* at = list.c_str();
  for (unsigned i = 0; i < call; ++i) {
    const char* comma = strchr(at, ',');
    if (!comma) break;
    at = comma + 1;
  }
  return strtoul(at, nullptr, 0);
}

std::string Text(const char* text) { return text ? text : "(null)"; }

std::string Join(const std::string& folder, const std::string& name) {
  return folder.empty() || folder.back() == '\\' ? folder + name : folder + "\\" + name;
}

void Give(char* room, UINT* size, const std::string& text) {
  if (room && size && *size > text.size()) memcpy(room, text.c_str(), text.size() + 1);
  if (size) *size = static_cast<UINT>(text.size() + 1);
}

}  // namespace

extern "C" DWORD WINAPI VerInstallFileA(DWORD flags, LPSTR sourceName, LPSTR destinationName,
                                        LPSTR sourceFolder, LPSTR destinationFolder, LPSTR currentFolder,
                                        LPSTR tempFile, PUINT tempSize) {
  static unsigned calls = 0;
  Log("VerInstallFile " + std::to_string(flags) + "|" + Text(sourceName) + "|" + Text(destinationName) + "|" +
      Text(sourceFolder) + "|" + Text(destinationFolder) + "|" + Text(currentFolder) + "|" + Text(tempFile));
  const std::string only = Environment("VT_VERINSTALL_ONLY");
  DWORD result = 0;
  if (only.empty() || lstrcmpiA(only.c_str(), sourceName) == 0)
    result = ResultOf(Environment("VT_VERINSTALL"), calls++);
  const std::string source = Join(Text(sourceFolder), Text(sourceName));
  const std::string temp = Environment("VT_VERINSTALL_TEMP");
  if (result == 0) {
    if (!CopyFileA(source.c_str(), Join(Text(destinationFolder), Text(destinationName)).c_str(), FALSE))
      return VIF_CANNOTCREATE;
    Give(tempFile, tempSize, "");
  } else if ((result & VIF_TEMPFILE) != 0) {
    CopyFileA(source.c_str(), Join(Text(destinationFolder), temp).c_str(), FALSE);
    Give(tempFile, tempSize, temp);
  } else {
    Give(tempFile, tempSize, "");
  }
  return result;
}

extern "C" DWORD WINAPI VerFindFileA(DWORD flags, LPSTR fileName, LPSTR windowsFolder, LPSTR appFolder,
                                     LPSTR currentFolder, PUINT currentSize, LPSTR destinationFolder,
                                     PUINT destinationSize) {
  static unsigned calls = 0;
  Log("VerFindFile " + std::to_string(flags) + "|" + Text(fileName) + "|" + Text(windowsFolder) + "|" +
      Text(appFolder));
  Give(currentFolder, currentSize, Environment("VT_VERFIND_CURRENT"));
  Give(destinationFolder, destinationSize,
       (flags & VFFF_ISSHAREDFILE) != 0 ? Text(windowsFolder) : Text(appFolder));
  return ResultOf(Environment("VT_VERFIND"), calls++);
}

BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }
