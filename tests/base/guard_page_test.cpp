// Arrays out of an allocator of the test's own: with every buffer placed right before an unreadable page,
// where one byte too many ends the test, and without any memory left.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "base/mem.h"
#include "base/str.h"
#include "base/string.h"
#include "support/assert_recorder.h"

namespace {

bool gGuard = false;
bool gExhausted = false;

constexpr size_t kPage = 4096;
constexpr size_t kMark = 0x67756172;

// Before a guarded block stands its region's start; a plain one has the header without the mark.
struct Header {
  size_t mark;
  void* region;
};

size_t RoundUp(size_t size) { return (size + kPage - 1) / kPage * kPage; }

void* AllocateGuarded(size_t size) {
  // The header lies at the front of the committed pages, the block at their end, a reserved page behind them.
  const size_t committed = RoundUp(size + sizeof(Header));
  auto* const region =
      static_cast<char*>(VirtualAlloc(nullptr, committed + kPage, MEM_RESERVE, PAGE_NOACCESS));
  if (region == nullptr) throw std::bad_alloc();
  if (VirtualAlloc(region, committed, MEM_COMMIT, PAGE_READWRITE) == nullptr) throw std::bad_alloc();
  *reinterpret_cast<Header*>(region) = {kMark, region};
  return region + committed - size;
}

// The guarded region that holds `block`, or null.
void* RegionOf(void* block) {
  MEMORY_BASIC_INFORMATION info;
  if (VirtualQuery(block, &info, sizeof(info)) == 0 || info.Type != MEM_PRIVATE) return nullptr;
  const auto* const header = static_cast<const Header*>(info.AllocationBase);
  MEMORY_BASIC_INFORMATION first;
  if (VirtualQuery(header, &first, sizeof(first)) == 0 || first.State != MEM_COMMIT ||
      first.Protect != PAGE_READWRITE) {
    return nullptr;
  }
  return header->mark == kMark && header->region == header ? info.AllocationBase : nullptr;
}

class GuardScope {
 public:
  GuardScope() { gGuard = true; }
  ~GuardScope() { gGuard = false; }
};

class NoMemoryScope {
 public:
  NoMemoryScope() { gExhausted = true; }
  ~NoMemoryScope() { gExhausted = false; }
};

}  // namespace

