// font_facts FOLDER        what the setup program reads of each font file in a folder, one line for each:
//                            FILE.ttf|ok|full name|family|version|style        names in hexadecimal
//                            FILE.pfb|ok|PostScript name|version
//                            FILE.pfm|ok|face name|PostScript name|style
//                          "failed" in place of "ok" and what follows when the file is refused
// font_facts -use FAMILY   what a program sees that draws with a font family:
//                            known N|face NAME|width W|pixels P        of an "A", 100 pixels to the em
#include <windows.h>

#include <cstdio>
#include <string>

#include "fonts/font.h"
#include "fonts/psfont.h"

namespace {

std::string Hex(const Str& text) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (const char* c = text.Chars(); *c; ++c) {
    hex += kDigits[static_cast<unsigned char>(*c) >> 4];
    hex += kDigits[*c & 0x0F];
  }
  return hex;
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && lstrcmpiA(text.c_str() + text.size() - end.size(), end.c_str()) == 0;
}

std::string Facts(const std::string& path) {
  if (EndsWith(path, ".ttf")) {
    TrueTypeData data;
    if (!ReadTrueTypeFile(path.c_str(), data)) return "failed";
    return "ok|" + Hex(data.fullName) + "|" + Hex(data.familyName) + "|" + std::to_string(data.version) +
           "|" + std::to_string(data.style);
  }
  if (EndsWith(path, ".pfb")) {
    Str name;
    uint32_t version = 0;
    if (!GetPSNameAndVersion(path.c_str(), &name, &version)) return "failed";
    return "ok|" + Hex(name) + "|" + std::to_string(version);
  }
  Str face;
  Str name;
  uint32_t style = 0;
  if (!GetPfmNames(path.c_str(), &face, &name) || !GetPfmStyle(path.c_str(), style)) return "failed";
  return "ok|" + Hex(face) + "|" + Hex(name) + "|" + std::to_string(style);
}

int PrintFolder(const std::string& folder) {
  WIN32_FIND_DATAA found = {};
  const HANDLE find = FindFirstFileA((folder + "\\*").c_str(), &found);
  if (find == INVALID_HANDLE_VALUE) return 1;
  do {
    if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
    printf("%s|%s\n", found.cFileName, Facts(folder + "\\" + found.cFileName).c_str());
  } while (FindNextFileA(find, &found));
  FindClose(find);
  return 0;
}

struct Search {
  const char* family;
  int count;
};

int CALLBACK Count(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM param) {
  auto* search = reinterpret_cast<Search*>(param);
  if (lstrcmpA(search->family, font->lfFaceName) == 0) ++search->count;
  return 1;
}

// Draws black on white and counts what is black.
int UseFont(const char* family) {
  constexpr int kSize = 150;
  const HDC dc = CreateCompatibleDC(nullptr);
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = kSize;
  info.bmiHeader.biHeight = kSize;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (!dc || !bitmap) return 1;
  LOGFONTA wanted = {};
  wanted.lfHeight = -100;
  wanted.lfCharSet = DEFAULT_CHARSET;
  wanted.lfQuality = NONANTIALIASED_QUALITY;
  lstrcpynA(wanted.lfFaceName, family, LF_FACESIZE);
  const HFONT font = CreateFontIndirectA(&wanted);
  const HGDIOBJ oldBitmap = SelectObject(dc, bitmap);
  const HGDIOBJ oldFont = SelectObject(dc, font);
  Search search = {family, 0};
  EnumFontFamiliesExA(dc, &wanted, Count, reinterpret_cast<LPARAM>(&search), 0);
  PatBlt(dc, 0, 0, kSize, kSize, WHITENESS);
  TextOutA(dc, 10, 10, "A", 1);
  GdiFlush();
  char face[LF_FACESIZE] = "";
  GetTextFaceA(dc, LF_FACESIZE, face);
  SIZE extent = {};
  GetTextExtentPoint32A(dc, "A", 1, &extent);
  int pixels = 0;
  for (int i = 0; i < kSize * kSize; ++i)
    if ((static_cast<const DWORD*>(bits)[i] & 0xFFFFFF) == 0) ++pixels;
  printf("known %d|face %s|width %ld|pixels %d\n", search.count, face, extent.cx, pixels);
  SelectObject(dc, oldFont);
  SelectObject(dc, oldBitmap);
  DeleteObject(font);
  DeleteObject(bitmap);
  DeleteDC(dc);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2) return PrintFolder(argv[1]);
  if (argc == 3 && std::string(argv[1]) == "-use") return UseFont(argv[2]);
  return 2;
}
