#pragma once
// What the setup needs to know of PostScript Type 1 files, read from their bytes. Pure: no files, no Windows.
// Numbers in a PFM file are little-endian.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/bytes.h"

constexpr size_t kPfbSegmentHeader = 6;      // bytes before the first comment line
constexpr size_t kPfbMaxLine = 1024;         // bytes read of that line
constexpr size_t kPsMaxName = 64;            // characters kept of any name
constexpr size_t kPfmHeaderSize = 117;       // bytes of the fixed header that the names need
constexpr size_t kPfmStyleHeaderSize = 119;  // bytes that must be there before the style is believed
constexpr size_t kPfmExtensionSize = 30;     // bytes behind the fixed header

enum class PfbResult { kOk, kNoHeader, kCutLine, kLongLine };

// The first comment line of a PFB file, without its line end. `bytes`: the file, or at least its first
// kPfbSegmentHeader + kPfbMaxLine bytes.
PfbResult PfbCommentLine(Bytes bytes, std::string& line);

struct PfbComment {
  std::string psName;
  std::string version;
};
// "%!<tag> <name> <version>"; false when a word is missing.
[[nodiscard]] bool ParsePfbComment(std::string_view line, PfbComment& comment);
// "001.003" -> 65539; false without a "." or a number on either side.
[[nodiscard]] bool ParsePsVersion(std::string_view text, uint32_t& version);

enum PsStyle : uint32_t { kPsBold = 1, kPsItalic = 2 };

// False when fewer than kPfmStyleHeaderSize bytes are given.
[[nodiscard]] bool PfmStyle(Bytes bytes, uint32_t& style);

enum class PfmResult { kOk, kShortHeader, kShortExtension, kBadName };

struct PfmNames {
  std::string faceName;
  std::string psName;
};
PfmResult ReadPfmNames(Bytes bytes, PfmNames& names);
