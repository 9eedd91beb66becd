// Str: searching, editing and cutting.
#include <algorithm>
#include <cstring>

#include "base/assert.h"
#include "base/str.h"

namespace {

constexpr std::string_view kSpaces = " \t\r\n\v\f";

int32_t Sign(int value) { return (value > 0) - (value < 0); }

const char* NotNull(const char* text) {
  VT_ASSERT(text != nullptr, "cp");
  return text != nullptr ? text : "";
}

int32_t IndexIn(const char* base, const char* found) {
  return found != nullptr ? static_cast<int32_t>(found - base) : -1;
}

}  // namespace

int32_t Str::Compare(const char* text) const {
  CheckUnlocked();
  return Sign(std::strcmp(mCharP, NotNull(text)));
}

int32_t Str::Compare(const char* text, int32_t count) const {
  if (count < 0) return Compare(text);
  CheckUnlocked();
  return Sign(std::strncmp(mCharP, NotNull(text), static_cast<size_t>(count)));
}

int32_t Str::ICompare(const char* text) const {
  CheckUnlocked();
  return ICompare(mCharP, NotNull(text));
}

int32_t Str::Find(char ch, int32_t start, bool caseSensitive) const {
  const char text[] = {ch, '\0'};
  return Find(text, start, caseSensitive);
}

int32_t Str::Find(const char* text, int32_t start, bool caseSensitive) const {
  CheckUnlocked();
  VT_ASSERT((start >= 0) && (start <= mLen), "(start >= 0) && (start <= mLen)");
  if (start > mLen) return -1;
  const char* const from = mCharP + std::max(start, 0);
  const char* const pattern = NotNull(text);
  return IndexIn(mCharP, caseSensitive ? std::strstr(from, pattern) : IFind(from, pattern));
}

int32_t Str::FindLast(char ch) const {
  CheckUnlocked();
  const size_t index = View().rfind(ch);
  return index != std::string_view::npos ? static_cast<int32_t>(index) : -1;
}

void Str::Delete(int32_t pos, int32_t count) {
  CheckUnlocked();
  VT_ASSERT(pos < mLen, "pos < mLen");
  VT_ASSERT(count >= -1, "count >= -1");
  VT_ASSERT(count == -1 || int64_t{pos} + count <= mLen, "count == -1 || (pos + count) <= mLen");
  if (pos < 0 || pos >= mLen || count < -1) return;
  const int32_t rest = mLen - pos;
  const int32_t removed = count == -1 ? rest : std::min(count, rest);
  std::memmove(mCharP + pos, mCharP + pos + removed, static_cast<size_t>(rest - removed) + 1);
  mLen -= removed;
  CheckLength();
}

void Str::Insert(const char* text, int32_t pos) {
  CheckUnlocked();
  VT_ASSERT(pos <= mLen, "pos <= Length()");
  const char* const inserted = NotNull(text);
  if (IsInside(inserted)) {
    Insert(Str(inserted).Chars(), pos);  // shifting the tail would change the text while it is copied
    return;
  }
  const size_t length = std::strlen(inserted);
  if (length == 0) return;
  const int32_t at = std::clamp(pos, 0, mLen);
  Reserve(int64_t{mLen} + static_cast<int64_t>(length) + 1);
  std::memmove(mCharP + at + length, mCharP + at, static_cast<size_t>(mLen - at) + 1);
  std::memcpy(mCharP + at, inserted, length);
  mLen += static_cast<int32_t>(length);
  CheckLength();
}

void Str::Insert(char ch, int32_t pos) {
  const char text[] = {ch, '\0'};
  Insert(text, pos);
}

void Str::SetAt(int32_t pos, char ch) {
  CheckUnlocked();
  VT_ASSERT(pos < mLen, "pos < mLen");
  VT_ASSERT(ch != '\0', "ch != '\\0'");
  // The last place of the buffer is kept for the terminator.
  if (pos < 0 || pos >= mCapacity - 1) return;
  mCharP[pos] = ch;
  if (pos == mLen) mCharP[pos + 1] = '\0';
  CheckLength();
}

void Str::Overwrite(const char* text, int32_t pos) {
  CheckUnlocked();
  const std::string_view source = NotNull(text);
  const int64_t end = int64_t{pos} + static_cast<int64_t>(source.size());
  VT_ASSERT(end <= mLen, "(pos + Str::Length(cp)) <= mLen");
  const int64_t from = std::max(pos, 0);
  const int64_t to = std::min<int64_t>(end, mLen);
  if (from >= to) return;
  std::memmove(mCharP + from, source.data() + (from - pos), static_cast<size_t>(to - from));
  CheckLength();
}

void Str::TrimLeft() {
  CheckUnlocked();
  const size_t first = std::min(View().find_first_not_of(kSpaces), View().size());
  if (first > 0) Delete(0, static_cast<int32_t>(first));
}

void Str::TrimRight() {
  CheckUnlocked();
  const size_t end = View().find_last_not_of(kSpaces) + 1;  // npos + 1 is 0
  if (end < View().size()) Delete(static_cast<int32_t>(end), -1);
}

void Str::SetSubstring(const char* text, int32_t pos, int32_t count) {
  CheckUnlocked();
  const std::string_view source = NotNull(text);
  const int32_t length = static_cast<int32_t>(source.size());
  VT_ASSERT(count >= -1, "count >= -1");
  VT_ASSERT(pos <= length, "pos <= cp_len");
  const int32_t from = std::min(pos, length);
  VT_ASSERT(int64_t{from} + count <= length, "(pos + count) <= cp_len");
  const int32_t rest = length - std::max(from, 0);
  const int32_t taken = count == -1 ? rest : std::clamp(count, 0, rest);
  SetText(source.substr(static_cast<size_t>(std::max(from, 0)), static_cast<size_t>(taken)));
}

void Str::Left(const char* text, int32_t count) { SetSubstring(text, 0, count); }

void Str::Right(const char* text, int32_t count) {
  SetSubstring(text, static_cast<int32_t>(std::strlen(NotNull(text))) - count, count);
}
