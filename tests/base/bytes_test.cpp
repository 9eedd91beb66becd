#include "base/bytes.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr std::byte kBytes[] = {std::byte{0x11}, std::byte{0x22}, std::byte{0x33}, std::byte{0xF4},
                                std::byte{0x55}};
constexpr size_t kHuge = std::numeric_limits<size_t>::max();

TEST(Bytes, HoldsWhatLiesInside) {
  EXPECT_TRUE(Holds(kBytes, 0, 5));
  EXPECT_TRUE(Holds(kBytes, 4, 1));
  EXPECT_TRUE(Holds(kBytes, 5, 0));
  EXPECT_TRUE(Holds({}, 0, 0));
}

TEST(Bytes, DoNotHoldWhatReachesBeyondTheEnd) {
  EXPECT_FALSE(Holds(kBytes, 0, 6));
  EXPECT_FALSE(Holds(kBytes, 5, 1));
  EXPECT_FALSE(Holds(kBytes, 6, 0));
}

TEST(Bytes, SumsPastTheLargestNumberLieOutside) {
  EXPECT_FALSE(Holds(kBytes, 1, kHuge));
  EXPECT_FALSE(Holds(kBytes, kHuge, 1));
  EXPECT_FALSE(Holds(kBytes, kHuge, kHuge));
}

TEST(Bytes, LittleEndianNumberHasItsLowestByteFirst) {
  EXPECT_EQ(LittleEndian(kBytes, 0, 1), 0x11u);
  EXPECT_EQ(LittleEndian(kBytes, 1, 2), 0x3322u);
  EXPECT_EQ(LittleEndian(kBytes, 0, 4), 0xF4332211u);
  EXPECT_EQ(LittleEndian(kBytes, 5, 0), 0u);
}

}  // namespace
