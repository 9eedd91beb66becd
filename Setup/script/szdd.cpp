#include "script/szdd.h"

#include <cstdint>
#include <span>

#include "base/bytes.h"

namespace {

constexpr std::string_view kSignature = "SZDD\x88\xF0\x27\x33";
constexpr size_t kSizeOffset = 10;
constexpr unsigned kShortestRun = 3;  // bytes that a reference stands for at least
constexpr unsigned kRunMask = 0x0F;   // how many more, in its second byte

}  // namespace

bool IsSzdd(std::string_view bytes) {
  return bytes.size() >= kSzddHeaderSize && bytes.substr(0, kSignature.size()) == kSignature;
}

bool IsSzddWhole(std::string_view bytes) {
  const auto byteAt = [bytes](size_t pos) { return static_cast<unsigned char>(bytes[pos]); };
  const uint32_t size = LittleEndian(std::as_bytes(std::span(bytes)), kSizeOffset, 4);
  uint64_t expanded = 0;
  size_t pos = kSzddHeaderSize;
  while (expanded < size) {
    if (pos == bytes.size()) return false;
    unsigned control = byteAt(pos++);
    for (int item = 0; item < 8 && expanded < size; ++item, control >>= 1) {
      const size_t length = (control & 1) != 0 ? 1 : 2;
      if (bytes.size() - pos < length) return false;
      pos += length;
      expanded += length == 1 ? 1 : kShortestRun + (byteAt(pos - 1) & kRunMask);
    }
  }
  return true;
}
