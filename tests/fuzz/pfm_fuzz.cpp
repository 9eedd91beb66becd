// sources: fonts/psreader.cpp
// A metrics file is refused exactly when it is too short or its names lie outside; the names kept are those
// that stand at the offsets the file gives.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include "fonts/psreader.h"

namespace {

constexpr size_t kFaceAt = 105;
constexpr size_t kDriverInfoAt = 139;
constexpr size_t kMaxRead = 1023;

void Require(bool holds) {
  if (!holds) std::abort();
}

uint32_t Little(std::string_view bytes, size_t at) {
  uint32_t value = 0;
  for (size_t i = 4; i-- > 0;) value = value << 8 | static_cast<uint8_t>(bytes[at + i]);
  return value;
}

// The text at an offset by another way; false when it leaves the file.
bool TextAt(std::string_view bytes, size_t at, std::string& text) {
  const uint32_t offset = Little(bytes, at);
  if (offset >= bytes.size()) return false;
  const std::string_view rest = bytes.substr(offset);
  const size_t end = rest.substr(0, kMaxRead).find('\0');
  if (end == std::string_view::npos && rest.size() < kMaxRead) return false;
  text = rest.substr(0, std::min(end, kPsMaxName));
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view all(reinterpret_cast<const char*>(data), size);
  const auto bytes = std::as_bytes(std::span<const uint8_t>(data, size));
  uint32_t style = 0;
  Require(PfmStyle(bytes, style) == (size >= kPfmStyleHeaderSize));
  Require(style <= (kPsBold | kPsItalic));
  if (size >= kPfmStyleHeaderSize) {
    Require(((style & kPsItalic) != 0) == (data[80] != 0));
    Require(((style & kPsBold) != 0) == (data[83] + 256 * data[84] > 400));
  }

  PfmNames names;
  const PfmResult result = ReadPfmNames(bytes, names);
  Require((result == PfmResult::kShortHeader) == (size < kPfmHeaderSize));
  Require((result == PfmResult::kShortExtension) ==
          (size >= kPfmHeaderSize && size < kPfmHeaderSize + kPfmExtensionSize));
  if (size < kPfmHeaderSize + kPfmExtensionSize) return 0;
  std::string face;
  std::string ps;
  const bool good = TextAt(all, kFaceAt, face) && TextAt(all, kDriverInfoAt, ps);
  Require((result == PfmResult::kOk) == good);
  if (good) Require(names.faceName == face && names.psName == ps);
  return 0;
}
