#pragma once
// Fails every test that damages a heap or keeps movable blocks. The system notices a single byte written
// behind a block only when its heap checking is on, as tests/bench/test_heap.py runs it.
#include <gtest/gtest.h>

#include <cstdint>

class HeapCheck : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo& info) override;
  void OnTestEnd(const testing::TestInfo& info) override;

 private:
  int32_t mBlocksBefore = 0;
};
