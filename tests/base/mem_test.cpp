#include "base/mem.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/assert_recorder.h"

namespace {

using Texts = std::vector<std::string>;

std::string Contents(MemHandle& mem) {
  const MemLock lock(mem);
  return std::string(lock.Ptr(), mem.Size());
}

class MemHandleTest : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(MemHandle::LiveCount(), mLiveBefore); }

  int32_t mLiveBefore = MemHandle::LiveCount();
};

TEST_F(MemHandleTest, DefaultIsEmpty) {
  MemHandle mem;
  EXPECT_FALSE(mem.IsValid());
  EXPECT_EQ(mem.Size(), 0u);
  EXPECT_EQ(MemHandle::LiveCount(), mLiveBefore);
}

TEST_F(MemHandleTest, AllocatesAMovableBlock) {
  MemHandle mem(10);
  EXPECT_TRUE(mem.IsValid());
  EXPECT_EQ(mem.Size(), 10u);
  EXPECT_EQ(GlobalSize(mem.Handle()), 10u);
  EXPECT_EQ(MemHandle::LiveCount(), mLiveBefore + 1);
  const MemLock lock(mem);
  EXPECT_NE(static_cast<void*>(lock.Ptr()), mem.Handle());  // a fixed block's handle is its address
}

TEST_F(MemHandleTest, OfSizeZeroOwnsOneByteAndReportsZero) {
  MemHandle mem(0u);
  EXPECT_TRUE(mem.IsValid());
  EXPECT_EQ(mem.Size(), 0u);
  EXPECT_EQ(GlobalSize(mem.Handle()), 1u);
}

TEST_F(MemHandleTest, ZeroFlagClearsTheBlock) {
  MemHandle mem(1000, MemHandle::kZero);
  EXPECT_EQ(Contents(mem), std::string(1000, '\0'));
}

TEST_F(MemHandleTest, ImpossibleSizeRaisesTheAllocationCode) {
  try {
    MemHandle mem(0xF0000000u);
    FAIL() << "no exception";
  } catch (const MemError& error) {
    EXPECT_EQ(error.code, 0x8004020bu);
  }
}

TEST_F(MemHandleTest, FromBytesCopies) {
  MemHandle mem("abc", 3u);
  EXPECT_EQ(Contents(mem), "abc");
}

TEST_F(MemHandleTest, FromNullBytesAsserts) {
  AssertRecorder recorder;
  MemHandle mem(static_cast<const void*>(nullptr), 3u);
  EXPECT_EQ(recorder.Only(), "bytes");
  EXPECT_EQ(mem.Size(), 3u);
}

TEST_F(MemHandleTest, CopyHasItsOwnBlock) {
  MemHandle mem("abc", 3u);
  MemHandle copy(mem);
  EXPECT_NE(copy.Handle(), mem.Handle());
  EXPECT_EQ(copy.Size(), 3u);
  EXPECT_EQ(Contents(copy), "abc");
  EXPECT_EQ(MemHandle::LiveCount(), mLiveBefore + 2);
}

TEST_F(MemHandleTest, CopyOfAnEmptyOneIsEmpty) {
  MemHandle empty;
  MemHandle copy(empty);
  EXPECT_FALSE(copy.IsValid());
}

TEST_F(MemHandleTest, MoveTakesTheBlock) {
  MemHandle mem("abc", 3u);
  const HGLOBAL block = mem.Handle();
  MemHandle moved(std::move(mem));
  EXPECT_EQ(moved.Handle(), block);
  EXPECT_FALSE(mem.IsValid());
  MemHandle assigned("old", 3u);
  assigned = std::move(moved);
  EXPECT_EQ(assigned.Handle(), block);
  EXPECT_EQ(MemHandle::LiveCount(), mLiveBefore + 1);
}

TEST_F(MemHandleTest, AdoptsABlock) {
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 12);
  MemHandle mem(block);
  EXPECT_EQ(mem.Handle(), block);
  EXPECT_EQ(mem.Size(), 12u);
  EXPECT_EQ(MemHandle::LiveCount(), mLiveBefore + 1);
}

