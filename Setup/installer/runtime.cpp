// The few pieces of the C++ run-time that would bring its exception machinery into the program. All of them
// are about errors that a program without exceptions cannot hand on: they stop the run.
#include <cstdlib>
#include <new>

#include "base/fatal.h"

namespace {

[[noreturn]] void Exhausted() { StopForMemory(MemError::kAlloc); }

void* Allocate(size_t size) { return std::malloc(size == 0 ? 1 : size); }

}  // namespace

void* operator new(size_t size) {
  void* const block = Allocate(size);
  if (block == nullptr) Exhausted();
  return block;
}
void* operator new[](size_t size) { return operator new(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }
void operator delete[](void* block, size_t) noexcept { std::free(block); }

// What containers call when they cannot go on: a size that no memory can hold, or a
// fault of the program itself.
namespace std {

void __throw_bad_alloc() { Exhausted(); }
void __throw_bad_array_new_length() { Exhausted(); }
void __throw_length_error(const char*) { Exhausted(); }
void __throw_logic_error(const char*) { abort(); }
void __throw_out_of_range_fmt(const char*, ...) { abort(); }

}  // namespace std
