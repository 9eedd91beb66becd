#pragma once
// Makes small 32-bit libraries that hold nothing but resources: a version, texts.
#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

using Version4 = std::array<unsigned, 4>;

// "1.2.3.4" as four numbers; what is missing is 0.
Version4 VersionNumber(const std::string& text);

struct Translation {
  unsigned language;  // such as 0x040C
  unsigned codePage;  // such as 1252
};

struct LibrarySpec {
  bool hasVersion = true;
  Version4 fileVersion = {1, 0, 0, 0};
  Version4 productVersion = {1, 0, 0, 0};
  unsigned fileType = 2;  // VFT_DLL
  // Entries of \VarFileInfo\Translation; none gives 040904e4. The texts are stored under the first one.
  std::vector<Translation> translations;
  std::vector<std::pair<std::string, std::string>> texts;  // of \StringFileInfo, ISO 8859-1
  std::map<unsigned, std::string> strings;                 // string table, ISO 8859-1
  unsigned resourceLanguage = 0x0409;
};

std::string MakeLibrary(const LibrarySpec& spec);

// A file compressed as expand.exe and LZCopy read it (without any saving), with the last letter
// of the name it replaces.
std::string MakeLzFile(const std::string& bytes, char lastLetter);
