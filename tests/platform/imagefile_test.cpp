#include "platform/imagefile.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/library_maker.h"

namespace {

uint64_t Needed(const std::string& head) { return ImageFileSize(std::as_bytes(std::span(head))); }

// A header at 64 with one section record behind an optional header of eight bytes.
std::string Headers(uint32_t used, uint32_t stored, uint32_t place) {
  std::string bytes(64 + 24 + 8 + 40, '\0');
  const auto put = [&bytes](size_t at, uint32_t number) { std::memcpy(&bytes[at], &number, sizeof number); };
  bytes.replace(0, 2, "MZ");
  put(0x3C, 64);
  bytes.replace(64, 2, "PE");
  bytes[64 + 6] = 1;
  bytes[64 + 20] = 8;
  put(96 + 8, used);
  put(96 + 16, stored);
  put(96 + 20, place);
  return bytes;
}

TEST(ImageFile, NeedsWhatItsSectionUses) {
  EXPECT_EQ(Needed(Headers(0x123, 0x200, 0x400)), 0x523u);
  EXPECT_EQ(Needed(Headers(0x900, 0x200, 0x400)), 0x600u);
  EXPECT_EQ(Needed(Headers(0, 0x200, 0x400)), 0x600u);
}

TEST(ImageFile, SectionThatIsNotStoredNeedsNothing) {
  EXPECT_EQ(Needed(Headers(0x900, 0, 0x400)), Headers(0, 0, 0).size());
}

TEST(ImageFile, NumbersBeyondEveryFileAreTold) {
  EXPECT_EQ(Needed(Headers(0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF)), 0x1FFFFFFFEu);
}

TEST(ImageFile, CutHeadersAreNone) {
  const std::string whole = Headers(0x123, 0x200, 0x400);
  for (size_t length = 0; length < whole.size(); ++length) EXPECT_EQ(Needed(whole.substr(0, length)), 0u);
}

TEST(ImageFile, OtherBytesAreNone) {
  std::string bytes = Headers(1, 1, 1);
  bytes[0] = 'm';
  EXPECT_EQ(Needed(bytes), 0u);
  bytes = Headers(1, 1, 1);
  bytes[65] = 'X';
  EXPECT_EQ(Needed(bytes), 0u);
  bytes = Headers(1, 1, 1);
  bytes.replace(0x3C, 4, "\xff\xff\xff\xff");
  EXPECT_EQ(Needed(bytes), 0u);
}

TEST(ImageFile, RealLibraryNeedsNoMoreThanItHas) {
  LibrarySpec spec;
  spec.translations = {{0x0407, 1252}};
  const std::string library = MakeLibrary(spec);
  EXPECT_GT(Needed(library), library.size() / 2);
  EXPECT_LE(Needed(library), library.size());
}

}  // namespace
