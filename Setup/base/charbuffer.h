#pragma once
// CharBuffer: the counted, NUL-terminated buffer that Str and WStr own, and what both do with it alike.
// Instantiated for char and wchar_t in charbuffer.cpp.
#include <cstdint>
#include <memory>
#include <string_view>

// The capacity of a buffer for `needed` characters, terminator included: a whole number of steps of 100. A
// negative need asserts and takes none.
int64_t CapacityFor(int64_t needed);

template <class Char>
class CharBuffer {
 public:
  // Returns the buffer for direct writing, at least `size` characters (terminator
  // included); 0 or less: at least 1.
  Char* Lock(int32_t size);
  // Ends direct writing; the length is that of the NUL-terminated text found in the buffer.
  void Unlock();

  const Char* Chars() const { return mCharP; }
  operator const Char*() const { return mCharP; }
  // Characters allocated, terminator included; 0 while the shared empty buffer is used.
  int32_t Capacity() const { return mCapacity; }

 protected:
  using TextView = std::basic_string_view<Char>;

  CharBuffer() = default;
  CharBuffer(const CharBuffer&) = delete;
  CharBuffer& operator=(const CharBuffer&) = delete;
  ~CharBuffer() { Free(); }

  TextView View() const { return {mCharP, static_cast<size_t>(mLen)}; }
  // A C text; null asserts "cp" and counts as empty.
  static TextView ViewOf(const Char* text);

  // Makes room for `needed` characters and returns the buffer that was replaced, if any, so that a text
  // inside it can still be copied.
  std::unique_ptr<Char[]> Reserve(int64_t needed);
  // In these two `text` may lie inside this very buffer; `pos` lies within the text.
  void SetText(TextView text);
  void InsertAt(TextView text, int32_t pos);
  // Copies what of `text` falls onto this one when it is laid over it at `pos`.
  void LayOver(TextView text, int32_t pos);
  // The `count` characters of `text` from `pos`; -1 takes the rest. What reaches beyond the text asserts.
  static TextView Substring(TextView text, int32_t pos, int32_t count);
  int32_t CountLeadingSpaces() const;
  int32_t LengthWithoutTrailingSpaces() const;

  void Free();
  // Takes over the buffer of `other`; a lock on `other` stays with it.
  void Steal(CharBuffer& other);
  bool OwnsBuffer() const { return mCharP != sEmpty; }

  int32_t mCapacity = 0;
  int32_t mLen = 0;
  Char* mCharP = sEmpty;
  bool mLocked = false;

 private:
  bool IsInside(const Char* text) const;

  // Shared by all that own no memory; never written, never freed.
  inline static constinit Char sEmpty[1] = {};
};

extern template class CharBuffer<char>;
extern template class CharBuffer<wchar_t>;
