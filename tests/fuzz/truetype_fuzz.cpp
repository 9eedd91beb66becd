// sources: fonts/ttfreader.cpp
// Whatever the file, the tables found lie inside it, the names come from its name table, and bytes behind a
// table change nothing.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

#include "fonts/ttfreader.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

bool Inside(const TtfRange& range, size_t size) {
  return range.offset <= size && range.length <= size - range.offset;
}

void CheckName(Bytes table, const std::string& name) {
  Require(!name.empty() && name.size() <= 0xFFFF && name.find('\0') == std::string::npos);
  const Bytes bytes = std::as_bytes(std::span<const char>(name.data(), name.size()));
  Require(std::search(table.begin(), table.end(), bytes.begin(), bytes.end()) != table.end());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const Bytes file = std::as_bytes(std::span<const uint8_t>(data, size));
  const int32_t count = TtfTableCount(file);
  Require((count >= 0) == (size >= kTtfHeaderSize) && count <= 0xFFFF);

  // The input as a name table of its own, so that mutations reach it without a directory.
  TtfNames own;
  if (TtfReadNames(file, own)) {
    CheckName(file, own.full);
    CheckName(file, own.family);
    std::vector<std::byte> longer(file.begin(), file.end());
    longer.push_back(std::byte{1});
    TtfNames again;
    Require(TtfReadNames(longer, again) && again.full == own.full && again.family == own.family);
  }

  TtfTables tables;
  if (!TtfFindTables(file, static_cast<uint32_t>(size), tables)) return 0;
  Require(Inside(tables.name, size) && Inside(tables.head, size) && Inside(tables.os2, size));
  Require(tables.name.length != 0 && tables.head.length != 0);
  TtfNames names;
  if (TtfReadNames(file.subspan(tables.name.offset, tables.name.length), names)) {
    CheckName(file, names.full);
    CheckName(file, names.family);
  }
  uint32_t revision = 0;
  Require(TtfReadRevision(file.subspan(tables.head.offset, tables.head.length), revision) ==
          (tables.head.length >= 8));
  uint32_t style = 0;
  Require(TtfReadStyle(file.subspan(tables.os2.offset, tables.os2.length), style) ==
          (tables.os2.length >= 64));
  Require(style <= (kTtfBold | kTtfItalic));
  // A file that is said to be shorter never gives a table behind its end.
  TtfTables cut;
  if (TtfFindTables(file, static_cast<uint32_t>(size / 2), cut))
    Require(Inside(cut.name, size / 2) && Inside(cut.head, size / 2));
  return 0;
}
