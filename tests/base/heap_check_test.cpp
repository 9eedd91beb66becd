#include <gtest/gtest.h>

#include <cstdlib>

// Run with the system's heap checking on by a test that expects it to fail: the proof that damage is seen.
TEST(HeapCheckChild, AByteIsWrittenBehindABlock) {
  volatile char* const block = static_cast<volatile char*>(std::malloc(24));
  ASSERT_NE(block, nullptr);
  block[24] = 1;
}
