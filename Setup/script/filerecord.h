#pragma once
// Records of the script's section "files" (pure): "<Disk>,<Source>,<Dest>,<Size>".
#include <cstdint>
#include <string>
#include <string_view>

#include "base/leadbyte.h"

struct RecordFields {
  std::string_view disk;
  std::string_view source;
  std::string_view dest;
  std::string_view size;
};

// Splits a record at its commas; fields behind the fourth are ignored. False when fewer than four fields are
// present (an empty one is not).
[[nodiscard]] bool SplitRecord(std::string_view text, RecordFields& fields);
// Number of fields that the commas make, empty ones counted.
size_t CountRecordFields(std::string_view text);
// Which text to take the fields from when a variable's value brought commas of its own: true
// when the raw record has exactly four fields and the expanded one more, so that each raw field
// must be expanded by itself.
[[nodiscard]] bool SplitBeforeExpanding(std::string_view raw, std::string_view expanded);
// Base-10 integer at the start of the text (blanks and a sign allowed, the rest ignored), limited to what 32
// bits hold with a sign or without.
int64_t ParseRecordNumber(std::string_view text);
// Whether the text is such a number and nothing more (blanks around it allowed).
bool IsRecordNumber(std::string_view text);
// The record with everything behind its last comma replaced by `size`.
std::string WithRecordSize(std::string_view record, int64_t size);

// Splits a path at its last backslash. `dir` comes without trailing backslash, except a drive's root, and is
// empty when there is none; `name` is empty when the path ends in a backslash.
void SplitPathText(std::string_view path, LeadByteTest lead, std::string_view& dir, std::string_view& name);

struct RecordDest {
  std::string_view dir;       // without trailing backslash, except a drive's root; empty when there is none
  std::string_view name;      // empty when the text ends in a backslash
  bool hidden = false;        // "*"
  bool keepExisting = false;  // "?"
};
// Takes the prefix characters off a destination and splits the rest.
RecordDest SplitRecordDest(std::string_view dest, LeadByteTest lead);
