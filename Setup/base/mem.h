#pragma once
// MemHandle: an owned movable block of the system's global heap, with the system's lock count.
#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/fatal.h"

// Exhaustion stops the run (StopForMemory).
class MemHandle {
 public:
  enum Flags : uint32_t { kZero = 1 };  // zero-fill new bytes

  MemHandle() = default;  // empty: no block
  explicit MemHandle(uint32_t size, uint32_t flags = 0);
  MemHandle(const void* bytes, uint32_t size);
  explicit MemHandle(HGLOBAL osHand);  // adopts; a block of size 0 is replaced by a fresh one of 1 byte
  MemHandle(const MemHandle& other);
  MemHandle(MemHandle&& other) noexcept;
  ~MemHandle();
  MemHandle& operator=(const MemHandle& other);
  MemHandle& operator=(MemHandle&& other) noexcept;

  bool IsValid() const { return mHand != nullptr; }
  HGLOBAL Handle() const { return mHand; }
  uint32_t Size() const { return mSize; }  // as asked for: 0 for a block of one byte
  // Keeps the handle; an empty object gets a block.
  void Resize(uint32_t size, uint32_t flags = 0);
  int32_t GetLockCount() const;
  void* Lock();
  void Unlock();
  // Gives up ownership; the object becomes empty.
  HGLOBAL Release();
  // Read and Write transfer only the bytes that lie inside the block.
  void Read(uint32_t offset, uint32_t len, void* dest);
  void Write(uint32_t offset, uint32_t len, const void* source);
  // A copy of the contents on the ordinary heap.
  std::unique_ptr<std::byte[]> ToHeap();

  // Number of live blocks in the process.
  static int32_t LiveCount();

 private:
  void Allocate(uint32_t size, uint32_t flags);
  void CopyFrom(const MemHandle& other);
  void Free();
  bool IsUnlocked() const;

  HGLOBAL mHand = nullptr;
  uint32_t mSize = 0;
};

// Locks for a scope.
class MemLock {
 public:
  explicit MemLock(MemHandle& mem) : mMem(mem), mPtr(static_cast<char*>(mem.Lock())) {}
  MemLock(const MemLock&) = delete;
  MemLock& operator=(const MemLock&) = delete;
  ~MemLock() { mMem.Unlock(); }
  char* Ptr() const { return mPtr; }

 private:
  MemHandle& mMem;
  char* mPtr;
};
