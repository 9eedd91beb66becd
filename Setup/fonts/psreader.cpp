#include "fonts/psreader.h"

#include <vector>

#include "base/ascii.h"

namespace {

// Offsets in a PFM file; those of the extension count from the file's start.
constexpr size_t kItalicAt = 80;
constexpr size_t kWeightAt = 83;
constexpr size_t kFaceAt = 105;
constexpr size_t kDriverInfoAt = kPfmHeaderSize + 22;
constexpr uint32_t kBoldAbove = 400;
constexpr size_t kMaxNameBytes = 1023;

// Text at an offset up to its NUL or the longest read, cut to the longest kept; false when the file begins or
// ends before it.
bool ReadText(Bytes bytes, uint32_t offset, std::string& text) {
  text.clear();
  if (offset >= bytes.size()) return false;
  const Bytes rest = bytes.subspan(offset);
  for (size_t i = 0; i < kMaxNameBytes; ++i) {
    if (i >= rest.size()) return false;
    if (rest[i] == std::byte{0}) break;
    if (text.size() < kPsMaxName) text.push_back(static_cast<char>(rest[i]));
  }
  return true;
}

bool ParseNumber(std::string_view text, uint32_t& number) {
  if (text.empty() || !IsAsciiDigit(text.front())) return false;
  number = 0;
  for (const char ch : text) {
    if (!IsAsciiDigit(ch)) break;
    number = number * 10 + static_cast<uint32_t>(ch - '0');  // wraps like the 32-bit value it becomes
  }
  return true;
}

std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  while (true) {
    const size_t start = text.find_first_not_of(kBlanks);
    if (start == std::string_view::npos) return words;
    text.remove_prefix(start);
    const size_t end = text.find_first_of(kBlanks);
    words.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return words;
    text.remove_prefix(end);
  }
}

}  // namespace

PfbResult PfbCommentLine(Bytes bytes, std::string& line) {
  line.clear();
  if (bytes.size() < kPfbSegmentHeader) return PfbResult::kNoHeader;
  const Bytes text = bytes.subspan(kPfbSegmentHeader);
  for (size_t i = 0; i < kPfbMaxLine; ++i) {
    if (i >= text.size()) return PfbResult::kCutLine;
    const char ch = static_cast<char>(text[i]);
    if (ch == '\n' || ch == '\r') return PfbResult::kOk;
    line.push_back(ch);
  }
  return PfbResult::kLongLine;
}

bool ParsePfbComment(std::string_view line, PfbComment& comment) {
  line = line.substr(0, line.find('\0'));
  const size_t start = line.find("%!");
  if (start == std::string_view::npos) return false;
  const std::vector<std::string_view> words = Words(line.substr(start + 2));
  if (words.size() < 3) return false;
  comment.psName = words[1].substr(0, kPsMaxName);
  comment.version = words[2];
  return true;
}

bool ParsePsVersion(std::string_view text, uint32_t& version) {
  const size_t dot = text.find('.');
  uint32_t major = 0;
  uint32_t minor = 0;
  if (dot == std::string_view::npos || !ParseNumber(text.substr(0, dot), major) ||
      !ParseNumber(text.substr(dot + 1), minor))
    return false;
  version = (major << 16) + (minor & 0xFFFF);
  return true;
}

bool PfmStyle(Bytes bytes, uint32_t& style) {
  if (bytes.size() < kPfmStyleHeaderSize) return false;
  style = (bytes[kItalicAt] != std::byte{0} ? kPsItalic : 0u) |
          (LittleEndian(bytes, kWeightAt, 2) > kBoldAbove ? kPsBold : 0u);
  return true;
}

PfmResult ReadPfmNames(Bytes bytes, PfmNames& names) {
  if (bytes.size() < kPfmHeaderSize) return PfmResult::kShortHeader;
  if (bytes.size() - kPfmHeaderSize < kPfmExtensionSize) return PfmResult::kShortExtension;
  if (!ReadText(bytes, LittleEndian(bytes, kFaceAt, 4), names.faceName) ||
      !ReadText(bytes, LittleEndian(bytes, kDriverInfoAt, 4), names.psName))
    return PfmResult::kBadName;
  return PfmResult::kOk;
}
