#include "base/string.h"

#include <cstring>
#include <cwchar>
#include <limits>
#include <new>
#include <string>

#include "base/assert.h"
#include "base/fatal.h"
#include "base/strroom.h"
#include "base/utf8.h"

namespace {

constexpr int32_t kFormatSize = 2000;  // formatted texts stay below this many units, less one
constexpr size_t kFormatLimit = 1 << 20;

// Shared by all strings that own no memory; never written, never freed.
constinit wchar_t gEmpty[1] = {L'\0'};

std::wstring_view ViewOf(const wchar_t* text) {
  return {text != nullptr ? text : L"", static_cast<size_t>(WStr::Length(text))};
}

// The whole formatted text. The run-time library of old systems cannot measure, so the room is doubled until
// the text fits; a text that no room fits (it holds what cannot be converted) is empty.
std::wstring FormatWhole(const wchar_t* format, va_list args) {
  std::wstring text;
  for (size_t room = kFormatSize; room <= kFormatLimit; room *= 2) {
    text.resize(room);
    va_list attempt;
    va_copy(attempt, args);
    const int length = _vsnwprintf(text.data(), room, format, attempt);
    va_end(attempt);
    if (length >= 0) {
      text.resize(static_cast<size_t>(length));
      return text;
    }
  }
  text.clear();
  return text;
}

}  // namespace

WStr::WStr() : mCharP(gEmpty) {}

WStr::WStr(const wchar_t* text) : mCharP(gEmpty) { SetText(ViewOf(text)); }

WStr::WStr(const WStr& other) : mCharP(gEmpty) {
  VT_ASSERT(other.IsUnlocked(), "str.IsUnlocked()");
  if (other.mCapacity == 0) return;
  Reserve(other.mCapacity);
  SetText(other.View());
}

WStr::~WStr() {
  CheckUnlocked();
  if (OwnsBuffer()) delete[] mCharP;
}

WStr& WStr::operator=(const wchar_t* text) {
  SetText(ViewOf(text));
  return *this;
}

WStr& WStr::operator=(const WStr& other) {
  if (this == &other) return *this;
  VT_ASSERT(other.IsUnlocked(), "str.IsUnlocked()");
  SetText(other.View());
  return *this;
}

WStr& WStr::operator=(const char* text) {
  const int32_t size = (text != nullptr ? static_cast<int32_t>(std::strlen(text)) : 0) + 1;
  wchar_t* buffer = Lock(size);
  buffer[0] = L'\0';
  AnsiToWide(text, buffer, size);
  Unlock();
  return *this;
}

void WStr::Assign(const char* text, TextEncoding encoding) {
  VT_ASSERT(encoding == UTF8, "encoding == UTF8");
  VT_ASSERT(text != nullptr, "cp");
  const std::u16string units = DecodeUtf8(text != nullptr ? text : "");
  SetText(std::wstring(units.begin(), units.end()));
}

wchar_t* WStr::Lock(int32_t size) {
  Reserve(size > 0 ? size : 1);
  mLocked = 1;
  return mCharP;
}

void WStr::Unlock() {
  VT_ASSERT(mLocked, "mLocked");
  if (OwnsBuffer()) {
    // A writer that forgot the terminator must not lead the search past the buffer.
    mCharP[mCapacity - 1] = L'\0';
    mLen = static_cast<int32_t>(std::wcslen(mCharP));
  }
  mLocked = 0;
}

int32_t WStr::Length() const {
  CheckUnlocked();
  return mLen;
}

void WStr::Format(const wchar_t* format, ...) {
  va_list args;
  va_start(args, format);
  VFormat(format, args);
  va_end(args);
}

void WStr::VFormat(const wchar_t* format, va_list args) {
  CheckUnlocked();
  const std::wstring text = format != nullptr ? FormatWhole(format, args) : std::wstring();
  SetText(text);
  VT_ASSERT(text.size() < kFormatSize - 1,
            "WStr::VFormat(buf,format,args) < ((sizeof(buf)/sizeof(buf[0])) - 1)");
}

int32_t WStr::VFormat(wchar_t* buffer, int32_t bufSize, const wchar_t* format, va_list args) {
  const std::wstring text = format != nullptr ? FormatWhole(format, args) : std::wstring();
  if (buffer != nullptr && bufSize > 0) {
    const size_t copied = text.copy(buffer, static_cast<size_t>(bufSize) - 1);
    buffer[copied] = L'\0';
  }
  return static_cast<int32_t>(text.size());
}

int32_t WStr::Length(const wchar_t* text) {
  if (!VT_ASSERT(text != nullptr, "cp")) return 0;
  return static_cast<int32_t>(std::wcslen(text));
}

std::unique_ptr<wchar_t[]> WStr::Reserve(int64_t needed) {
  const int64_t capacity = CapacityFor(needed);
  if (capacity <= mCapacity) return nullptr;
  if (capacity > std::numeric_limits<int32_t>::max() / int64_t{sizeof(wchar_t)})
    StopForMemory(MemError::kAlloc);

  wchar_t* const buffer = new wchar_t[static_cast<size_t>(capacity)];
  std::wmemcpy(buffer, mCharP, static_cast<size_t>(mLen) + 1);
  std::unique_ptr<wchar_t[]> former(OwnsBuffer() ? mCharP : nullptr);
  mCharP = buffer;
  mCapacity = static_cast<int32_t>(capacity);
  return former;
}

void WStr::SetText(std::wstring_view text) {
  if (text.empty() && !OwnsBuffer()) return;
  const auto former = Reserve(static_cast<int64_t>(text.size()) + 1);
  if (!text.empty()) std::wmemmove(mCharP, text.data(), text.size());
  mLen = static_cast<int32_t>(text.size());
  mCharP[mLen] = L'\0';
}

bool WStr::OwnsBuffer() const { return mCharP != gEmpty; }

void WStr::CheckUnlocked() const { VT_ASSERT(IsUnlocked(), "IsUnlocked()"); }
