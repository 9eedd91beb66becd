#include "base/oldmem.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/assert_recorder.h"

namespace {

using Texts = std::vector<std::string>;

// A raw block for one test.
class Block {
 public:
  explicit Block(const std::string& bytes) : mHandle(NewHandle(static_cast<int32_t>(bytes.size()))) {
    memcpy(GlobalLock(mHandle), bytes.data(), bytes.size());
    GlobalUnlock(mHandle);
  }
  ~Block() { FreeHandle(mHandle); }
  operator RawHandle() const { return mHandle; }

 private:
  RawHandle mHandle;
};

// A handle whose block cannot be locked.
class Unlockable {
 public:
  Unlockable() : mHandle(NewHandle(0)) {}
  ~Unlockable() { FreeHandle(mHandle); }
  operator RawHandle() const { return mHandle; }

 private:
  RawHandle mHandle;
};

std::string Contents(RawHandle handle) {
  const std::string bytes(static_cast<const char*>(GlobalLock(handle)), GlobalSize(handle));
  GlobalUnlock(handle);
  return bytes;
}

TEST(OldMem, NewHandleIsMovable) {
  const RawHandle handle = NewHandle(10);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(GlobalSize(handle), 10u);
  EXPECT_EQ(GlobalFlags(handle) & GMEM_LOCKCOUNT, 0u);
  FreeHandle(handle);
}

TEST(OldMem, NewHandleOfSizeZeroIsAllowed) {
  const RawHandle handle = NewHandle(0);
  EXPECT_NE(handle, nullptr);
  FreeHandle(handle);
}

TEST(OldMem, NewHandleOfNegativeSizeAsserts) {
  AssertRecorder recorder;
  EXPECT_EQ(NewHandle(-1), nullptr);
  EXPECT_EQ(recorder.Texts(), (Texts{"size >= 0", "hand"}));
}

TEST(OldMem, NewHandleThatCannotBeHadAsserts) {
  AssertRecorder recorder;
  EXPECT_EQ(NewHandle(INT32_MAX), nullptr);
  EXPECT_EQ(recorder.Only(), "hand");
}

TEST(OldMem, ResizeHandleInPlace) {
  const Block block("abc");
  EXPECT_TRUE(ResizeHandle(block, 5000));
  EXPECT_EQ(GlobalSize(block), 5000u);
  EXPECT_EQ(Contents(block).substr(0, 3), "abc");
}

TEST(OldMem, ResizeHandleToNothingAsserts) {
  const Block block("abc");
  for (int32_t size : {0, -5}) {
    AssertRecorder recorder;
    EXPECT_FALSE(ResizeHandle(block, size));
    EXPECT_EQ(recorder.Only(), "size > 0");
    EXPECT_EQ(Contents(block), "abc");
  }
}

TEST(OldMem, ResizeHandleThatFailsAssertsAndKeepsTheBlock) {
  const Block block("abc");
  AssertRecorder recorder;
  EXPECT_FALSE(ResizeHandle(block, INT32_MAX));
  EXPECT_EQ(recorder.Only(), "GlobalReAlloc returned different block");
  EXPECT_EQ(Contents(block), "abc");
}

TEST(OldMem, GetAndSetByte) {
  const Block block("abc");
  EXPECT_EQ(GetByte(block, 1), 'b');
  SetByte(block, 1, 0xE9);
  EXPECT_EQ(GetByte(block, 1), 0xE9);
  EXPECT_EQ(Contents(block),
            "a\xe9"
            "c");
  EXPECT_EQ(GlobalFlags(block) & GMEM_LOCKCOUNT, 0u);
}

TEST(OldMem, BytesOutsideTheBlockAreLeftAlone) {
  const Block block("abc");
  for (int32_t index : {-1, 3, INT32_MAX}) {
    EXPECT_EQ(GetByte(block, index), 0);
    SetByte(block, index, 'x');
  }
  EXPECT_EQ(Contents(block), "abc");
}

TEST(OldMem, SetByteAssertsWhenLockingFails) {
  const Unlockable handle;
  AssertRecorder recorder;
  SetByte(handle, 0, 1);
  EXPECT_EQ(recorder.Only(), "can't lock memory");
  recorder.Clear();
  EXPECT_EQ(GetByte(handle, 0), 0);
  EXPECT_TRUE(recorder.Texts().empty());
}

TEST(OldMem, SumBytesIsA16BitSum) {
  const Block block("\x01\x02\xff");
  EXPECT_EQ(SumBytes(3, block), 0x102);
  EXPECT_EQ(SumBytes(2, block), 3);
  EXPECT_EQ(SumBytes(0, block), 0);
  const Block large(std::string(300, '\xff'));
  EXPECT_EQ(SumBytes(300, large), (300 * 255) & 0xFFFF);
  EXPECT_EQ(SumBytes(200, large), 200 * 255);  // the greatest bit counts, too
}

TEST(OldMem, SumBytesOfNullIsZero) { EXPECT_EQ(SumBytes(10, nullptr), 0); }

TEST(OldMem, SumBytesStaysInsideTheBlock) {
  const Block block("\x01\x02");
  EXPECT_EQ(SumBytes(1000000, block), 3);
  EXPECT_EQ(SumBytes(-1, block), 0);
}

TEST(OldMem, ReadBytes) {
  const Block block("abcdef");
  char text[4] = "###";
  ReadBytes(block, 2, 3, text);
  EXPECT_STREQ(text, "de#");
}

TEST(OldMem, ReadBytesChecksItsArguments) {
  const Block block("abcdef");
  char text[4] = "###";
  AssertRecorder recorder;
  ReadBytes(block, -1, 0, text);
  EXPECT_EQ(recorder.Only(), "len >= 0");
  recorder.Clear();
  ReadBytes(block, 1, -1, text);
  EXPECT_EQ(recorder.Only(), "offset >= 0");
  recorder.Clear();
  ReadBytes(block, 1, 0, nullptr);
  EXPECT_EQ(recorder.Only(), "dest");
  EXPECT_STREQ(text, "###");
}

TEST(OldMem, ReadBytesStaysInsideTheBlock) {
  const Block block("abc");
  char text[6] = "#####";
  ReadBytes(block, 5, 1, text);
  EXPECT_STREQ(text, "bc###");
}

TEST(OldMem, ReadBytesAssertsWhenLockingFailsAndCopiesNothing) {
  const Unlockable handle;
  char text[4] = "###";
  AssertRecorder recorder;
  ReadBytes(handle, 1, 0, text);
  EXPECT_EQ(recorder.Only(), "can't lock");
  EXPECT_STREQ(text, "###");
  recorder.Clear();
  ReadBytes(nullptr, 1, 0, text);
  EXPECT_EQ(recorder.Only(), "can't lock");
}

TEST(OldMem, CopyHandleCopiesSmallBlocks) {
  for (size_t size : {1u, 100u, 32767u}) {
    const Block block(std::string(size, 'x'));
    const RawHandle copy = CopyHandle(block);
    EXPECT_EQ(Contents(copy), std::string(size, 'x'));
    FreeHandle(copy);
  }
}

TEST(OldMem, CopyHandleOfNullAsserts) {
  AssertRecorder recorder;
  EXPECT_EQ(CopyHandle(nullptr), nullptr);
  EXPECT_EQ(recorder.Only(), "src_hand");
}

TEST(OldMem, CopyHandleCountsInSigned16Bits) {
  const struct {
    size_t size;
    size_t copied;
  } rows[] = {{32768, 0}, {65535, 0}, {65536, 0}, {65546, 10}};
  for (const auto& row : rows) {
    const Block block(std::string(row.size, 'x'));
    const RawHandle copy = CopyHandle(block);
    EXPECT_EQ(Contents(copy), std::string(row.copied, 'x') + std::string(row.size - row.copied, '\0'))
        << row.size;
    FreeHandle(copy);
  }
}

TEST(OldMem, ByteSumIs32BitUnsigned) {
  EXPECT_EQ(ByteSum("\x01\xff", 2), 0x100u);
  EXPECT_EQ(ByteSum("x", 0), 0u);
  const std::string large(100000, '\xff');
  EXPECT_EQ(ByteSum(large.data(), 100000), 25500000u);
}

TEST(OldMem, ByteSumOfNullAsserts) {
  AssertRecorder recorder;
  EXPECT_EQ(ByteSum(nullptr, 5), 0u);
  EXPECT_EQ(recorder.Only(), "bytes");
}

}  // namespace
