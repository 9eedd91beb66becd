#include "platform/imagefile.h"

#include <algorithm>

namespace {

// Where things stand, from the start of the file, of the new header or of a section's record.
constexpr size_t kNewHeaderPlace = 0x3C;
constexpr size_t kSectionCount = 6;
constexpr size_t kOptionalSize = 20;
constexpr size_t kFixedHeaderSize = 24;
constexpr size_t kSectionSize = 40;
constexpr size_t kUsedSize = 8;
constexpr size_t kStoredSize = 16;
constexpr size_t kStoredPlace = 20;

constexpr uint32_t kOldSignature = 0x5A4D;      // "MZ"
constexpr uint32_t kNewSignature = 0x00004550;  // "PE"

using Bytes = std::span<const std::byte>;

bool Lies(Bytes bytes, size_t at, size_t count) { return at <= bytes.size() && count <= bytes.size() - at; }

// A little-endian number; 0 outside the bytes.
uint32_t Number(Bytes bytes, size_t at, size_t width) {
  if (!Lies(bytes, at, width)) return 0;
  uint32_t number = 0;
  for (size_t i = width; i > 0; --i) number = number << 8 | std::to_integer<uint32_t>(bytes[at + i - 1]);
  return number;
}

// The end of what a section uses in the file. The stored size may be rounded up, the used one count zeros
// that are not stored.
uint64_t EndOfSection(Bytes section) {
  const uint32_t stored = Number(section, kStoredSize, 4);
  const uint32_t used = Number(section, kUsedSize, 4);
  if (stored == 0) return 0;
  return uint64_t{Number(section, kStoredPlace, 4)} + (used == 0 ? stored : std::min(used, stored));
}

}  // namespace

uint64_t ImageFileSize(Bytes head) {
  const size_t start = Number(head, kNewHeaderPlace, 4);
  if (Number(head, 0, 2) != kOldSignature || !Lies(head, start, kFixedHeaderSize)) return 0;
  const Bytes header = head.subspan(start);
  if (Number(header, 0, 4) != kNewSignature) return 0;
  const size_t sections = kFixedHeaderSize + Number(header, kOptionalSize, 2);
  const size_t count = Number(header, kSectionCount, 2);
  if (!Lies(header, sections, count * kSectionSize)) return 0;
  uint64_t size = start + sections + count * kSectionSize;
  for (size_t i = 0; i < count; ++i)
    size = std::max(size, EndOfSection(header.subspan(sections + i * kSectionSize, kSectionSize)));
  return size;
}
