#include "base/string.h"

#include <cstring>
#include <cwchar>
#include <string>

#include "base/assert.h"
#include "base/utf8.h"

namespace {

constexpr int32_t kFormatSize = 2000;  // formatted texts stay below this many units, less one
constexpr size_t kFormatLimit = 1 << 20;

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

WStr::WStr() = default;

WStr::WStr(const wchar_t* text) { SetText(ViewOf(text)); }

WStr::WStr(const WStr& other) : CharBuffer() {
  VT_ASSERT(other.IsUnlocked(), "str.IsUnlocked()");
  if (other.mCapacity == 0) return;
  Reserve(other.mCapacity);
  SetText(other.View());
}

WStr::~WStr() { CheckUnlocked(); }

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

int32_t WStr::Length(const wchar_t* text) { return static_cast<int32_t>(ViewOf(text).size()); }

void WStr::CheckUnlocked() const { VT_ASSERT(IsUnlocked(), "IsUnlocked()"); }
