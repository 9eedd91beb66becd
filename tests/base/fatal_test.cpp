#include "base/fatal.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <limits>
#include <new>

#include "base/hooks.h"
#include "base/mem.h"
#include "support/process.h"
#include "support/stopped.h"

namespace {

TEST(Fatal, ExhaustedMemoryStopsWithItsCode) {
  for (const uint32_t code : {MemError::kAlloc, MemError::kLock}) {
    try {
      StopForMemory(code);
    } catch (const MemError& error) {
      EXPECT_EQ(error.code, code);
    }
  }
}

TEST(Fatal, AFatalErrorStops) { EXPECT_THROW(StopForFatalError(), FatalStop); }

TEST(Fatal, MemoryIsProbedWithoutStopping) {
  EXPECT_TRUE(MemoryAvailable(0));
  EXPECT_TRUE(MemoryAvailable(1000));
  EXPECT_FALSE(MemoryAvailable(size_t{0x7FFF0000}));
}

// These run in a child process only: no hook ends it.
TEST(FatalChild, MemoryWithoutHooks) {
  if (GetEnvironmentVariableA("VT_FATAL_CHILD", nullptr, 0) == 0)
    GTEST_SKIP() << "started by another test only";
  SetHooks(HookTable{});
  StopForMemory(MemError::kAlloc);
}

TEST(FatalChild, ErrorWithoutHooks) {
  if (GetEnvironmentVariableA("VT_FATAL_CHILD", nullptr, 0) == 0)
    GTEST_SKIP() << "started by another test only";
  SetHooks(HookTable{});
  StopForFatalError();
}

TEST(Fatal, WithoutHooksTheProcessEndsWithEight) {
  char program[MAX_PATH] = "";
  ASSERT_NE(GetModuleFileNameA(nullptr, program, MAX_PATH), 0u);
  SetEnvironmentVariableA("VT_FATAL_CHILD", "1");
  for (const char* name : {"MemoryWithoutHooks", "ErrorWithoutHooks"}) {
    const ProcessResult result = RunProcess(Quoted(program) + " --gtest_filter=FatalChild." + name);
    EXPECT_EQ(result.exitCode, 8u) << name;
  }
  SetEnvironmentVariableA("VT_FATAL_CHILD", nullptr);
}

}  // namespace
