// WStr: searching, editing and cutting.
#include <windows.h>

#include <algorithm>
#include <cwchar>
#include <string>

#include "base/assert.h"
#include "base/string.h"

namespace {

wchar_t Folded(wchar_t unit) {
  if (unit < 0x80) return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + (L'a' - L'A')) : unit;
  CharLowerBuffW(&unit, 1);
  return unit;
}

int32_t FoldedCompare(std::wstring_view a, std::wstring_view b) {
  for (size_t i = 0; i < a.size() && i < b.size(); ++i) {
    const wchar_t unitA = Folded(a[i]);
    const wchar_t unitB = Folded(b[i]);
    if (unitA != unitB) return unitA < unitB ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

int32_t Compare(std::wstring_view a, std::wstring_view b) {
  const int order = a.compare(b);
  return (order > 0) - (order < 0);
}

int32_t Index(size_t index) { return index != std::wstring_view::npos ? static_cast<int32_t>(index) : -1; }

}  // namespace

std::wstring_view WStr::AtMost(const wchar_t* text, int32_t count) {
  if (text == nullptr || count < 0) return ViewOf(text);
  size_t length = 0;
  while (length < static_cast<size_t>(count) && text[length] != L'\0') ++length;
  return {text, length};
}

void WStr::Append(wchar_t ch) { Append(ch, 1); }

void WStr::Append(const wchar_t* text) {
  CheckUnlocked();
  InsertAt(ViewOf(text), mLen);
}

void WStr::Append(const wchar_t* text, int32_t count) {
  CheckUnlocked();
  InsertAt(AtMost(text, count), mLen);
}

void WStr::Append(wchar_t ch, int32_t times) {
  CheckUnlocked();
  if (times == 0 || ch == L'\0') return;
  Reserve(int64_t{mLen} + times + 1);  // reports a count so far below nothing that no text would be left
  if (times > 0) InsertAt(std::wstring(static_cast<size_t>(times), ch), mLen);
}

void WStr::Prepend(const wchar_t* text, int32_t count) {
  CheckUnlocked();
  InsertAt(AtMost(text, count), 0);
}

int32_t WStr::Compare(const wchar_t* text) const {
  CheckUnlocked();
  return ::Compare(View(), ViewOf(text));
}

int32_t WStr::Compare(const wchar_t* text, int32_t count) const {
  CheckUnlocked();
  return ::Compare(AtMost(mCharP, count), AtMost(text, count));
}

int32_t WStr::ICompare(const wchar_t* text) const {
  CheckUnlocked();
  return FoldedCompare(View(), ViewOf(text));
}

int32_t WStr::Find(wchar_t ch, int32_t start, bool caseSensitive) const {
  const wchar_t text[] = {ch, L'\0'};
  return Find(text, start, caseSensitive);
}

int32_t WStr::Find(const wchar_t* text, int32_t start, bool caseSensitive) const {
  CheckUnlocked();
  VT_ASSERT((start >= 0) && (start <= mLen), "(start >= 0) && (start <= mLen)");
  if (start > mLen) return -1;
  const int32_t from = std::max(start, 0);
  if (caseSensitive) return Index(View().find(ViewOf(text), static_cast<size_t>(from)));
  const wchar_t* const found = IFind(mCharP + from, text);
  return found != nullptr ? static_cast<int32_t>(found - mCharP) : -1;
}

int32_t WStr::FindLast(wchar_t ch) const {
  CheckUnlocked();
  return Index(View().rfind(ch));
}

void WStr::Delete(int32_t pos, int32_t count) {
  CheckUnlocked();
  VT_ASSERT(pos < mLen, "pos < mLen");
  VT_ASSERT(count >= -1, "count >= -1");
  VT_ASSERT(count == -1 || int64_t{pos} + count <= mLen, "count == -1 || (pos + count) <= mLen");
  if (pos < 0 || pos >= mLen || count < -1) return;
  const int64_t moveSize = count == -1 ? 0 : int64_t{mLen} - pos - count;
  VT_ASSERT(moveSize >= 0, "moveSize>=0");
  const auto kept = static_cast<int32_t>(std::max<int64_t>(moveSize, 0));
  std::wmemmove(mCharP + pos, mCharP + mLen - kept, static_cast<size_t>(kept) + 1);
  mLen = pos + kept;
}

void WStr::Insert(const wchar_t* text, int32_t pos) {
  CheckUnlocked();
  VT_ASSERT((pos >= 0) && (pos <= mLen), "(pos >= 0) && (pos <= Length())");
  InsertAt(ViewOf(text), std::clamp(pos, 0, mLen));
}

void WStr::Insert(wchar_t ch, int32_t pos) {
  const wchar_t text[] = {ch, L'\0'};
  Insert(text, pos);
}

void WStr::SetAt(int32_t pos, wchar_t ch) {
  CheckUnlocked();
  VT_ASSERT((pos >= 0) && (pos <= mLen), "(pos >= 0) && (pos <= mLen)");
  VT_ASSERT(ch != L'\0', "ch != '\\0'");
  // The last place of the buffer is kept for the terminator.
  if (pos < 0 || pos >= mCapacity - 1) return;
  mCharP[pos] = ch;
  if (pos == mLen && ch != L'\0') mCharP[++mLen] = L'\0';
}

void WStr::Overwrite(const wchar_t* text, int32_t pos) {
  CheckUnlocked();
  const std::wstring_view source = ViewOf(text);
  VT_ASSERT((pos >= 0) && (int64_t{pos} + static_cast<int64_t>(source.size()) <= mLen),
            "(pos >= 0) && ((pos + WStr::Length(cp)) <= mLen)");
  LayOver(source, pos);
}

void WStr::TrimLeft() {
  CheckUnlocked();
  const int32_t count = CountLeadingSpaces();
  if (count > 0) Delete(0, count);
}

void WStr::TrimRight() {
  CheckUnlocked();
  const int32_t length = LengthWithoutTrailingSpaces();
  if (length < mLen) Delete(length, -1);
}

void WStr::SetSubstring(const wchar_t* text, int32_t pos, int32_t count) {
  CheckUnlocked();
  SetText(Substring(ViewOf(text), pos, count));
}

void WStr::Left(const wchar_t* text, int32_t count) { SetSubstring(text, 0, count); }

void WStr::Right(const wchar_t* text, int32_t count) { SetSubstring(text, Length(text) - count, count); }

int32_t WStr::Replace(wchar_t ch, wchar_t replace) {
  CheckUnlocked();
  VT_ASSERT(ch > 0, "ch > 0");
  VT_ASSERT(replace > 0, "replace > 0");
  if (ch == L'\0' || replace == L'\0') return 0;
  return ReplaceText({&ch, 1}, {&replace, 1});
}

int32_t WStr::Replace(wchar_t ch, const wchar_t* replace) {
  CheckUnlocked();
  VT_ASSERT(ch > 0, "ch > 0");
  VT_ASSERT(replace != nullptr, "replace");
  if (ch == L'\0' || replace == nullptr) return 0;
  return ReplaceText({&ch, 1}, replace);
}

int32_t WStr::Replace(const wchar_t* text, const wchar_t* replace) {
  CheckUnlocked();
  const std::wstring_view searched = ViewOf(text);
  VT_ASSERT(!searched.empty(), "WStr::Length(cp) > 0");
  VT_ASSERT(replace != nullptr, "replace");
  if (searched.empty() || replace == nullptr) return 0;
  return ReplaceText(searched, replace);
}

void WStr::Split(wchar_t ch, WStr& left, WStr& right) const {
  CheckUnlocked();
  VT_ASSERT((&left != this) && (&right != this), "(&left != this) && (&right != this)");
  const std::wstring whole(View());  // either result may be this very string
  const std::wstring_view text = whole;
  const size_t found = text.find(ch);
  left.SetText(text.substr(0, found));
  right.SetText(found != std::wstring_view::npos ? text.substr(found + 1) : std::wstring_view());
}

int32_t WStr::ICompare(const wchar_t* a, const wchar_t* b) { return FoldedCompare(ViewOf(a), ViewOf(b)); }

const wchar_t* WStr::IFind(const wchar_t* text, const wchar_t* pattern) {
  const std::wstring_view searched = ViewOf(text);
  const std::wstring_view wanted = ViewOf(pattern);
  if (wanted.size() > searched.size()) return nullptr;
  for (size_t start = 0; start <= searched.size() - wanted.size(); ++start) {
    if (FoldedCompare(searched.substr(start, wanted.size()), wanted) == 0) return searched.data() + start;
  }
  return nullptr;
}

int32_t WStr::ReplaceText(std::wstring_view text, std::wstring_view replace) {
  std::wstring result;
  int32_t replaced = 0;
  size_t from = 0;
  for (size_t found; (found = View().find(text, from)) != std::wstring_view::npos; ++replaced) {
    result.append(View(), from, found - from).append(replace);
    from = found + text.size();
  }
  if (replaced == 0) return 0;
  result.append(View(), from);
  SetText(result);
  return replaced;
}
