#include "script/szdd.h"

#include <gtest/gtest.h>

#include <string>

#include "support/library_maker.h"

namespace {

// Seven plain bytes and a reference that stands for three more.
std::string WithAReference(unsigned char promised) {
  std::string bytes = MakeLzFile("", 'l');
  bytes[10] = static_cast<char>(promised);
  return bytes + "\x7F" + "abcdefg" + std::string("\xF0\x00", 2);
}

TEST(Szdd, ACompressedFileIsKnownByItsSignature) {
  EXPECT_TRUE(IsSzdd(MakeLzFile("", 'l')));
  EXPECT_FALSE(IsSzdd(MakeLzFile("", 'l').substr(0, kSzddHeaderSize - 1)));
  EXPECT_FALSE(IsSzdd("SZDD but a text that someone wrote"));
  EXPECT_FALSE(IsSzdd(""));
}

TEST(Szdd, AFileThatIsCutAnywhereIsNotWhole) {
  for (const size_t size : {0u, 1u, 8u, 9u, 100u}) {
    const std::string bytes = MakeLzFile(std::string(size, 'x'), 'l');
    EXPECT_TRUE(IsSzddWhole(bytes)) << size;
    for (size_t length = kSzddHeaderSize; length < bytes.size(); ++length)
      EXPECT_FALSE(IsSzddWhole(std::string_view(bytes).substr(0, length))) << size << " cut to " << length;
  }
}

TEST(Szdd, AReferenceStandsForSeveralBytesAndTakesTwo) {
  EXPECT_TRUE(IsSzddWhole(WithAReference(10)));
  EXPECT_FALSE(IsSzddWhole(WithAReference(11)));
  std::string bytes = WithAReference(10);
  bytes.pop_back();
  EXPECT_FALSE(IsSzddWhole(bytes));
}

TEST(Szdd, BytesBehindTheLastOneDoNotCount) { EXPECT_TRUE(IsSzddWhole(MakeLzFile("text", 'l') + "more")); }

}  // namespace
