#include "base/mem.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "base/assert.h"

namespace {

constinit int32_t gLiveCount = 0;

// The system's own lock on a block for a scope; raises when the block cannot be locked.
class BlockLock {
 public:
  explicit BlockLock(HGLOBAL block) : mBlock(block), mBytes(static_cast<std::byte*>(GlobalLock(block))) {
    if (mBytes == nullptr) StopForMemory(MemError::kLock);
  }
  ~BlockLock() { GlobalUnlock(mBlock); }
  BlockLock(const BlockLock&) = delete;
  BlockLock& operator=(const BlockLock&) = delete;
  std::byte* Bytes() const { return mBytes; }

 private:
  HGLOBAL mBlock;
  std::byte* mBytes;
};

// The number of bytes of a transfer that lie inside a block of `size` bytes.
uint32_t Inside(uint32_t offset, uint32_t len, uint32_t size) {
  return offset < size ? std::min(len, size - offset) : 0;
}

bool Fits(uint32_t offset, uint32_t len, uint32_t size) { return offset <= size && len <= size - offset; }

uint32_t LockCount(HGLOBAL block) { return GlobalFlags(block) & GMEM_LOCKCOUNT; }

}  // namespace

MemHandle::MemHandle(uint32_t size, uint32_t flags) { Allocate(size, flags); }

MemHandle::MemHandle(const void* bytes, uint32_t size) : MemHandle(size) {
  if (!VT_ASSERT(bytes != nullptr, "bytes")) return;
  if (size > 0) std::memcpy(BlockLock(mHand).Bytes(), bytes, size);
}

MemHandle::MemHandle(HGLOBAL osHand) {
  if (!VT_ASSERT(osHand != nullptr, "osHand")) return;
  const SIZE_T size = GlobalSize(osHand);
  if (size == 0) {
    GlobalFree(osHand);
    Allocate(0, 0);
    return;
  }
  mHand = osHand;
  mSize = static_cast<uint32_t>(size);
  ++gLiveCount;
}

// Delegates so that a failure while copying still frees the new block.
MemHandle::MemHandle(const MemHandle& other) : MemHandle() { CopyFrom(other); }

MemHandle::MemHandle(MemHandle&& other) noexcept
    : mHand(std::exchange(other.mHand, nullptr)), mSize(std::exchange(other.mSize, 0)) {}

MemHandle::~MemHandle() { Free(); }

MemHandle& MemHandle::operator=(const MemHandle& other) {
  if (this == &other) return *this;
  Free();
  CopyFrom(other);
  return *this;
}

MemHandle& MemHandle::operator=(MemHandle&& other) noexcept {
  if (this == &other) return *this;
  Free();
  mHand = std::exchange(other.mHand, nullptr);
  mSize = std::exchange(other.mSize, 0);
  return *this;
}

void MemHandle::Resize(uint32_t size, uint32_t flags) {
  if (mHand == nullptr) {
    Allocate(size, flags);
    return;
  }
  if (GlobalReAlloc(mHand, std::max(size, 1u), GMEM_MOVEABLE) == nullptr) StopForMemory(MemError::kAlloc);
  const uint32_t formerSize = std::exchange(mSize, size);
  if ((flags & kZero) != 0 && size > formerSize) {
    std::memset(BlockLock(mHand).Bytes() + formerSize, 0, size - formerSize);
  }
}

int32_t MemHandle::GetLockCount() const {
  if (!VT_ASSERT(mHand != nullptr, "mHand")) return 0;
  return static_cast<int32_t>(LockCount(mHand));
}

void* MemHandle::Lock() {
  VT_ASSERT(mHand != nullptr, "mHand");
  void* const bytes = mHand != nullptr ? GlobalLock(mHand) : nullptr;
  if (bytes == nullptr) StopForMemory(MemError::kLock);
  return bytes;
}

void MemHandle::Unlock() {
  if (!VT_ASSERT(mHand != nullptr, "mHand")) return;
  if (VT_ASSERT(GetLockCount() > 0, "GetLockCount() > 0")) GlobalUnlock(mHand);
}

HGLOBAL MemHandle::Release() {
  VT_ASSERT(IsUnlocked(), "GetLockCount() == 0");
  if (!VT_ASSERT(mHand != nullptr, "mHand")) return nullptr;
  --gLiveCount;
  mSize = 0;
  return std::exchange(mHand, nullptr);
}

void MemHandle::Read(uint32_t offset, uint32_t len, void* dest) {
  VT_ASSERT(dest != nullptr, "dest");
  VT_ASSERT(mHand != nullptr, "mHand");
  VT_ASSERT(Fits(offset, len, mSize), "(offset + len) <= mSize");
  const uint32_t count = Inside(offset, len, mSize);
  if (dest != nullptr && count > 0) std::memcpy(dest, BlockLock(mHand).Bytes() + offset, count);
}

void MemHandle::Write(uint32_t offset, uint32_t len, const void* source) {
  VT_ASSERT(source != nullptr, "source");
  VT_ASSERT(mHand != nullptr, "mHand");
  VT_ASSERT(Fits(offset, len, mSize), "(offset + len) <= mSize");
  const uint32_t count = Inside(offset, len, mSize);
  if (source != nullptr && count > 0) std::memcpy(BlockLock(mHand).Bytes() + offset, source, count);
}

std::unique_ptr<std::byte[]> MemHandle::ToHeap() {
  std::unique_ptr<std::byte[]> copy(new (std::nothrow) std::byte[mSize]);
  if (!copy) StopForMemory(MemError::kAlloc);
  if (mSize > 0) std::memcpy(copy.get(), BlockLock(mHand).Bytes(), mSize);
  return copy;
}

int32_t MemHandle::LiveCount() { return gLiveCount; }

// The object is empty.
void MemHandle::Allocate(uint32_t size, uint32_t flags) {
  const UINT zero = (flags & kZero) != 0 ? GMEM_ZEROINIT : 0;
  mHand = GlobalAlloc(GMEM_MOVEABLE | zero, std::max(size, 1u));
  if (mHand == nullptr) StopForMemory(MemError::kAlloc);
  mSize = size;
  ++gLiveCount;
}

// The object is empty; it stays so when the other one is.
void MemHandle::CopyFrom(const MemHandle& other) {
  if (other.mHand == nullptr) return;
  Allocate(other.mSize, 0);
  if (mSize > 0) std::memcpy(BlockLock(mHand).Bytes(), BlockLock(other.mHand).Bytes(), mSize);
}

void MemHandle::Free() {
  if (mHand == nullptr) return;
  VT_ASSERT(IsUnlocked(), "GetLockCount() == 0");
  while (LockCount(mHand) > 0) GlobalUnlock(mHand);
  GlobalFree(mHand);
  mHand = nullptr;
  mSize = 0;
  --gLiveCount;
}

bool MemHandle::IsUnlocked() const { return mHand == nullptr || LockCount(mHand) == 0; }
