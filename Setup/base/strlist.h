#pragma once
// Packed list of short texts in one movable block: a 16-bit count, then per entry a length
// byte and its characters.
#include <cstdint>

#include "base/mem.h"
#include "base/str.h"

class StrList {
 public:
  // A list of `count` empty entries.
  explicit StrList(int32_t count = 0);
  int32_t Count();
  // Texts over 255 characters assert and are cut.
  void Append(const char* text);
  void Replace(int32_t i, const char* text);
  // Copies entry i into a buffer of `strMax` bytes, cut and terminated.
  void Get(int32_t i, char* buffer, int32_t strMax);
  Str Get(int32_t i);
  MemHandle& Block() { return mBlock; }

 private:
  MemHandle mBlock;
};

// Walks a locked block to entry i; points at its length byte. Null when i is outside the list.
const uint8_t* GetMemStrPtr(const uint8_t* block, int32_t i);
