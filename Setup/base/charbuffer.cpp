#include "base/charbuffer.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <string>
#include <utility>

#include "base/assert.h"
#include "base/fatal.h"

namespace {

template <class Char>
constexpr Char kSpaces[] = {' ', '\t', '\r', '\n', '\v', '\f', '\0'};

}  // namespace

int64_t CapacityFor(int64_t needed) {
  constexpr int64_t kGrowStep = 100;
  if (!VT_ASSERT(needed >= 0, "needed >= 0")) return 0;
  return (needed + kGrowStep - 1) / kGrowStep * kGrowStep;
}

template <class Char>
Char* CharBuffer<Char>::Lock(int32_t size) {
  Reserve(std::max(size, 1));
  mLocked = true;
  return mCharP;
}

template <class Char>
void CharBuffer<Char>::Unlock() {
  VT_ASSERT(mLocked, "mLocked");
  if (OwnsBuffer()) {
    // A writer that forgot the terminator must not lead the search past the buffer.
    mCharP[mCapacity - 1] = '\0';
    mLen = static_cast<int32_t>(TextView(mCharP).size());
  }
  mLocked = false;
}

template <class Char>
auto CharBuffer<Char>::ViewOf(const Char* text) -> TextView {
  return VT_ASSERT(text != nullptr, "cp") ? TextView(text) : TextView(sEmpty);
}

template <class Char>
std::unique_ptr<Char[]> CharBuffer<Char>::Reserve(int64_t needed) {
  constexpr int64_t kLargest = std::numeric_limits<int32_t>::max() / int64_t{sizeof(Char)};
  const int64_t capacity = CapacityFor(needed);
  if (capacity <= mCapacity) return nullptr;
  if (capacity > kLargest) StopForMemory(MemError::kAlloc);

  std::unique_ptr<Char[]> buffer(new Char[static_cast<size_t>(capacity)]);
  View().copy(buffer.get(), View().size());
  buffer[static_cast<size_t>(mLen)] = '\0';
  std::unique_ptr<Char[]> former(OwnsBuffer() ? mCharP : nullptr);
  mCharP = buffer.release();
  mCapacity = static_cast<int32_t>(capacity);
  return former;
}

template <class Char>
void CharBuffer<Char>::SetText(TextView text) {
  if (text.empty() && !OwnsBuffer()) return;
  const auto former = Reserve(static_cast<int64_t>(text.size()) + 1);
  std::char_traits<Char>::move(mCharP, text.data(), text.size());
  mLen = static_cast<int32_t>(text.size());
  mCharP[mLen] = '\0';
}

template <class Char>
void CharBuffer<Char>::InsertAt(TextView text, int32_t pos) {
  if (text.empty()) return;
  // Moving the tail would change a text that lies in it.
  const std::basic_string<Char> copy(IsInside(text.data()) ? text : TextView());
  if (!copy.empty()) text = copy;
  Reserve(int64_t{mLen} + static_cast<int64_t>(text.size()) + 1);
  std::char_traits<Char>::move(mCharP + pos + text.size(), mCharP + pos, static_cast<size_t>(mLen - pos));
  text.copy(mCharP + pos, text.size());
  mLen += static_cast<int32_t>(text.size());
  mCharP[mLen] = '\0';
}

template <class Char>
void CharBuffer<Char>::LayOver(TextView text, int32_t pos) {
  const int64_t from = std::max(pos, 0);
  const int64_t to = std::min<int64_t>(int64_t{pos} + static_cast<int64_t>(text.size()), mLen);
  if (from < to)
    std::char_traits<Char>::move(mCharP + from, text.data() + (from - pos), static_cast<size_t>(to - from));
}

template <class Char>
auto CharBuffer<Char>::Substring(TextView text, int32_t pos, int32_t count) -> TextView {
  const int32_t length = static_cast<int32_t>(text.size());
  VT_ASSERT(count >= -1, "count >= -1");
  VT_ASSERT(pos <= length, "pos <= cp_len");
  const int32_t from = std::min(pos, length);
  VT_ASSERT(int64_t{from} + count <= length, "(pos + count) <= cp_len");
  const int32_t rest = length - std::max(from, 0);
  const int32_t taken = count == -1 ? rest : std::clamp(count, 0, rest);
  return text.substr(static_cast<size_t>(std::max(from, 0)), static_cast<size_t>(taken));
}

template <class Char>
int32_t CharBuffer<Char>::CountLeadingSpaces() const {
  return static_cast<int32_t>(std::min(View().find_first_not_of(kSpaces<Char>), View().size()));
}

template <class Char>
int32_t CharBuffer<Char>::LengthWithoutTrailingSpaces() const {
  return static_cast<int32_t>(View().find_last_not_of(kSpaces<Char>) + 1);  // npos + 1 is 0
}

template <class Char>
void CharBuffer<Char>::Free() {
  if (OwnsBuffer()) delete[] mCharP;
}

template <class Char>
void CharBuffer<Char>::Steal(CharBuffer& other) {
  mCapacity = std::exchange(other.mCapacity, 0);
  mLen = std::exchange(other.mLen, 0);
  mCharP = std::exchange(other.mCharP, sEmpty);
}

template <class Char>
bool CharBuffer<Char>::IsInside(const Char* text) const {
  const std::less<const Char*> before;
  return !before(text, mCharP) && before(text, mCharP + mCapacity);
}

template class CharBuffer<char>;
template class CharBuffer<wchar_t>;
