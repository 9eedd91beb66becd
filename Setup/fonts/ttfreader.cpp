#include "fonts/ttfreader.h"

namespace {

// Offsets inside the tables.
constexpr size_t kNumTablesAt = 4;
constexpr size_t kNameHeaderSize = 6;
constexpr size_t kNameRecordSize = 12;
constexpr size_t kRevisionAt = 4;
constexpr size_t kSelectionAt = 62;

constexpr uint16_t kMacintosh = 1;
constexpr uint16_t kFamilyName = 1;
constexpr uint16_t kFullName = 4;
constexpr uint16_t kSelectionItalic = 1u << 0;
constexpr uint16_t kSelectionBold = 1u << 5;

// The caller has checked the bounds.
uint16_t U16(Bytes bytes, size_t at) {
  return static_cast<uint16_t>((std::to_integer<unsigned>(bytes[at]) << 8) |
                               std::to_integer<unsigned>(bytes[at + 1]));
}

uint32_t U32(Bytes bytes, size_t at) {
  return (static_cast<uint32_t>(U16(bytes, at)) << 16) | U16(bytes, at + 2);
}

constexpr uint32_t Tag(const char (&text)[5]) {
  return (static_cast<uint32_t>(text[0]) << 24) | (static_cast<uint32_t>(text[1]) << 16) |
         (static_cast<uint32_t>(text[2]) << 8) | static_cast<uint32_t>(text[3]);
}

// Appends the 8-bit text of one name record; false when it lies outside the table.
bool ReadName(Bytes table, size_t record, size_t storage, std::string& text) {
  const size_t length = U16(table, record + 8);
  const size_t offset = U16(table, record + 10);
  if (!Holds(table, storage, offset) || !Holds(table, storage + offset, length)) return false;
  for (const std::byte ch : table.subspan(storage + offset, length)) {
    if (ch == std::byte{0}) break;
    text.push_back(static_cast<char>(ch));
  }
  return !text.empty();
}

}  // namespace

int32_t TtfTableCount(Bytes header) {
  return Holds(header, 0, kTtfHeaderSize) ? U16(header, kNumTablesAt) : -1;
}

bool TtfFindTables(Bytes directory, uint32_t fileSize, TtfTables& tables) {
  const int32_t count = TtfTableCount(directory);
  if (count < 0 || !Holds(directory, kTtfHeaderSize, static_cast<size_t>(count) * kTtfRecordSize))
    return false;
  const struct {
    uint32_t tag;
    TtfRange* range;
  } wanted[] = {{Tag("name"), &tables.name}, {Tag("head"), &tables.head}, {Tag("OS/2"), &tables.os2}};
  for (int32_t i = 0; i < count; ++i) {
    const size_t record = kTtfHeaderSize + static_cast<size_t>(i) * kTtfRecordSize;
    for (const auto& [tag, range] : wanted) {
      if (U32(directory, record) != tag) continue;
      const TtfRange found = {U32(directory, record + 8), U32(directory, record + 12)};
      if (found.offset > fileSize || found.length > fileSize - found.offset) return false;
      *range = found;
    }
  }
  return tables.name.length != 0 && tables.head.length != 0;
}

bool TtfReadNames(Bytes nameTable, TtfNames& names) {
  names = TtfNames();
  if (!Holds(nameTable, 0, kNameHeaderSize)) return false;
  const size_t count = U16(nameTable, 2);
  const size_t storage = U16(nameTable, 4);
  if (!Holds(nameTable, kNameHeaderSize, count * kNameRecordSize)) return false;
  bool haveFull = false;
  bool haveFamily = false;
  for (size_t i = 0; i < count && !(haveFull && haveFamily); ++i) {
    const size_t record = kNameHeaderSize + i * kNameRecordSize;
    if (U16(nameTable, record) != kMacintosh) continue;
    const uint16_t number = U16(nameTable, record + 6);
    if (number == kFullName && !haveFull) {
      if (!ReadName(nameTable, record, storage, names.full)) return false;
      haveFull = true;
    } else if (number == kFamilyName && !haveFamily) {
      if (!ReadName(nameTable, record, storage, names.family)) return false;
      haveFamily = true;
    }
  }
  return haveFull && haveFamily;
}

bool TtfReadRevision(Bytes headTable, uint32_t& revision) {
  if (!Holds(headTable, kRevisionAt, 4)) return false;
  revision = U32(headTable, kRevisionAt);
  return true;
}

bool TtfReadStyle(Bytes os2Table, uint32_t& style) {
  if (!Holds(os2Table, kSelectionAt, 2)) return false;
  const uint16_t selection = U16(os2Table, kSelectionAt);
  style = ((selection & kSelectionItalic) != 0 ? kTtfItalic : 0u) |
          ((selection & kSelectionBold) != 0 ? kTtfBold : 0u);
  return true;
}
