#include "base/oldmem.h"

#include <algorithm>
#include <cstring>

#include "base/assert.h"

namespace {

// A block's contents for a scope; null when it cannot be locked.
class RawLock {
 public:
  explicit RawLock(RawHandle handle)
      : mHandle(handle), mBytes(handle != nullptr ? static_cast<uint8_t*>(GlobalLock(handle)) : nullptr) {}
  ~RawLock() {
    if (mBytes != nullptr) GlobalUnlock(mHandle);
  }
  RawLock(const RawLock&) = delete;
  RawLock& operator=(const RawLock&) = delete;

  uint8_t* Bytes() const { return mBytes; }
  // How many of `count` bytes from `offset` lie inside the block.
  uint32_t Inside(int32_t offset, int32_t count) const {
    const auto size = static_cast<uint32_t>(mBytes != nullptr ? GlobalSize(mHandle) : 0);
    if (offset < 0 || count <= 0 || static_cast<uint32_t>(offset) >= size) return 0;
    return std::min(static_cast<uint32_t>(count), size - static_cast<uint32_t>(offset));
  }

 private:
  RawHandle mHandle;
  uint8_t* mBytes;
};

}  // namespace

RawHandle NewHandle(int32_t size) {
  VT_ASSERT(size >= 0, "size >= 0");
  const RawHandle hand = size >= 0 ? GlobalAlloc(GMEM_MOVEABLE, static_cast<SIZE_T>(size)) : nullptr;
  VT_ASSERT(hand != nullptr, "hand");
  return hand;
}

bool ResizeHandle(RawHandle handle, int32_t size) {
  if (!VT_ASSERT(size > 0, "size > 0")) return false;
  const RawHandle result = GlobalReAlloc(handle, static_cast<SIZE_T>(size), GMEM_MOVEABLE);
  return VT_ASSERT(result != nullptr && result == handle, "GlobalReAlloc returned different block");
}

uint8_t GetByte(RawHandle handle, int32_t index) {
  const RawLock lock(handle);
  return lock.Inside(index, 1) == 1 ? lock.Bytes()[index] : uint8_t{0};
}

void SetByte(RawHandle handle, int32_t index, uint8_t value) {
  const RawLock lock(handle);
  VT_ASSERT(lock.Bytes() != nullptr, "can't lock memory");
  if (lock.Inside(index, 1) == 1) lock.Bytes()[index] = value;
}

uint16_t SumBytes(int32_t length, RawHandle handle) {
  const RawLock lock(handle);
  const uint32_t count = lock.Inside(0, length);
  return count > 0 ? static_cast<uint16_t>(ByteSum(lock.Bytes(), count)) : uint16_t{0};
}

void ReadBytes(RawHandle handle, int32_t len, int32_t offset, void* dest) {
  VT_ASSERT(len >= 0, "len >= 0");
  VT_ASSERT(offset >= 0, "offset >= 0");
  VT_ASSERT(dest != nullptr, "dest");
  const RawLock lock(handle);
  VT_ASSERT(lock.Bytes() != nullptr, "can't lock");
  const uint32_t count = lock.Inside(offset, len);
  if (dest != nullptr && count > 0) std::memcpy(dest, lock.Bytes() + offset, count);
}

RawHandle CopyHandle(RawHandle source) {
  if (!VT_ASSERT(source != nullptr, "src_hand")) return nullptr;
  const auto size = static_cast<uint32_t>(GlobalSize(source));
  const RawHandle copy = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, size);
  if (!VT_ASSERT(copy != nullptr, "hand")) return nullptr;
  const RawLock from(source);
  const RawLock to(copy);
  const auto count = static_cast<int16_t>(size);
  if (count > 0 && from.Bytes() != nullptr && to.Bytes() != nullptr) {
    std::memcpy(to.Bytes(), from.Bytes(), static_cast<size_t>(count));
  }
  return copy;
}

void FreeHandle(RawHandle handle) { GlobalFree(handle); }

uint32_t ByteSum(const void* bytes, uint32_t count) {
  if (!VT_ASSERT(bytes != nullptr, "bytes")) return 0;
  const auto* const first = static_cast<const uint8_t*>(bytes);
  uint32_t sum = 0;
  for (uint32_t i = 0; i < count; ++i) sum += first[i];
  return sum;
}
