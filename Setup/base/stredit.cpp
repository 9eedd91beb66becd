// Str: searching, editing and cutting.
#include <algorithm>
#include <cstring>

#include "base/assert.h"
#include "base/str.h"

namespace {

int32_t Sign(int value) { return (value > 0) - (value < 0); }

int32_t IndexIn(const char* base, const char* found) {
  return found != nullptr ? static_cast<int32_t>(found - base) : -1;
}

}  // namespace

int32_t Str::Compare(const char* text) const {
  CheckUnlocked();
  return Sign(std::strcmp(mCharP, ViewOf(text).data()));
}

int32_t Str::Compare(const char* text, int32_t count) const {
  if (count < 0) return Compare(text);
  CheckUnlocked();
  return Sign(std::strncmp(mCharP, ViewOf(text).data(), static_cast<size_t>(count)));
}

int32_t Str::ICompare(const char* text) const {
  CheckUnlocked();
  return ICompare(mCharP, ViewOf(text).data());
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
  const char* const pattern = ViewOf(text).data();
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
  InsertAt(ViewOf(text), std::clamp(pos, 0, mLen));
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
  const std::string_view source = ViewOf(text);
  VT_ASSERT(int64_t{pos} + static_cast<int64_t>(source.size()) <= mLen, "(pos + Str::Length(cp)) <= mLen");
  LayOver(source, pos);
  CheckLength();
}

void Str::TrimLeft() {
  CheckUnlocked();
  const int32_t count = CountLeadingSpaces();
  if (count > 0) Delete(0, count);
}

void Str::TrimRight() {
  CheckUnlocked();
  const int32_t length = LengthWithoutTrailingSpaces();
  if (length < mLen) Delete(length, -1);
}

void Str::SetSubstring(const char* text, int32_t pos, int32_t count) {
  CheckUnlocked();
  SetText(Substring(ViewOf(text), pos, count));
}

void Str::Left(const char* text, int32_t count) { SetSubstring(text, 0, count); }

void Str::Right(const char* text, int32_t count) { SetSubstring(text, Length(text) - count, count); }
