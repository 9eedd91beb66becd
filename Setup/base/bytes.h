#pragma once
// Numbers in the bytes of a foreign file. Pure.
#include <cstddef>
#include <cstdint>
#include <span>

using Bytes = std::span<const std::byte>;

// Whether `count` bytes from `at` on lie in `bytes`; no sum that could pass the largest number is formed.
constexpr bool Holds(Bytes bytes, size_t at, size_t count) {
  return at <= bytes.size() && count <= bytes.size() - at;
}

// The little-endian number in the `width` bytes (4 at most) from `at` on, which lie in `bytes`.
constexpr uint32_t LittleEndian(Bytes bytes, size_t at, size_t width) {
  uint32_t number = 0;
  for (size_t i = width; i > 0; --i) number = number << 8 | std::to_integer<uint32_t>(bytes[at + i - 1]);
  return number;
}
