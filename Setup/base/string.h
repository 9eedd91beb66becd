#pragma once
// WStr: owning UTF-16 text with the same contract as Str (a character is a 16-bit unit), and the ANSI <->
// UTF-16 conversions on raw text.
#include <cstdarg>
#include <cstdint>
#include <memory>
#include <string_view>

#include "base/charbuffer.h"

enum TextEncoding : int32_t { ANSI = 0, UTF8 = 1 };

class WStr : public CharBuffer<wchar_t> {
 public:
  WStr();
  WStr(const wchar_t* text);
  WStr(const WStr& other);
  ~WStr();
  WStr& operator=(const wchar_t* text);
  WStr& operator=(const WStr& other);
  // Takes ANSI text.
  WStr& operator=(const char* text);
  // Takes UTF-8 text; `encoding` must be UTF8. Continuation bytes are not validated; a NUL in any place of a
  // sequence ends the text.
  void Assign(const char* text, TextEncoding encoding);

  bool IsUnlocked() const { return !mLocked; }

  int32_t Length() const;  // asserts while locked: the length is then not known

  void Append(wchar_t ch);
  void Append(const wchar_t* text);
  void Append(const wchar_t* text, int32_t count);  // at most `count` units
  void Append(wchar_t ch, int32_t times);
  void Prepend(const wchar_t* text, int32_t count);  // at most `count` units
  int32_t Compare(const wchar_t* text) const;
  int32_t Compare(const wchar_t* text, int32_t count) const;
  int32_t ICompare(const wchar_t* text) const;
  // Index of the first match at or after `start`, or -1.
  int32_t Find(wchar_t ch, int32_t start = 0, bool caseSensitive = true) const;
  int32_t Find(const wchar_t* text, int32_t start = 0, bool caseSensitive = true) const;
  int32_t FindLast(wchar_t ch) const;
  // Deletes `count` units from `pos`; -1 deletes to the end.
  void Delete(int32_t pos, int32_t count);
  void Insert(const wchar_t* text, int32_t pos);
  void Insert(wchar_t ch, int32_t pos);
  // Writes one unit; at the end of the text it is appended when the buffer has room, elsewhere outside
  // nothing is written.
  void SetAt(int32_t pos, wchar_t ch);
  void Overwrite(const wchar_t* text, int32_t pos);
  void TrimLeft();
  void TrimRight();
  // Makes this the `count` units of `text` from `pos`; -1 takes the rest.
  void SetSubstring(const wchar_t* text, int32_t pos, int32_t count);
  void Left(const wchar_t* text, int32_t count);
  void Right(const wchar_t* text, int32_t count);
  // Each returns the number of replacements; the search resumes behind the inserted text.
  int32_t Replace(wchar_t ch, wchar_t replace);
  int32_t Replace(wchar_t ch, const wchar_t* replace);
  int32_t Replace(const wchar_t* text, const wchar_t* replace);
  // The parts before and after the first `ch`; without one, `left` takes the whole text.
  void Split(wchar_t ch, WStr& left, WStr& right) const;
  // printf formatting as the system's library has it (%s takes wide text); texts of 1999 units and more are
  // kept whole but assert.
  void Format(const wchar_t* format, ...);
  void VFormat(const wchar_t* format, va_list args);

  static int32_t Length(const wchar_t* text);
  static int32_t ICompare(const wchar_t* a, const wchar_t* b);
  static const wchar_t* IFind(const wchar_t* text, const wchar_t* pattern);
  // Formats into a buffer of `bufSize` units, bounded and terminated; returns the full
  // length the text would have.
  static int32_t VFormat(wchar_t* buffer, int32_t bufSize, const wchar_t* format, va_list args);

 private:
  // At most `count` units of `text`, which needs no terminator behind them; a negative count takes all.
  static std::wstring_view AtMost(const wchar_t* text, int32_t count);
  int32_t ReplaceText(std::wstring_view text, std::wstring_view replace);
  void CheckUnlocked() const;
};

// ANSI -> UTF-16 into `wStr` of `size` units; UTF-16 -> ANSI into `nStr` of `size` bytes.
// Terminated, cut when short.
void AnsiToWide(const char* nStr, wchar_t* wStr, int32_t size);
void WideToAnsi(const wchar_t* wStr, char* nStr, int32_t size);
// Allocating forms; null when memory is short.
std::unique_ptr<wchar_t[]> AnsiToWide(const char* nStr);
std::unique_ptr<char[]> WideToAnsi(const wchar_t* wStr);
