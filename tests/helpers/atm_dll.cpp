// Stand-in for Adobe Type Manager's library (put it into the system folder as ATM32.dll). It answers from the
// file that the environment variable VT_ATM names, an INI file:
//   [ATM]  loaded=0|1 (1)   version=<number> (1025)
//          remove=<result of every removal> (0)   status=<result of every status question> (-407)
//   [<name>,<style>]  pfb=<path>   pfm=<path>        one installed font
//          paths=<result> instead
// and appends each call as a line to the file "<that file>.log".
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

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

std::string Answers() {
  char path[MAX_PATH] = "";
  GetEnvironmentVariableA("VT_ATM", path, sizeof path);
  return path;
}

void Record(const std::string& call) {
  if (FILE* file = fopen((Answers() + ".log").c_str(), "ab")) {
    fprintf(file, "%s\n", call.c_str());
    fclose(file);
  }
}

int Number(const std::string& section, const char* key, int fallback) {
  // Negative numbers too, which the system's own reader of numbers does not know.
  char text[32] = "";
  GetPrivateProfileStringA(section.c_str(), key, "", text, sizeof text, Answers().c_str());
  return *text ? static_cast<int>(strtol(text, nullptr, 0)) : fallback;
}

std::string SectionOf(const char* name, WORD style) {
  return std::string(name) + "," + std::to_string(style);
}

bool Path(const std::string& section, const char* key, char* path) {
  return GetPrivateProfileStringA(section.c_str(), key, "", path, kPathRoom, Answers().c_str()) != 0;
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

WORD WINAPI ATMGetVersion() { return static_cast<WORD>(Number("ATM", "version", 0x0401)); }

int WINAPI ATMFontStatusA(char* name, WORD style, char* metrics, char* font) {
  Record("ATMFontStatusA " + SectionOf(name, style) + " \"" + metrics + "\" \"" + font + "\"");
  return Number("ATM", "status", -407);
}

int WINAPI ATMGetFontPathsA(FontSpec* font, FontPaths* paths) {
  const std::string section = SectionOf(font->name, font->style);
  Record("ATMGetFontPathsA " + section);
  const int result = Number(section, "paths", 0);
  if (result != 0) return result;
  const bool hasOutline = Path(section, "pfb", paths->pfb);
  const bool hasMetrics = Path(section, "pfm", paths->pfm);
  return hasOutline || hasMetrics || Number(section, "empty", 0) ? 0 : kFontAbsent;
}

int WINAPI ATMRemoveFontA(char* name, WORD style) {
  Record("ATMRemoveFontA " + SectionOf(name, style));
  return Number("ATM", "remove", 0);
}

}  // extern "C"
