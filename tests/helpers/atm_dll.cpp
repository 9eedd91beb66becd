// Stand-in for Adobe Type Manager's library (put it into the system folder as ATM32.dll). It answers from the
// file that the environment variable VT_ATM names, an INI file:
//   [ATM]  loaded=0|1 (1)   version=<minor * 256 + major> (260)
//          remove=<result of every removal> (0)   status=<result of every status question> (-407)
//   [<name>,<style>]  pfb=<path>   pfm=<path>        one installed font
//          paths=<result> instead; empty=1: no paths, and yet no failure
// and appends each call as a line to the file "<that file>.log". Without the C++ library, so that nothing of
// it stays when the library is unloaded.
#include <windows.h>

namespace {

constexpr int kFontAbsent = -409;
constexpr int kPathRoom = 261;

struct FontSpec {
  char name[LF_FACESIZE];
  WORD style;
};
struct FontPaths {
  char pfb[kPathRoom];
  char pfm[kPathRoom];
  char mmm[kPathRoom];
  char pss[kPathRoom];
};

// Texts of a call; longer ones are cut.
struct Text {
  char chars[1024] = "";
  int length = 0;

  Text& operator+=(const char* more) {
    while (*more && length < 1023) chars[length++] = *more++;
    chars[length] = 0;
    return *this;
  }
};

Text Answers() {
  char path[MAX_PATH] = "";
  GetEnvironmentVariableA("VT_ATM", path, sizeof path);
  Text text;
  text += path;
  return text;
}

void Record(const char* call, const char* argument = "") {
  Text log = Answers();
  log += ".log";
  Text line;
  line += call;
  line += argument;
  line += "\n";
  const HANDLE file =
      CreateFileA(log.chars, GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  SetFilePointer(file, 0, nullptr, FILE_END);
  DWORD written = 0;
  WriteFile(file, line.chars, static_cast<DWORD>(line.length), &written, nullptr);
  CloseHandle(file);
}

// Negative numbers too, which the system's own reader of numbers does not know.
int Number(const char* section, const char* key, int fallback) {
  char text[32] = "";
  GetPrivateProfileStringA(section, key, "", text, sizeof text, Answers().chars);
  const char* digit = text;
  if (*digit == '-') ++digit;
  if (!*digit) return fallback;
  int number = 0;
  for (; *digit >= '0' && *digit <= '9'; ++digit) number = number * 10 + (*digit - '0');
  return *text == '-' ? -number : number;
}

Text SectionOf(const char* name, WORD style) {
  char number[16] = "";
  wsprintfA(number, ",%u", static_cast<UINT>(style));
  Text section;
  section += name;
  section += number;
  return section;
}

bool Path(const Text& section, const char* key, char* path) {
  return GetPrivateProfileStringA(section.chars, key, "", path, kPathRoom, Answers().chars) != 0;
}

}  // namespace

extern "C" {

int WINAPI ATMProperlyLoaded() {
  Record("ATMProperlyLoaded");
  return Number("ATM", "loaded", 1);
}

int WINAPI ATMFinish() {
  Record("ATMFinish");
  return 0;
}

int WINAPI ATMBeginFontChange() {
  Record("ATMBeginFontChange");
  return 0;
}

int WINAPI ATMForceFontChange() {
  Record("ATMForceFontChange");
  return 0;
}

int WINAPI ATMEndFontChange() {
  Record("ATMEndFontChange");
  return 0;
}

WORD WINAPI ATMGetVersion() { return static_cast<WORD>(Number("ATM", "version", 0x0104)); }

int WINAPI ATMFontStatusA(char* name, WORD style, char*, char*) {
  Record("ATMFontStatusA ", SectionOf(name, style).chars);
  return Number("ATM", "status", -407);
}

int WINAPI ATMGetFontPathsA(FontSpec* font, FontPaths* paths) {
  const Text section = SectionOf(font->name, font->style);
  Record("ATMGetFontPathsA ", section.chars);
  const int result = Number(section.chars, "paths", 0);
  if (result != 0) return result;
  const bool hasOutline = Path(section, "pfb", paths->pfb);
  const bool hasMetrics = Path(section, "pfm", paths->pfm);
  return hasOutline || hasMetrics || Number(section.chars, "empty", 0) ? 0 : kFontAbsent;
}

int WINAPI ATMRemoveFontA(char* name, WORD style) {
  Record("ATMRemoveFontA ", SectionOf(name, style).chars);
  return Number("ATM", "remove", 0);
}

}  // extern "C"
