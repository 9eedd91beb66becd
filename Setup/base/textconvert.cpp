// Conversions between the ANSI code page and UTF-16.
#include <windows.h>

#include <cstring>
#include <cwchar>
#include <new>

#include "base/assert.h"
#include "base/leadbyte.h"
#include "base/string.h"

namespace {

// Length of the longest start of `text` of at most `room` bytes that holds no half of
// a double-byte character.
size_t WholeCharacters(const char* text, size_t room) {
  size_t length = 0;
  while (text[length] != '\0') {
    const size_t next =
        length +
        (IsAnsiLeadByte(static_cast<unsigned char>(text[length])) && text[length + 1] != '\0' ? 2 : 1);
    if (next > room) break;
    length = next;
  }
  return length;
}

}  // namespace

bool IsAnsiLeadByte(unsigned char byte) { return IsDBCSLeadByte(byte) != FALSE; }

void AnsiToWide(const char* nStr, wchar_t* wStr, int32_t size) {
  VT_ASSERT(nStr != nullptr, "nStr");
  VT_ASSERT(wStr != nullptr, "wStr");
  if (wStr == nullptr || size <= 0) return;
  wStr[0] = L'\0';
  if (nStr == nullptr) return;
  if (MultiByteToWideChar(CP_ACP, 0, nStr, -1, wStr, size) > 0) return;
  const std::unique_ptr<wchar_t[]> whole = AnsiToWide(nStr);
  const size_t copied = whole ? std::wcslen(whole.get()) : 0;
  const size_t room = static_cast<size_t>(size) - 1;
  const size_t kept = copied < room ? copied : room;
  if (kept > 0) std::wmemcpy(wStr, whole.get(), kept);
  wStr[kept] = L'\0';
}

void WideToAnsi(const wchar_t* wStr, char* nStr, int32_t size) {
  VT_ASSERT(wStr != nullptr, "wStr");
  VT_ASSERT(nStr != nullptr, "nStr");
  if (nStr == nullptr || size <= 0) return;
  nStr[0] = '\0';
  if (wStr == nullptr) return;
  if (WideCharToMultiByte(CP_ACP, 0, wStr, -1, nStr, size, nullptr, nullptr) > 0) return;
  const std::unique_ptr<char[]> whole = WideToAnsi(wStr);
  const size_t kept = whole ? WholeCharacters(whole.get(), static_cast<size_t>(size) - 1) : 0;
  if (kept > 0) std::memcpy(nStr, whole.get(), kept);
  nStr[kept] = '\0';
}

std::unique_ptr<wchar_t[]> AnsiToWide(const char* nStr) {
  if (!VT_ASSERT(nStr != nullptr, "nStr")) return nullptr;
  const int size = MultiByteToWideChar(CP_ACP, 0, nStr, -1, nullptr, 0);
  if (size <= 0) return nullptr;
  std::unique_ptr<wchar_t[]> text(new (std::nothrow) wchar_t[static_cast<size_t>(size)]);
  if (text) MultiByteToWideChar(CP_ACP, 0, nStr, -1, text.get(), size);
  return text;
}

std::unique_ptr<char[]> WideToAnsi(const wchar_t* wStr) {
  if (!VT_ASSERT(wStr != nullptr, "wStr")) return nullptr;
  const int size = WideCharToMultiByte(CP_ACP, 0, wStr, -1, nullptr, 0, nullptr, nullptr);
  if (size <= 0) return nullptr;
  std::unique_ptr<char[]> text(new (std::nothrow) char[static_cast<size_t>(size)]);
  if (text) WideCharToMultiByte(CP_ACP, 0, wStr, -1, text.get(), size, nullptr, nullptr);
  return text;
}
