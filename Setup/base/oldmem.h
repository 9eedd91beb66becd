#pragma once
// Plain functions on raw movable blocks. They never raise; they report by assertions and null results.
#include <windows.h>

#include <cstdint>

using RawHandle = HGLOBAL;

[[nodiscard]] RawHandle NewHandle(int32_t size);
// Reallocates in place; returns false, the block being as it was, when that failed or `size` is not positive.
[[nodiscard]] bool ResizeHandle(RawHandle handle, int32_t size);
// Outside the block GetByte gives 0 and SetByte writes nothing; so for the functions below.
uint8_t GetByte(RawHandle handle, int32_t index);
void SetByte(RawHandle handle, int32_t index, uint8_t value);
// Sum of the first `length` bytes as a 16-bit value; 0 for a null handle.
uint16_t SumBytes(int32_t length, RawHandle handle);
void ReadBytes(RawHandle handle, int32_t len, int32_t offset, void* dest);
// A copy of the block. The number of bytes copied is the size as a signed 16-bit number: only blocks of at
// most 32767 bytes are duplicated whole, the rest stays zero.
[[nodiscard]] RawHandle CopyHandle(RawHandle source);
void FreeHandle(RawHandle handle);

// Unsigned 32-bit sum of `count` bytes.
uint32_t ByteSum(const void* bytes, uint32_t count);
