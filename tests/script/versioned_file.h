#pragma once
// Source files for the install tests: programs with a chosen version resource, and compressed files.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <string>

#include "support/files.h"
#include "support/process.h"
#include "ui/language_file.h"

struct FileVersion {
  uint16_t major = 1;
  uint16_t minor = 0;
  DWORD type = VFT_DLL;
  WORD language = 0x040C;
};

// A version resource with these numbers.
inline std::string VersionResource(const FileVersion& version) {
  VS_FIXEDFILEINFO fixed = {};
  fixed.dwSignature = 0xFEEF04BD;
  fixed.dwStrucVersion = 0x10000;
  fixed.dwFileVersionMS = static_cast<DWORD>(version.major) << 16 | version.minor;
  fixed.dwProductVersionMS = fixed.dwFileVersionMS;
  fixed.dwFileFlagsMask = 0x3F;
  fixed.dwFileOS = VOS__WINDOWS32;
  fixed.dwFileType = version.type;
  std::string translation;
  language_file::PutWord(translation, version.language);
  language_file::PutWord(translation, 1252);
  const std::string info = language_file::Node(
      "VarFileInfo", "", 0, 1,
      language_file::Node("Translation", translation, static_cast<unsigned>(translation.size()), 0, ""));
  return language_file::Node("VS_VERSION_INFO",
                             std::string(reinterpret_cast<const char*>(&fixed), sizeof fixed), sizeof fixed,
                             0, info);
}

// Makes a program file of that version; `tail` is appended so that files can be told apart.
inline void MakeVersionedFile(const std::string& path, const FileVersion& version,
                              const std::string& tail = "") {
  WriteWholeFile(path, ReadWholeFile(HelperPath("exit_with.exe")));
  const std::string blob = VersionResource(version);
  language_file::Update(path, RT_VERSION, MAKEINTRESOURCEA(1), &blob);
  if (!tail.empty()) WriteWholeFile(path, ReadWholeFile(path) + tail);
}

// The bytes in the compressed form that the system expands; `lastLetter` is the last one of the expanded
// name.
inline std::string Compressed(const std::string& bytes, char lastLetter) {
  std::string out(
      "SZDD\x88\xf0\x27\x33"
      "A");
  out += lastLetter;
  for (int shift = 0; shift < 32; shift += 8) out += static_cast<char>(bytes.size() >> shift & 0xFF);
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (i % 8 == 0) out += '\xFF';  // eight plain bytes follow
    out += bytes[i];
  }
  return out;
}
