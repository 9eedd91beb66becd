#pragma once
// Building binary files in memory.
#include <cstdint>
#include <string>
#include <string_view>

// Bytes that grow at the end; numbers in the byte order of the file being made.
class ByteWriter {
 public:
  enum class Order { kLittle, kBig };
  explicit ByteWriter(Order order) : mOrder(order) {}

  void U8(unsigned value) { mBytes.push_back(static_cast<char>(value)); }
  void U16(unsigned value) { Number(value, 2); }
  void U32(unsigned value) { Number(value, 4); }
  void Text(std::string_view text) { mBytes.append(text); }
  // Each character of ISO 8859-1 as 16 bits.
  void Wide(std::string_view text) {
    for (const char c : text) U16(static_cast<unsigned char>(c));
  }
  // Zeros up to a multiple of `unit`.
  void Align(size_t unit) {
    while (mBytes.size() % unit != 0) U8(0);
  }
  // Zeros up to a size.
  void PadTo(size_t size) {
    if (mBytes.size() < size) mBytes.resize(size, '\0');
  }
  // Overwrites a number written before.
  void PatchU16(size_t at, unsigned value) { Patch(at, value, 2); }
  void PatchU32(size_t at, unsigned value) { Patch(at, value, 4); }

  size_t Size() const { return mBytes.size(); }
  const std::string& Bytes() const { return mBytes; }

 private:
  void Number(unsigned value, unsigned count) {
    mBytes.append(count, '\0');
    Patch(mBytes.size() - count, value, count);
  }
  void Patch(size_t at, unsigned value, unsigned count) {
    for (unsigned i = 0; i < count; ++i) {
      const unsigned shift = 8 * (mOrder == Order::kLittle ? i : count - 1 - i);
      mBytes[at + i] = static_cast<char>(value >> shift);
    }
  }

  Order mOrder;
  std::string mBytes;
};