TEST_F(MemHandleTest, AdoptedBlockOfSizeZeroIsReplaced) {
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 0);
  ASSERT_NE(block, nullptr);
  MemHandle mem(block);
  EXPECT_TRUE(mem.IsValid());
  EXPECT_EQ(mem.Size(), 0u);
  EXPECT_EQ(GlobalSize(mem.Handle()), 1u);
  EXPECT_EQ(MemHandle::LiveCount(), mLiveBefore + 1);
}

TEST_F(MemHandleTest, AdoptedBlocksOfSizeZeroAreFreed) {
  // More than the system has handles for.
  for (int i = 0; i < 70000; ++i) {
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 0);
    ASSERT_NE(block, nullptr) << i;
    MemHandle mem(block);
  }
}

TEST_F(MemHandleTest, AdoptingNullAsserts) {
  AssertRecorder recorder;
  MemHandle mem(static_cast<HGLOBAL>(nullptr));
  EXPECT_EQ(recorder.Only(), "osHand");
  EXPECT_FALSE(mem.IsValid());
}

TEST_F(MemHandleTest, DestructionWhileLockedAssertsAndFrees) {
  HGLOBAL block = nullptr;
  AssertRecorder recorder;
  {
    MemHandle mem(10);
    block = mem.Handle();
    mem.Lock();
    mem.Lock();
  }
  EXPECT_EQ(recorder.Only(), "GetLockCount() == 0");
  EXPECT_EQ(MemHandle::LiveCount(), mLiveBefore);
  EXPECT_EQ(GlobalFlags(block), static_cast<UINT>(GMEM_INVALID_HANDLE));
}

TEST_F(MemHandleTest, AssignmentCopies) {
  MemHandle source("abcdef", 6u);
  MemHandle mem("xy", 2u);
  mem = source;
  EXPECT_EQ(Contents(mem), "abcdef");
  EXPECT_NE(mem.Handle(), source.Handle());
  EXPECT_EQ(MemHandle::LiveCount(), mLiveBefore + 2);
  mem = MemHandle();
  EXPECT_FALSE(mem.IsValid());
}

TEST_F(MemHandleTest, AssignmentToItselfKeepsTheBlock) {
  MemHandle mem("abc", 3u);
  const HGLOBAL block = mem.Handle();
  MemHandle& same = mem;
  mem = same;
  EXPECT_EQ(mem.Handle(), block);
  EXPECT_EQ(Contents(mem), "abc");
}

TEST_F(MemHandleTest, ResizeKeepsHandleAndContents) {
  MemHandle mem("abc", 3u);
  const HGLOBAL block = mem.Handle();
  mem.Resize(100000);
  EXPECT_EQ(mem.Handle(), block);
  EXPECT_EQ(mem.Size(), 100000u);
  EXPECT_EQ(Contents(mem).substr(0, 3), "abc");
  mem.Resize(2);
  EXPECT_EQ(mem.Handle(), block);
  EXPECT_EQ(Contents(mem), "ab");
}

TEST_F(MemHandleTest, ResizeZeroFillsTheGrowth) {
  MemHandle mem("abc", 3u);
  mem.Resize(200, MemHandle::kZero);
  EXPECT_EQ(Contents(mem), "abc" + std::string(197, '\0'));
}

TEST_F(MemHandleTest, ResizeFromZeroClearsTheFirstByteToo) {
  MemHandle mem(0u);
  *static_cast<char*>(mem.Lock()) = 'x';
  mem.Unlock();
  mem.Resize(4, MemHandle::kZero);
  EXPECT_EQ(Contents(mem), std::string(4, '\0'));
}

TEST_F(MemHandleTest, ResizeToZeroLeavesOneByte) {
  MemHandle mem("abc", 3u);
  mem.Resize(0);
  EXPECT_EQ(mem.Size(), 0u);
  EXPECT_EQ(GlobalSize(mem.Handle()), 1u);
}

TEST_F(MemHandleTest, ResizeOfAnEmptyOneAllocates) {
  MemHandle mem;
  mem.Resize(5, MemHandle::kZero);
  EXPECT_EQ(Contents(mem), std::string(5, '\0'));
}

TEST_F(MemHandleTest, ImpossibleResizeRaisesAndKeepsTheBlock) {
  MemHandle mem("abc", 3u);
  try {
    mem.Resize(0xF0000000u);
    FAIL() << "no exception";
  } catch (const MemError& error) {
    EXPECT_EQ(error.code, 0x8004020bu);
  }
  EXPECT_EQ(Contents(mem), "abc");
}

