#pragma once
// What the setup needs to know of a TrueType file, read from its bytes. Pure: no files, no Windows. All
// numbers in the file are big-endian; layout as published for the TrueType table directory and its name,
// head and OS/2 tables.
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/bytes.h"

constexpr size_t kTtfHeaderSize = 12;  // bytes before the table directory
constexpr size_t kTtfRecordSize = 16;  // bytes per directory record

// Where a table lies in the file; length 0 when the file has none.
struct TtfRange {
  uint32_t offset = 0;
  uint32_t length = 0;
};

struct TtfTables {
  TtfRange name;
  TtfRange head;
  TtfRange os2;
};

struct TtfNames {
  std::string full;    // first Macintosh record with name number 4, 8-bit
  std::string family;  // first Macintosh record with name number 1
};

enum TtfStyle : uint32_t { kTtfBold = 1, kTtfItalic = 2 };

// Number of directory records that follow the header; -1 when the header is short.
int32_t TtfTableCount(Bytes header);
// Finds the three tables in header and directory; false when the directory is cut, a table is missing that
// every font has (name, head), or one reaches beyond the file.
[[nodiscard]] bool TtfFindTables(Bytes directory, uint32_t fileSize, TtfTables& tables);
// False when the table is damaged or lacks one of the two names.
[[nodiscard]] bool TtfReadNames(Bytes nameTable, TtfNames& names);
// Font revision: major in the high 16 bits, minor in the low 16.
[[nodiscard]] bool TtfReadRevision(Bytes headTable, uint32_t& revision);
// TtfStyle bits.
[[nodiscard]] bool TtfReadStyle(Bytes os2Table, uint32_t& style);
