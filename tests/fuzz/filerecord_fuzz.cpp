// sources: script/filerecord.cpp script/leftovers.cpp script/wininit.cpp platform/pathparts.cpp
// Any text splits as a file record, as the list of temporary files and as the list of renames; no field
// reaches outside its text, and what is written reads back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "script/filerecord.h"
#include "script/leftovers.h"
#include "script/wininit.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

bool IsShiftJisLead(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9f) || (byte >= 0xe0 && byte <= 0xfc);
}

void RequireInside(std::string_view part, std::string_view text) {
  if (part.empty()) return;
  Require(part.data() >= text.data() && part.data() + part.size() <= text.data() + text.size());
}

void CheckRecord(std::string_view text) {
  RecordFields fields;
  const bool whole = SplitRecord(text, fields);
  for (const std::string_view field : {fields.disk, fields.source, fields.dest, fields.size}) {
    RequireInside(field, text);
    Require(field.find(',') == std::string_view::npos);
    Require(!whole || !field.empty());
  }
  const size_t count = CountRecordFields(text);
  Require(!whole || count >= 4);
  Require(!SplitBeforeExpanding(text, text));
  const int64_t number = ParseRecordNumber(text);
  Require(ParseRecordNumber(std::to_string(number)) == number);
  const std::string changed = WithRecordSize(text, number);
  Require(CountRecordFields(changed) == count);
  RecordFields after;
  if (whole && count == 4 && SplitRecord(changed, after)) {
    Require(after.dest == fields.dest);
    Require(ParseRecordNumber(after.size) == number);
  }
}

void CheckDest(std::string_view text) {
  for (const LeadByteTest lead : {LeadByteTest{nullptr}, LeadByteTest{IsShiftJisLead}}) {
    const RecordDest dest = SplitRecordDest(text, lead);
    RequireInside(dest.dir, text);
    RequireInside(dest.name, text);
    Require(dest.dir.size() + dest.name.size() <= text.size());
    if (lead == nullptr) Require(dest.name.find('\\') == std::string_view::npos);
  }
}

void CheckNotes(std::string_view text) {
  const LeftoverNotes notes = ParseLeftoverNotes(text);
  std::string again;
  for (const LeftoverNotes::Folder& folder : notes.folders) again += FolderNote(folder.dir, folder.keep);
  for (const std::string& file : notes.files) again += FileNote(file);
  const LeftoverNotes second = ParseLeftoverNotes(again);
  Require(second.folders.size() == notes.folders.size() && second.files == notes.files);
  for (size_t i = 0; i < notes.folders.size(); ++i) {
    Require(second.folders[i].dir == notes.folders[i].dir);
    Require(second.folders[i].keep == notes.folders[i].keep);
  }
  if (IsInstallTempName(text)) Require(text.size() >= 8 && text.size() <= 11);
  if (IsOwnTempPath(text, nullptr)) Require(text.find("\\~") != std::string_view::npos);
}

void CheckWinInit(std::string_view text) {
  const std::string added = AddWinInitRename(text, "A", "B");
  Require(added.size() > text.size());
  Require(added.find("A=B\r\n") != std::string::npos);
  // With a header there, the second line goes right above the first and nothing else changes.
  const std::string twice = AddWinInitRename(added, "C", "D");
  Require(twice.size() == added.size() + 5 && twice.find("C=D\r\n") != std::string::npos);
  Require(!IsShortName(text) || text.size() <= 12);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  CheckRecord(text);
  CheckDest(text);
  CheckNotes(text);
  CheckWinInit(text);
  return 0;
}
