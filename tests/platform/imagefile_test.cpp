#include "platform/imagefile.h"

#include <gtest/gtest.h>

#include <cstring>
#include <span>
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

bool Sound(const std::string& bytes) { return ImageResourcesLieInFile(std::as_bytes(std::span(bytes))); }

uint32_t Number(const std::string& bytes, size_t at) {
  uint32_t value = 0;
  std::memcpy(&value, bytes.data() + at, sizeof value);
  return value;
}

void Put(std::string& bytes, size_t at, uint32_t value) { std::memcpy(&bytes[at], &value, sizeof value); }

class ImageResources : public testing::Test {
 protected:
  void SetUp() override {
    LibrarySpec spec;
    spec.strings[258] = "a text";
    mGood = MakeLibrary(spec);
    const size_t optional = Number(mGood, 0x3C) + 24;
    mAddressAt = optional + 96 + 16;
    const size_t sections = optional + (Number(mGood, optional - 4) & 0xFFFF);
    const size_t count = Number(mGood, optional - 18) & 0xFFFF;
    for (size_t i = 0; i < count; ++i) {
      const size_t section = sections + 40 * i;
      if (Number(mGood, section + 12) == Number(mGood, mAddressAt)) mTree = Number(mGood, section + 20);
    }
    ASSERT_NE(mTree, 0u);
  }
  // The place in the file of the first entry of a directory at `at` in the tree.
  size_t Entry(size_t at) const { return mTree + at + 16; }
  size_t Below(size_t entry) const { return Number(mGood, entry + 4) & 0x7FFFFFFF; }
  // The data entry of the first resource.
  size_t FirstData() const { return mTree + Below(Entry(Below(Entry(Below(Entry(0)))))); }

  std::string mGood;
  size_t mAddressAt = 0;  // of the resource directory's address
  size_t mTree = 0;       // the resource directory
};

TEST_F(ImageResources, OfAWholeLibraryLieInTheFile) { EXPECT_TRUE(Sound(mGood)); }

TEST_F(ImageResources, NoneLeadNowhereElse) {
  Put(mGood, mAddressAt, 0);
  EXPECT_TRUE(Sound(mGood));
}

TEST_F(ImageResources, CutOffDoNotLieInTheFile) {
  const size_t end = mGood.find_last_not_of(char{});
  for (size_t length = 0; length <= end; ++length) ASSERT_FALSE(Sound(mGood.substr(0, length))) << length;
}

TEST_F(ImageResources, AddressThatIsNotInTheFileIsRefused) {
  Put(mGood, mAddressAt, 0x7FFF0000);
  EXPECT_FALSE(Sound(mGood));
}

TEST_F(ImageResources, DirectoryThatHoldsItselfEnds) {
  Put(mGood, Entry(0) + 4, 0x80000000);
  EXPECT_FALSE(Sound(mGood));
}

TEST_F(ImageResources, EntryBeyondTheSectionIsRefused) {
  Put(mGood, Entry(0) + 4, 0x80FFFFFF);
  EXPECT_FALSE(Sound(mGood));
}

TEST_F(ImageResources, NameBeyondTheSectionIsRefused) {
  Put(mGood, Entry(0), 0x80FFFFFF);
  EXPECT_FALSE(Sound(mGood));
}

TEST_F(ImageResources, DataBeyondTheSectionIsRefused) {
  std::string bytes = mGood;
  Put(bytes, FirstData() + 4, 0x10000);
  EXPECT_FALSE(Sound(bytes));
  bytes = mGood;
  Put(bytes, FirstData(), 0xFFFFFFF0);
  EXPECT_FALSE(Sound(bytes));
}

}  // namespace
