#include "script/files.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <string>

#include "base/assert.h"
#include "base/leadbyte.h"
#include "messages/format.h"
#include "platform/fspath.h"
#include "script/setupinf.h"
#include "script/tempnotes.h"
#include "ui/err.h"

namespace {

constexpr int32_t kNone = -1;
constexpr unsigned kFatalMessage = 4136;
constexpr uint32_t kNoMemoryText = 11010;

struct Entry {
  std::string destName;
  std::string destDir;
  std::string srcPath;
  int32_t disk;
  uint32_t size;
  bool hidden;
  uint32_t hash;
  int32_t next;  // the next entry of the same bucket
};

// The run's list. Buckets find an equal destination without walking the list.
struct FileList {
  std::deque<Entry> entries;
  std::vector<int32_t> buckets;
  uint64_t totalSize = 0;
  int32_t nDisks = 0;
};
FileList gList;

constexpr size_t kFirstBuckets = 64;  // a power of two, as all later counts

// Bytes that differ only in case get the same number. Double-byte characters may share numbers with others,
// which costs a comparison.
const unsigned char* FoldTable() {
  static unsigned char table[256];
  if (table['A'] == 0) {
    for (unsigned i = 0; i < 256; ++i) {
      char ch[2] = {static_cast<char>(i), '\0'};
      if (!IsAnsiLeadByte(static_cast<unsigned char>(i))) CharLowerBuffA(ch, 1);
      table[i] = static_cast<unsigned char>(ch[0]);
    }
  }
  return table;
}

uint32_t FoldedHash(const char* text, uint32_t hash) {
  constexpr uint32_t kPrime = 16777619;
  const unsigned char* table = FoldTable();
  for (; *text != '\0'; ++text) hash = (hash ^ table[static_cast<unsigned char>(*text)]) * kPrime;
  return (hash ^ 0xFF) * kPrime;
}

uint32_t DestHash(const char* destName, const char* destDir) {
  constexpr uint32_t kStart = 2166136261u;
  return FoldedHash(destDir, FoldedHash(destName, kStart));
}

bool IsListed(const char* destName, const char* destDir, uint32_t hash) {
  if (gList.buckets.empty()) return false;
  for (int32_t i = gList.buckets[hash & (gList.buckets.size() - 1)]; i != kNone;) {
    const Entry& entry = gList.entries[static_cast<size_t>(i)];
    if (entry.hash == hash && Str::ICompare(entry.destName.c_str(), destName) == 0 &&
        Str::ICompare(entry.destDir.c_str(), destDir) == 0)
      return true;
    i = entry.next;
  }
  return false;
}

void LinkEntry(size_t index) {
  Entry& entry = gList.entries[index];
  int32_t& bucket = gList.buckets[entry.hash & (gList.buckets.size() - 1)];
  entry.next = bucket;
  bucket = static_cast<int32_t>(index);
}

void AppendEntry(Entry&& entry) {
  gList.entries.push_back(std::move(entry));
  if (gList.entries.size() <= gList.buckets.size()) {
    LinkEntry(gList.entries.size() - 1);
    return;
  }
  gList.buckets.assign(std::max(kFirstBuckets, gList.buckets.size() * 2), kNone);
  for (size_t i = 0; i < gList.entries.size(); ++i) LinkEntry(i);
}

// Bytes that the next entry needs at most, its texts and, when it is due, a larger bucket table included.
size_t RoomToGrow() {
  constexpr size_t kEntryRoom = sizeof(Entry) + 4 * size_t{FS::kMaxPathNameLen};
  const bool rehash = gList.entries.size() >= gList.buckets.size();
  return kEntryRoom +
         (rehash ? 2 * std::max(kFirstBuckets, gList.buckets.size()) * sizeof(gList.buckets[0]) : 0);
}

template <size_t kSize>
bool Fits(const char* text, const char (&)[kSize]) {
  return std::strlen(text) < kSize;
}

template <size_t kSize>
void CopyTo(char (&field)[kSize], const std::string& text) {
  const size_t length = std::min(text.size(), kSize - 1);
  std::memcpy(field, text.data(), length);
  field[length] = '\0';
}

// Texts that a record, or a path made of it, cannot hold are refused: a cut path would name another file.
bool FitsRecord(const char* destName, const char* destDir, const char* srcPath) {
  static const FileRecord record = {};
  if (Fits(destName, record.destName) && Fits(destDir, record.destDir) && Fits(srcPath, record.srcPath) &&
      JoinPath(destDir, destName).Length() < FS::kMaxPathNameLen)
    return true;
  LogScriptError(
      Message("A path of the file \"<DestPath>\" is too long; the file is left out.", kTemplateLiteral)
          .With("DestPath", JoinPath(destDir, destName)));
  return false;
}

}  // namespace

bool PrepareFileList() {
  DeleteLeftovers();
  if (!MemoryAvailable(kFirstBuckets * sizeof(gList.buckets[0]))) return false;
  gList = FileList();
  gList.buckets.assign(kFirstBuckets, kNone);
  return true;
}

bool AddFile(const char* destName, const char* destDir, const char* srcPath, int32_t disk, uint32_t size,
             bool hidden) {
  if (!VT_ASSERT(destName != nullptr, "destName") || !VT_ASSERT(destDir != nullptr, "destDir") ||
      !VT_ASSERT(srcPath != nullptr, "srcPath"))
    return false;
  if (!FitsRecord(destName, destDir, srcPath)) return false;
  const uint32_t hash = DestHash(destName, destDir);
  if (IsListed(destName, destDir, hash)) return false;
  if (!MemoryAvailable(RoomToGrow())) FatalError(kFatalMessage, kNoMemoryText);
  AppendEntry({destName, destDir, srcPath, disk, size, hidden, hash, kNone});
  gList.totalSize += size;
  gList.nDisks = std::max(gList.nDisks, disk);
  return true;
}

int32_t GetNumFiles() { return static_cast<int32_t>(gList.entries.size()); }

FileRecord GetFileRec(int32_t recNum) {
  FileRecord record = {};
  if (!VT_ASSERT(recNum >= 0, "recNum >= 0") || !VT_ASSERT(recNum < GetNumFiles(), "recNum < GetNumFiles()"))
    return record;
  const Entry& entry = gList.entries[static_cast<size_t>(recNum)];
  CopyTo(record.destName, entry.destName);
  CopyTo(record.destDir, entry.destDir);
  CopyTo(record.srcPath, entry.srcPath);
  record.disk = entry.disk;
  record.size = entry.size;
  record.hidden = entry.hidden ? 1 : 0;
  return record;
}

int32_t FindFile(const char* fileName) {
  if (!VT_ASSERT(fileName != nullptr, "fileName")) return kNone;
  for (size_t i = 0; i < gList.entries.size(); ++i)
    if (Str::ICompare(gList.entries[i].destName.c_str(), fileName) == 0) return static_cast<int32_t>(i);
  return kNone;
}

int32_t NDisks() { return gList.nDisks; }

uint64_t TotalFileSize() { return gList.totalSize; }
