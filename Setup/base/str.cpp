#include "base/str.h"

#include <cstdio>
#include <memory>

#include "base/assert.h"
#include "base/string.h"

namespace {

constexpr int32_t kFormatSize = 2000;  // formatted texts stay below this many characters

// `text` up to its first NUL.
std::string_view UpToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace

Str::Str() = default;

Str::Str(const char* text) { SetText(ViewOf(text)); }

Str::Str(std::string_view text) { SetText(UpToNul(text)); }

Str::Str(const Str& other) : CharBuffer() {
  VT_ASSERT(!other.mLocked, "! str.mLocked");
  if (other.mCapacity == 0) return;
  Reserve(other.mCapacity);
  SetText(other.View());
}

Str::Str(Str&& other) noexcept {
  VT_ASSERT(!other.mLocked, "! str.mLocked");
  Steal(other);
}

Str::~Str() { CheckUnlocked(); }

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
  InsertAt(text, mLen);
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

int32_t Str::Length(const char* text) { return static_cast<int32_t>(ViewOf(text).size()); }

bool Str::Equal(const char* a, const char* b) { return ViewOf(a) == ViewOf(b); }

void Str::SetText(std::string_view text) {
  if (text.empty() && !OwnsBuffer()) return;
  CharBuffer::SetText(text);
  CheckLength();
}

void Str::CheckUnlocked() const { VT_ASSERT(!mLocked, "! mLocked"); }

void Str::CheckLength() const { VT_ASSERT(Str::Length(mCharP) == mLen, "Str::Length(mCharP) == mLen"); }