TEST_F(MemHandleTest, LockCountFollowsTheSystem) {
  MemHandle mem(10);
  EXPECT_EQ(mem.GetLockCount(), 0);
  mem.Lock();
  mem.Lock();
  EXPECT_EQ(mem.GetLockCount(), 2);
  GlobalLock(mem.Handle());
  EXPECT_EQ(mem.GetLockCount(), 3);
  GlobalUnlock(mem.Handle());
  mem.Unlock();
  mem.Unlock();
  EXPECT_EQ(mem.GetLockCount(), 0);
}

TEST_F(MemHandleTest, UnlockOfAnUnlockedBlockAsserts) {
  MemHandle mem(10);
  AssertRecorder recorder;
  mem.Unlock();
  EXPECT_EQ(recorder.Only(), "GetLockCount() > 0");
  EXPECT_EQ(mem.GetLockCount(), 0);
}

TEST_F(MemHandleTest, LockingAnEmptyOneAssertsAndRaises) {
  MemHandle mem;
  AssertRecorder recorder;
  try {
    mem.Lock();
    FAIL() << "no exception";
  } catch (const MemError& error) {
    EXPECT_EQ(error.code, 0x80040280u);
  }
  EXPECT_EQ(recorder.Only(), "mHand");
}

TEST_F(MemHandleTest, ADiscardedBlockCannotBeLocked) {
  MemHandle mem(10);
  ASSERT_NE(GlobalReAlloc(mem.Handle(), 0, GMEM_MOVEABLE), nullptr);
  try {
    mem.Lock();
    FAIL() << "no exception";
  } catch (const MemError& error) {
    EXPECT_EQ(error.code, 0x80040280u);
  }
}

TEST_F(MemHandleTest, EveryUseOfADiscardedBlockRaisesTheLockCode) {
  using Operation = void (*)(MemHandle&);
  const Operation operations[] = {
      [](MemHandle& m) {
        char byte = 0;
        m.Read(0, 1, &byte);
      },
      [](MemHandle& m) { m.Write(0, 1, "x"); },
      [](MemHandle& m) { m.ToHeap(); },
      [](MemHandle& m) { MemHandle copy(m); },
      [](MemHandle& m) {
        MemHandle assigned;
        assigned = m;
      },
  };
  MemHandle mem(10);
  ASSERT_NE(GlobalReAlloc(mem.Handle(), 0, GMEM_MOVEABLE), nullptr);
  int index = 0;
  for (const Operation operation : operations) {
    SCOPED_TRACE(index++);
    uint32_t code = 0;
    try {
      operation(mem);
    } catch (const MemError& error) {
      code = error.code;
    }
    EXPECT_EQ(code, 0x80040280u);
    EXPECT_EQ(MemHandle::LiveCount(), mLiveBefore + 1);
  }
}

TEST_F(MemHandleTest, ALockedBlockKeepsItsPlaceAndCountWhenResized) {
  MemHandle mem("abc", 3u);
  mem.Lock();
  mem.Resize(2);
  EXPECT_EQ(mem.GetLockCount(), 1);
  EXPECT_EQ(mem.Size(), 2u);
  mem.Unlock();
  EXPECT_EQ(Contents(mem), "ab");
}

TEST_F(MemHandleTest, OperationsOfAnEmptyOneAssert) {
  MemHandle mem;
  AssertRecorder recorder;
  EXPECT_EQ(mem.GetLockCount(), 0);
  EXPECT_EQ(recorder.Only(), "mHand");
  recorder.Clear();
  mem.Unlock();
  EXPECT_EQ(recorder.Only(), "mHand");
  recorder.Clear();
  EXPECT_EQ(mem.Release(), nullptr);
  EXPECT_EQ(recorder.Only(), "mHand");
  recorder.Clear();
  char byte = '#';
  mem.Read(0, 0, &byte);
  EXPECT_EQ(recorder.Only(), "mHand");
  recorder.Clear();
  mem.Write(0, 1, &byte);
  EXPECT_EQ(recorder.Texts(), (Texts{"mHand", "(offset + len) <= mSize"}));
  EXPECT_EQ(byte, '#');
}

