#include "support/heap_check.h"

#include <malloc.h>
#include <windows.h>

#include <vector>

#include "base/mem.h"

void HeapCheck::OnTestStart(const testing::TestInfo&) { mBlocksBefore = MemHandle::LiveCount(); }

void HeapCheck::OnTestEnd(const testing::TestInfo&) {
  EXPECT_EQ(MemHandle::LiveCount(), mBlocksBefore) << "movable blocks are kept (or freed that others own)";
  std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  ASSERT_LE(count, heaps.size());
  for (DWORD i = 0; i < count; ++i) EXPECT_TRUE(HeapValidate(heaps[i], 0, nullptr)) << "a heap is damaged";
  EXPECT_EQ(_heapchk(), _HEAPOK) << "the C library's heap is damaged";
}
