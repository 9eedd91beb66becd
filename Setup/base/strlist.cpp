#include "base/strlist.h"

#include <algorithm>
#include <cstring>

#include "base/assert.h"

namespace {

constexpr uint32_t kHeaderSize = 2;  // the 16-bit count
constexpr uint32_t kMaxEntry = 255;  // characters that a length byte can tell
constexpr int32_t kMaxCount = 0xFFFF;

int32_t CountIn(const uint8_t* block) { return block[0] | block[1] << 8; }

void SetCount(uint8_t* block, int32_t count) {
  block[0] = static_cast<uint8_t>(count & 0xFF);
  block[1] = static_cast<uint8_t>(count >> 8);
}

// The text as an entry stores it.
std::string_view EntryText(const char* text) {
  const int32_t length = Str::Length(text);
  VT_ASSERT(length <= static_cast<int32_t>(kMaxEntry), "len <= 255");
  return {length > 0 ? text : "", std::min(static_cast<uint32_t>(length), kMaxEntry)};
}

void WriteEntry(uint8_t* entry, std::string_view text) {
  entry[0] = static_cast<uint8_t>(text.size());
  std::memcpy(entry + 1, text.data(), text.size());
}

uint8_t* Bytes(const MemLock& lock) { return reinterpret_cast<uint8_t*>(lock.Ptr()); }

}  // namespace

StrList::StrList(int32_t count) : mBlock(kHeaderSize, MemHandle::kZero) {
  for (int32_t i = 0; i < count; ++i) Append("");
}

int32_t StrList::Count() {
  const MemLock lock(mBlock);
  return CountIn(Bytes(lock));
}

void StrList::Append(const char* text) {
  const std::string_view added = EntryText(text);
  const int32_t count = Count();
  if (!VT_ASSERT(count < kMaxCount, "count < 65535")) return;
  const uint32_t end = mBlock.Size();
  mBlock.Resize(end + 1 + static_cast<uint32_t>(added.size()));
  const MemLock lock(mBlock);
  WriteEntry(Bytes(lock) + end, added);
  SetCount(Bytes(lock), count + 1);
}

void StrList::Replace(int32_t i, const char* text) {
  const std::string_view replacement = EntryText(text);
  uint32_t place = 0;
  uint32_t formerLength = 0;
  {
    const MemLock lock(mBlock);
    const uint8_t* const entry = GetMemStrPtr(Bytes(lock), i);
    if (entry == nullptr) return;
    place = static_cast<uint32_t>(entry - Bytes(lock));
    formerLength = *entry;
  }
  const auto length = static_cast<uint32_t>(replacement.size());
  const uint32_t formerSize = mBlock.Size();
  const uint32_t size = formerSize - formerLength + length;
  if (size > formerSize) mBlock.Resize(size);
  {
    const MemLock lock(mBlock);
    uint8_t* const entry = Bytes(lock) + place;
    const uint32_t behind = formerSize - place - 1 - formerLength;
    std::memmove(entry + 1 + length, entry + 1 + formerLength, behind);
    WriteEntry(entry, replacement);
  }
  if (size < formerSize) mBlock.Resize(size);
}

void StrList::Get(int32_t i, char* buffer, int32_t strMax) {
  if (buffer == nullptr || strMax <= 0) return;
  buffer[0] = '\0';
  const MemLock lock(mBlock);
  const uint8_t* const entry = GetMemStrPtr(Bytes(lock), i);
  if (entry == nullptr) return;
  const int32_t len = *entry;
  VT_ASSERT(len < strMax, "len < strMax");
  const auto copied = static_cast<size_t>(std::min(len, strMax - 1));
  std::memcpy(buffer, entry + 1, copied);
  buffer[copied] = '\0';
}

Str StrList::Get(int32_t i) {
  char text[kMaxEntry + 1];
  Get(i, text, sizeof(text));
  return text;
}

const uint8_t* GetMemStrPtr(const uint8_t* block, int32_t i) {
  if (!VT_ASSERT((i >= 0) && (i < CountIn(block)), "(i >= 0) && (i < count)")) return nullptr;
  const uint8_t* entry = block + kHeaderSize;
  for (; i > 0; --i) entry += 1 + *entry;
  return entry;
}
