#pragma once
// Str: the program's owning, counted, NUL-terminated 8-bit text in the system's ANSI code page.
#include <cstdarg>
#include <cstdint>
#include <string_view>

#include "base/charbuffer.h"

class Str : public CharBuffer<char> {
 public:
  Str();
  Str(const char* text);  // `text` must not be null
  Str(const Str& other);
  Str(Str&& other) noexcept;
  explicit Str(std::string_view text);  // here and below a view is cut at its first NUL, if any
  ~Str();
  Str& operator=(const char* text);
  Str& operator=(const Str& other);
  Str& operator=(Str&& other) noexcept;
  Str& operator=(std::string_view text);
  // Takes UTF-16 text, converted with the ANSI code page.
  Str& operator=(const wchar_t* text);

  int32_t Length() const;  // asserts while locked: the length is then not known
  bool IsEmpty() const { return mLen == 0; }
  using CharBuffer::View;

  void Append(char ch);
  void Append(const char* text);
  void Append(std::string_view text);
  void Append(const Str& text) { Append(text.View()); }
  Str& operator+=(const char* text) {
    Append(text);
    return *this;
  }
  Str& operator+=(char ch) {
    Append(ch);
    return *this;
  }

  // Byte-wise compare: -1, 0 or 1; with a count, of at most that many bytes (a negative one compares all).
  int32_t Compare(const char* text) const;
  int32_t Compare(const char* text, int32_t count) const;
  // Compares without regard to the case of ANSI letters; 0 when equal.
  int32_t ICompare(const char* text) const;
  // Whether the text begins with `start`, without regard to the case of ANSI letters.
  bool IBeginsWith(const char* start) const;

  // Index of the first match at or after `start`, or -1.
  int32_t Find(char ch, int32_t start = 0, bool caseSensitive = true) const;
  int32_t Find(const char* text, int32_t start = 0, bool caseSensitive = true) const;
  int32_t FindLast(char ch) const;

  // Deletes `count` characters from `pos`; -1 deletes to the end.
  void Delete(int32_t pos, int32_t count);
  void Insert(const char* text, int32_t pos);
  void Insert(char ch, int32_t pos);
  // Writes one character; nothing when `pos` lies outside the allocated buffer.
  void SetAt(int32_t pos, char ch);
  // Copies `text` over the characters from `pos`; the length stays.
  void Overwrite(const char* text, int32_t pos);
  void TrimLeft();
  void TrimRight();
  void Trim() {
    TrimRight();
    TrimLeft();
  }

  // Makes this the `count` characters of `text` from `pos`; -1 takes the rest.
  void SetSubstring(const char* text, int32_t pos, int32_t count);
  void Left(const char* text, int32_t count);
  void Right(const char* text, int32_t count);

  // printf formatting; texts of 2000 characters and more are kept whole but assert.
  [[gnu::format(printf, 2, 3)]] void Format(const char* format, ...);
  void VFormat(const char* format, va_list args);

  // Helpers on raw text. Length asserts on null and gives 0.
  static int32_t Length(const char* text);
  static bool Equal(const char* a, const char* b);
  static int32_t ICompare(const char* a, const char* b);
  // First occurrence of `pattern` in `text` without regard to case, or null.
  static const char* IFind(const char* text, const char* pattern);
  // Formats into a buffer of `bufSize` bytes, bounded and terminated; returns the full
  // length the text would have.
  static int32_t VFormat(char* buffer, int32_t bufSize, const char* format, va_list args);

 private:
  void SetText(std::string_view text);
  void CheckUnlocked() const;
  void CheckLength() const;
};

inline bool operator==(const Str& a, const char* b) { return a.Compare(b) == 0; }
inline bool operator==(const Str& a, const Str& b) { return a.View() == b.View(); }