TEST_F(MemHandleTest, ReleaseGivesUpOwnership) {
  HGLOBAL block = nullptr;
  {
    MemHandle mem("abc", 3u);
    block = mem.Release();
    EXPECT_FALSE(mem.IsValid());
    EXPECT_EQ(mem.Size(), 0u);
    EXPECT_EQ(MemHandle::LiveCount(), mLiveBefore);
  }
  EXPECT_EQ(GlobalSize(block), 3u);  // the empty object's destruction freed nothing
  EXPECT_EQ(GlobalFree(block), nullptr);
}

TEST_F(MemHandleTest, ReleaseWhileLockedAsserts) {
  MemHandle mem(10);
  mem.Lock();
  AssertRecorder recorder;
  const HGLOBAL block = mem.Release();
  EXPECT_EQ(recorder.Only(), "GetLockCount() == 0");
  EXPECT_FALSE(mem.IsValid());
  GlobalUnlock(block);
  GlobalFree(block);
}

TEST_F(MemHandleTest, ReadAndWrite) {
  MemHandle mem("abcdefghij", 10u);
  char text[5] = "";
  mem.Read(6, 4, text);
  EXPECT_STREQ(text, "ghij");
  mem.Write(2, 3, "XYZ");
  EXPECT_EQ(Contents(mem), "abXYZfghij");
  mem.Read(10, 0, text);
  EXPECT_EQ(mem.GetLockCount(), 0);
}

TEST_F(MemHandleTest, ReadPastTheEndAssertsAndCopiesWhatIsInside) {
  MemHandle mem("abcdefghij", 10u);
  char text[5] = "####";
  AssertRecorder recorder;
  mem.Read(8, 4, text);
  EXPECT_EQ(recorder.Only(), "(offset + len) <= mSize");
  EXPECT_STREQ(text, "ij##");
}

TEST_F(MemHandleTest, WritePastTheEndAssertsAndCopiesWhatIsInside) {
  MemHandle mem("abcdefghij", 10u);
  AssertRecorder recorder;
  mem.Write(8, 4, "1234");
  EXPECT_EQ(recorder.Only(), "(offset + len) <= mSize");
  EXPECT_EQ(Contents(mem), "abcdefgh12");
}

TEST_F(MemHandleTest, OffsetAndLengthMayNotWrapAround) {
  MemHandle mem("abcdefghij", 10u);
  char text[4] = "###";
  AssertRecorder recorder;
  mem.Read(0xFFFFFFFF, 2, text);
  EXPECT_EQ(recorder.Only(), "(offset + len) <= mSize");
  recorder.Clear();
  mem.Write(0xFFFFFFFE, 4, "1234");
  EXPECT_EQ(recorder.Only(), "(offset + len) <= mSize");
  EXPECT_STREQ(text, "###");
  EXPECT_EQ(Contents(mem), "abcdefghij");
}

TEST_F(MemHandleTest, ReadIntoNullAndWriteFromNullAssert) {
  MemHandle mem("abc", 3u);
  AssertRecorder recorder;
  mem.Read(0, 1, nullptr);
  EXPECT_EQ(recorder.Only(), "dest");
  recorder.Clear();
  mem.Write(0, 1, nullptr);
  EXPECT_EQ(recorder.Only(), "source");
  EXPECT_EQ(Contents(mem), "abc");
}

TEST_F(MemHandleTest, ToHeapCopiesEverything) {
  MemHandle mem("abc", 3u);
  const auto copy = mem.ToHeap();
  EXPECT_EQ(memcmp(copy.get(), "abc", 3), 0);
  EXPECT_EQ(mem.GetLockCount(), 0);
  MemHandle empty(0u);
  EXPECT_NE(empty.ToHeap(), nullptr);
}

TEST_F(MemHandleTest, MemLockLocksForAScope) {
  MemHandle mem("abc", 3u);
  {
    const MemLock lock(mem);
    EXPECT_EQ(mem.GetLockCount(), 1);
    EXPECT_EQ(lock.Ptr()[1], 'b');
  }
  EXPECT_EQ(mem.GetLockCount(), 0);
}

}  // namespace