void* operator new[](size_t size) {
  if (gExhausted) throw std::bad_alloc();
  if (gGuard) return AllocateGuarded(size);
  void* const block = std::malloc(size > 0 ? size : 1);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void* operator new[](size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new[](size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void operator delete[](void* block) noexcept {
  if (block == nullptr) return;
  if (void* const region = RegionOf(block)) {
    VirtualFree(region, 0, MEM_RELEASE);
  } else {
    std::free(block);
  }
}

void operator delete[](void* block, size_t) noexcept { operator delete[](block); }

namespace {

volatile LONG gFaults = 0;

LONG CALLBACK CountFault(EXCEPTION_POINTERS* exception) {
  if (exception->ExceptionRecord->ExceptionCode != EXCEPTION_ACCESS_VIOLATION)
    return EXCEPTION_CONTINUE_SEARCH;
  gFaults = gFaults + 1;
  // Makes the guard page writable so that the access can be repeated.
  const auto address = reinterpret_cast<void*>(exception->ExceptionRecord->ExceptionInformation[1]);
  return VirtualAlloc(address, 1, MEM_COMMIT, PAGE_READWRITE) != nullptr ? EXCEPTION_CONTINUE_EXECUTION
                                                                         : EXCEPTION_CONTINUE_SEARCH;
}

TEST(GuardPage, TheAllocatorFaultsOnTheFirstByteBehindABlock) {
  gFaults = 0;
  void* const handler = AddVectoredExceptionHandler(1, CountFault);
  char* block;
  {
    const GuardScope guard;
    block = new char[7];
  }
  volatile char* const bytes = block;
  bytes[6] = 'x';
  const LONG inside = gFaults;
  bytes[7] = 'x';
  const LONG outside = gFaults;
  RemoveVectoredExceptionHandler(handler);
  delete[] block;
  EXPECT_EQ(inside, 0);
  EXPECT_EQ(outside, 1);
}

TEST(GuardPage, StrFormatting) {
  AssertRecorder recorder;
  for (size_t length :
       {0u, 1u, 98u, 99u, 100u, 1998u, 1999u, 2000u, 2001u, 2099u, 2100u, 8191u, 8192u, 40000u}) {
    const std::string source(length, 'x');
    const GuardScope guard;
    Str text;
    text.Format("%s", source.c_str());
    ASSERT_EQ(text.View(), source);
    Str longer("start");
    longer.Format("%s%s", longer.Chars(), source.c_str());
    ASSERT_EQ(longer.View(), "start" + source);
  }
}

TEST(GuardPage, WStrFormatting) {
  AssertRecorder recorder;
  for (size_t length : {0u, 1u, 98u, 99u, 100u, 1997u, 1998u, 1999u, 2000u, 2001u, 4000u, 40000u}) {
    const std::wstring source(length, L'x');
    const GuardScope guard;
    WStr text;
    text.Format(L"%s", source.c_str());
    ASSERT_EQ(text.Chars(), source);
  }
}

TEST(GuardPage, StrGrowsAndIsEditedWithinItsBuffer) {
  const GuardScope guard;
  Str text;
  for (int i = 0; i < 450; ++i) text.Append('x');
  text.Append(text.Chars());
  text.Insert("yy", text.Length());
  text.Insert(text.Chars(), 0);
  text.Overwrite("zz", text.Length() - 2);
  text.SetAt(text.Length() - 1, '!');
  text.Delete(text.Length() - 1, -1);
  text.Delete(0, 1);
  text.SetSubstring(text.Chars(), 1, text.Length() - 1);
  const Str copy(text);
  EXPECT_TRUE(copy == text);
  EXPECT_EQ(text.Length(), 2 * 902 - 3);
}

TEST(GuardPage, WStrGrowsAndIsEditedWithinItsBuffer) {
  const GuardScope guard;
  WStr text;
  for (int i = 0; i < 450; ++i) text.Append(L'x');
  text.Append(text.Chars());
  text.Prepend(text.Chars(), 98);
  text.Insert(L"yy", text.Length());
  text.SetAt(text.Length(), L'!');
  EXPECT_EQ(text.Replace(L"x", L"xyz"), 998);
  text.Delete(text.Length() - 1, -1);
  const WStr copy(text);
  EXPECT_EQ(copy.Compare(text), 0);
  EXPECT_EQ(text.Length(), 3 * 998 + 2);
}

TEST(GuardPage, MisuseStaysWithinTheBuffer) {
  AssertRecorder recorder;
  const GuardScope guard;
  Str text(std::string(99, 'x').c_str());
  text.SetAt(99, 'y');
  text.SetAt(100, 'y');
  text.Overwrite("yyyy", 97);
  text.Insert("z", 1000);
  text.Delete(90, 1000);
  text.Lock(100);
  memset(text.Lock(text.Capacity()), 'q', static_cast<size_t>(text.Capacity()));
  text.Unlock();
  EXPECT_EQ(text.Length(), text.Capacity() - 1);
}

TEST(GuardPage, Conversions) {
  const std::string narrow(8192, 'x');
  const std::wstring wide(8192, L'x');
  for (int32_t size : {1, 2, 100, 8191, 8192, 8193, 9000}) {
    const GuardScope guard;
    const std::unique_ptr<wchar_t[]> wideBuffer(new wchar_t[static_cast<size_t>(size)]);
    AnsiToWide(narrow.c_str(), wideBuffer.get(), size);
    const std::unique_ptr<char[]> narrowBuffer(new char[static_cast<size_t>(size)]);
    WideToAnsi(wide.c_str(), narrowBuffer.get(), size);
    const size_t expected = std::min<size_t>(8192, static_cast<size_t>(size) - 1);
    ASSERT_EQ(wcslen(wideBuffer.get()), expected);
    ASSERT_EQ(strlen(narrowBuffer.get()), expected);
  }
}

TEST(NoMemory, AllocatingConversionsGiveNull) {
  const NoMemoryScope noMemory;
  EXPECT_EQ(AnsiToWide("abc"), nullptr);
  EXPECT_EQ(WideToAnsi(L"abc"), nullptr);
}

TEST(NoMemory, ConversionsIntoAShortBufferAreTerminated) {
  wchar_t wide[4] = L"###";
  char narrow[4] = "###";
  {
    const NoMemoryScope noMemory;
    AnsiToWide("abcdef", wide, 4);
    WideToAnsi(L"abcdef", narrow, 4);
  }
  EXPECT_LT(wcslen(wide), 4u);
  EXPECT_LT(strlen(narrow), 4u);
}

TEST(NoMemory, AHeapCopyOfABlockRaisesTheAllocationCode) {
  MemHandle mem("abc", 3u);
  uint32_t code = 0;
  try {
    const NoMemoryScope noMemory;
    mem.ToHeap();
  } catch (const MemError& error) {
    code = error.code;
  }
  EXPECT_EQ(code, 0x8004020bu);
  EXPECT_EQ(mem.GetLockCount(), 0);
}

TEST(NoMemory, AnOrdinaryBlockCannotBeHad) {
  const NoMemoryScope noMemory;
  EXPECT_FALSE(MemoryAvailable(1));
}

}  // namespace
