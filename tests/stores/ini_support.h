#pragma once
// Reading whole INI stores and writing down what they hold.
#include <gtest/gtest.h>

#include <string>

#include "base/mem.h"
#include "messages/varlist.h"
#include "stores/ini.h"

// "[A] k=v k2=v2 [B] ...", as the enumerations give it.
inline std::string Listing(IniStore* ini) {
  std::string all;
  Str section;
  Str key;
  Str value;
  for (bool first = true; IniNextSection(ini, first, nullptr, section); first = false) {
    if (!all.empty()) all += ' ';
    all += '[' + std::string(section.Chars()) + ']';
    for (bool firstKey = true; IniNextKey(ini, firstKey, nullptr, key, &value); firstKey = false) {
      all += ' ' + std::string(key.Chars()) + '=' + value.Chars();
    }
  }
  return all;
}

// Value of a key of a section, "-" when there is none.
inline std::string ReadOf(IniStore* ini, const char* section, const char* key) {
  Str value;
  return IniFindSection(ini, section) && IniReadStr(ini, key, value) ? value.Chars() : "-";
}

// The current section's text.
inline std::string SectionText(IniStore* ini) {
  MemHandle block = IniCopySection(ini);
  if (!block.IsValid()) return "-";
  const MemLock lock(block);
  return std::string(lock.Ptr(), block.Size() - 1);
}

inline MemHandle BlockOf(const std::string& text) {
  return MemHandle(text.c_str(), static_cast<uint32_t>(text.size()) + 1);
}

// The bytes of a block without the final NUL.
inline std::string TextOf(MemHandle& block) {
  if (!block.IsValid()) return "-";
  const MemLock lock(block);
  return std::string(lock.Ptr(), block.Size() - 1);
}

// A store over a text in memory that lives as long as this object.
class MemoryStore {
 public:
  explicit MemoryStore(const std::string& text, bool readOnly = false)
      : mBlock(BlockOf(text)), mStore(IniOpenMem(mBlock, readOnly)) {
    EXPECT_NE(mStore, nullptr);
  }
  operator IniStore*() const { return mStore.get(); }
  // Closes the store; what was written back.
  std::string Close() {
    EXPECT_TRUE(IniClose(mStore));
    return TextOf(mBlock);
  }

 private:
  MemHandle mBlock;
  IniStorePtr mStore;
};
