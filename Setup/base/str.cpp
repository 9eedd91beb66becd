#include "base/str.h"

#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <new>

#include "base/assert.h"
#include "base/fatal.h"
#include "base/string.h"
#include "base/strroom.h"

namespace {

constexpr int32_t kFormatSize = 2000;  // formatted texts stay below this many characters

// Shared by all strings that own no memory; never written, never freed.
constinit char gEmpty[1] = {'\0'};

// `text` up to its first NUL.
std::string_view UpToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

std::string_view ViewOf(const char* text) {
  return {text != nullptr ? text : "", static_cast<size_t>(Str::Length(text))};
}

}  // namespace

Str::Str() : mCharP(gEmpty) {}

Str::Str(const char* text) : mCharP(gEmpty) { SetText(ViewOf(text)); }

Str::Str(std::string_view text) : mCharP(gEmpty) { SetText(UpToNul(text)); }

Str::Str(const Str& other) : mCharP(gEmpty) {
  VT_ASSERT(!other.mLocked, "! str.mLocked");
  if (other.mCapacity == 0) return;
  Reserve(other.mCapacity);
  SetText(other.View());
}

Str::Str(Str&& other) noexcept : mCharP(gEmpty) {
  VT_ASSERT(!other.mLocked, "! str.mLocked");
  Steal(other);
}

Str::~Str() {
  VT_ASSERT(!mLocked, "! mLocked");
  Free();
}

Str& Str::operator=(const char* text) {
  SetText(ViewOf(text));
  return *this;
}

Str& Str::operator=(const Str& other) {
  if (this == &other) return *this;
  VT_ASSERT(!other.mLocked, "! str.mLocked");
  SetText(other.View());
  return *this;
}

Str& Str::operator=(Str&& other) noexcept {
  if (this == &other) return *this;
  VT_ASSERT(!other.mLocked, "! str.mLocked");
  Free();
  Steal(other);
  return *this;
}

Str& Str::operator=(std::string_view text) {
  SetText(UpToNul(text));
  return *this;
}

Str& Str::operator=(const wchar_t* text) {
  const int32_t size = 2 * WStr::Length(text) + 1;
  char* buffer = Lock(size);
  buffer[0] = '\0';
  if (text != nullptr) WideToAnsi(text, buffer, size);
  Unlock();
  return *this;
}

char* Str::Lock(int32_t size) {
  Reserve(size > 0 ? size : 1);
  mLocked = 1;
  return mCharP;
}

void Str::Unlock() {
  VT_ASSERT(mLocked, "mLocked");
  if (OwnsBuffer()) {
    // A writer that forgot the terminator must not lead the search past the buffer.
    mCharP[mCapacity - 1] = '\0';
    mLen = static_cast<int32_t>(std::strlen(mCharP));
  }
  mLocked = 0;
}

int32_t Str::Length() const {
  CheckUnlocked();
  return mLen;
}

void Str::Append(char ch) { Append(std::string_view(&ch, 1)); }

void Str::Append(const char* text) { Append(ViewOf(text)); }

void Str::Append(std::string_view source) {
  CheckUnlocked();
  const std::string_view text = UpToNul(source);
  if (text.empty()) return;
  const auto former = Reserve(int64_t{mLen} + static_cast<int64_t>(text.size()) + 1);
  std::memmove(mCharP + mLen, text.data(), text.size());
  mLen += static_cast<int32_t>(text.size());
  mCharP[mLen] = '\0';
  CheckLength();
}

void Str::Format(const char* format, ...) {
  va_list args;
  va_start(args, format);
  VFormat(format, args);
  va_end(args);
}

void Str::VFormat(const char* format, va_list args) {
  CheckUnlocked();
  va_list measured;
  va_copy(measured, args);
  const int32_t length = VFormat(nullptr, 0, format, measured);
  va_end(measured);

  // The arguments may point into this string, so the text is completed in a buffer of its own.
  const std::unique_ptr<char[]> text(new char[static_cast<size_t>(length) + 1]);
  VFormat(text.get(), length + 1, format, args);
  Reserve(length < kFormatSize ? kFormatSize : length + 1);
  SetText(text.get());
  VT_ASSERT(length < kFormatSize, "Str::VFormat(cp,format,args) < bufSize");
}

int32_t Str::VFormat(char* buffer, int32_t bufSize, const char* format, va_list args) {
  const bool measuring = buffer == nullptr || bufSize <= 0;
  if (!measuring) buffer[0] = '\0';
  if (!VT_ASSERT(format != nullptr, "format")) return 0;
  const int length = std::vsnprintf(measuring ? nullptr : buffer,
                                    measuring ? 0 : static_cast<size_t>(bufSize), format, args);
  return length > 0 ? length : 0;
}

int32_t Str::Length(const char* text) {
  if (!VT_ASSERT(text != nullptr, "cp")) return 0;
  return static_cast<int32_t>(std::strlen(text));
}

bool Str::Equal(const char* a, const char* b) { return ViewOf(a) == ViewOf(b); }

std::unique_ptr<char[]> Str::Reserve(int64_t needed) {
  const int64_t capacity = CapacityFor(needed);
  if (capacity <= mCapacity) return nullptr;
  if (capacity > std::numeric_limits<int32_t>::max()) StopForMemory(MemError::kAlloc);

  char* const buffer = new char[static_cast<size_t>(capacity)];
  std::memcpy(buffer, mCharP, static_cast<size_t>(mLen) + 1);
  std::unique_ptr<char[]> former(OwnsBuffer() ? mCharP : nullptr);
  mCharP = buffer;
  mCapacity = static_cast<int32_t>(capacity);
  return former;
}

void Str::SetText(std::string_view text) {
  if (text.empty() && !OwnsBuffer()) return;
  const auto former = Reserve(static_cast<int64_t>(text.size()) + 1);
  if (!text.empty()) std::memmove(mCharP, text.data(), text.size());
  mLen = static_cast<int32_t>(text.size());
  mCharP[mLen] = '\0';
  CheckLength();
}

// Takes over the buffer of `other`; a lock on `other` stays with it.
void Str::Steal(Str& other) {
  mCapacity = other.mCapacity;
  mLen = other.mLen;
  mCharP = other.mCharP;
  other.mCapacity = 0;
  other.mLen = 0;
  other.mCharP = gEmpty;
}

void Str::Free() {
  if (OwnsBuffer()) delete[] mCharP;
}

bool Str::OwnsBuffer() const { return mCharP != gEmpty; }

bool Str::IsInside(const char* text) const {
  const std::less<const char*> before;
  return !before(text, mCharP) && before(text, mCharP + mCapacity);
}

void Str::CheckUnlocked() const { VT_ASSERT(!mLocked, "! mLocked"); }

void Str::CheckLength() const { VT_ASSERT(Str::Length(mCharP) == mLen, "Str::Length(mCharP) == mLen"); }
