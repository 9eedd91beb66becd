#include "platform/imagefile.h"

#include <algorithm>
#include <vector>

namespace {

// Where things stand, from the start of the file, of the new header or of a section's record.
constexpr size_t kNewHeaderPlace = 0x3C;
constexpr size_t kSectionCount = 6;
constexpr size_t kOptionalSize = 20;
constexpr size_t kFixedHeaderSize = 24;
constexpr size_t kSectionSize = 40;
constexpr size_t kUsedSize = 8;
constexpr size_t kAddress = 12;
constexpr size_t kStoredSize = 16;
constexpr size_t kStoredPlace = 20;

// The tables behind the optional header: where they begin, by its kind, and which is that of the resources.
constexpr uint32_t kOptional64 = 0x20B;
constexpr size_t kTables32 = 96;
constexpr size_t kTables64 = 112;
constexpr size_t kTableSize = 8;
constexpr size_t kResourceTable = 2;

constexpr size_t kNodeSize = 16;  // of the header of a resource directory, and of the record of its data
constexpr size_t kEntrySize = 8;
constexpr uint32_t kHighBit = 0x80000000;  // of an entry: it has a name, or a directory below
constexpr int kLevels = 3;                 // type, name, language
constexpr size_t kMaxEntries = 20000;      // a directory that holds itself comes to an end

constexpr uint32_t kOldSignature = 0x5A4D;      // "MZ"
constexpr uint32_t kNewSignature = 0x00004550;  // "PE"

// A little-endian number; 0 outside the bytes.
uint32_t Number(Bytes bytes, size_t at, size_t width) {
  return Holds(bytes, at, width) ? LittleEndian(bytes, at, width) : 0;
}

// The end of what a section uses in the file. The stored size may be rounded up, the used one count zeros
// that are not stored.
uint64_t EndOfSection(Bytes section) {
  const uint32_t stored = Number(section, kStoredSize, 4);
  const uint32_t used = Number(section, kUsedSize, 4);
  if (stored == 0) return 0;
  return uint64_t{Number(section, kStoredPlace, 4)} + (used == 0 ? stored : std::min(used, stored));
}

struct Section {
  uint32_t address;
  Bytes data;
};

class ResourceWalk {
 public:
  explicit ResourceWalk(Bytes file) : mFile(file) {}

  bool Run() {
    const size_t optional = Number(mFile, kNewHeaderPlace, 4) + kFixedHeaderSize;
    ReadSections(optional + Number(mFile, optional - kFixedHeaderSize + kOptionalSize, 2),
                 Number(mFile, optional - kFixedHeaderSize + kSectionCount, 2));
    const size_t tables = optional + (Number(mFile, optional, 2) == kOptional64 ? kTables64 : kTables32);
    if (Number(mFile, tables - 4, 4) <= kResourceTable) return true;
    const uint32_t address = Number(mFile, tables + kResourceTable * kTableSize, 4);
    if (address == 0) return true;
    mTree = At(address);
    return WalkDirectory(0, 0);
  }

 private:
  void ReadSections(size_t at, size_t count) {
    for (size_t i = 0; i < count; ++i, at += kSectionSize) {
      const size_t place = std::min<size_t>(Number(mFile, at + kStoredPlace, 4), mFile.size());
      const size_t size = std::min<size_t>(Number(mFile, at + kStoredSize, 4), mFile.size() - place);
      mSections.push_back({Number(mFile, at + kAddress, 4), mFile.subspan(place, size)});
    }
  }

  // What the file holds from an address on, to the end of the section.
  Bytes At(uint32_t address) const {
    for (const Section& section : mSections)
      if (address >= section.address && address - section.address < section.data.size())
        return section.data.subspan(address - section.address);
    return {};
  }

  bool WalkDirectory(size_t at, int level) {
    if (level == kLevels || !Holds(mTree, at, kNodeSize)) return false;
    const size_t count = size_t{Number(mTree, at + 12, 2)} + Number(mTree, at + 14, 2);
    at += kNodeSize;
    if (!Holds(mTree, at, count * kEntrySize)) return false;
    for (size_t i = 0; i < count; ++i, at += kEntrySize) {
      const uint32_t name = Number(mTree, at, 4);
      const uint32_t below = Number(mTree, at + 4, 4);
      if (++mEntries > kMaxEntries || ((name & kHighBit) != 0 && !IsName(name & ~kHighBit))) return false;
      if ((below & kHighBit) != 0 ? !WalkDirectory(below & ~kHighBit, level + 1) : !IsData(below))
        return false;
    }
    return true;
  }

  bool IsName(size_t at) const {
    return Holds(mTree, at, 2) && Holds(mTree, at + 2, size_t{Number(mTree, at, 2)} * 2);
  }

  bool IsData(size_t at) const {
    if (!Holds(mTree, at, kNodeSize)) return false;
    const uint32_t size = Number(mTree, at + 4, 4);
    return size == 0 || Holds(At(Number(mTree, at, 4)), 0, size);
  }

  Bytes mFile;
  Bytes mTree;  // from the directory of resources on
  std::vector<Section> mSections;
  size_t mEntries = 0;
};

}  // namespace

uint64_t ImageFileSize(Bytes head) {
  const size_t start = Number(head, kNewHeaderPlace, 4);
  if (Number(head, 0, 2) != kOldSignature || !Holds(head, start, kFixedHeaderSize)) return 0;
  const Bytes header = head.subspan(start);
  if (Number(header, 0, 4) != kNewSignature) return 0;
  const size_t sections = kFixedHeaderSize + Number(header, kOptionalSize, 2);
  const size_t count = Number(header, kSectionCount, 2);
  if (!Holds(header, sections, count * kSectionSize)) return 0;
  uint64_t size = std::max(kNewHeaderPlace + 4, start + sections + count * kSectionSize);
  for (size_t i = 0; i < count; ++i)
    size = std::max(size, EndOfSection(header.subspan(sections + i * kSectionSize, kSectionSize)));
  return size;
}

bool ImageResourcesLieInFile(Bytes file) { return ImageFileSize(file) != 0 && ResourceWalk(file).Run(); }
