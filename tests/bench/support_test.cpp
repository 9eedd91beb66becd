// The tests' own helpers: a helper that cannot fail would hide faults of the program.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "base/assert.h"
#include "base/handle.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/leak_check.h"
#include "support/process.h"
#include "support/registry_guard.h"
#include "support/temp_dir.h"
#include "support/wait.h"

TEST(AssertRecorder, RecordsTextFileAndLine) {
  AssertRecorder recorder;
  VT_ASSERT(1 == 1, "holds");
  VT_ASSERT(1 == 2, "fails");
  ASSERT_EQ(recorder.Asserts().size(), 1u);
  EXPECT_EQ(recorder.Only(), "fails");
  EXPECT_EQ(recorder.Asserts()[0].line, __LINE__ - 3);
}

TEST(AssertRecorder, WithoutOneAnAssertionFailsTheTest) {
  EXPECT_NONFATAL_FAILURE(VT_FAIL("nobody expects this"), "unexpected assertion: nobody expects this");
}

TEST(TempDir, IsRemovedWithReadOnlyFiles) {
  std::string path;
  {
    TempDir dir;
    path = dir.Path();
    dir.Write("a\\b\\c.txt", "text");
    EXPECT_EQ(dir.Read("a\\b\\c.txt"), "text");
    SetFileAttributesA(dir.Join("a\\b\\c.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(PathExists(path));
  }
  EXPECT_FALSE(PathExists(path));
}

TEST(Process, GivesTheWholeExitCodeAndTheOutput) {
  const ProcessResult result = RunProcess(HelperPath("exit_with.exe") + " 305419896 hello");
  ASSERT_TRUE(result.started) << result.error;
  EXPECT_EQ(result.exitCode, 0x12345678u);
  EXPECT_EQ(result.output, "hello\r\n");
}

TEST(Process, EndsAProgramThatHangs) {
  ProcessOptions options;
  options.timeoutMs = 200;
  const ProcessResult result = RunProcess(HelperPath("exit_with.exe") + " hang", options);
  ASSERT_TRUE(result.started) << result.error;
  EXPECT_TRUE(result.timedOut);
}

TEST(Process, SaysWhyAStartFailed) {
  const ProcessResult result = RunProcess("C:\\no\\such.exe");
  EXPECT_FALSE(result.started);
  EXPECT_NE(result.error, 0u);
}

TEST(RegistryGuard, CleansBeforeAndAfter) {
  const char* path = "Software\\VeltraneTest\\Guard";
  SetRegistryString(HKEY_CURRENT_USER, std::string(path) + "\\Sub", "a", "left by another run");
  {
    RegistryGuard guard(HKEY_CURRENT_USER, "Software\\VeltraneTest");
    EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, path));
    SetRegistryString(HKEY_CURRENT_USER, path, "s", "text");
    SetRegistryDword(HKEY_CURRENT_USER, path, "n", 7);
    EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, path, "s"), "text");
    EXPECT_EQ(RegistryDword(HKEY_CURRENT_USER, path, "n"), 7u);
    EXPECT_EQ(RegistryDword(HKEY_CURRENT_USER, path, "s"), std::nullopt);
  }
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, "Software\\VeltraneTest"));
}

TEST(RegistryValueGuard, PutsAValueBack) {
  RegistryGuard key(HKEY_CURRENT_USER, "Software\\VeltraneTest");
  SetRegistryString(HKEY_CURRENT_USER, key.Path(), "old", "1");
  {
    RegistryValueGuard old(HKEY_CURRENT_USER, key.Path(), "old");
    RegistryValueGuard fresh(HKEY_CURRENT_USER, key.Path(), "fresh");
    SetRegistryString(HKEY_CURRENT_USER, key.Path(), "old", "2");
    SetRegistryString(HKEY_CURRENT_USER, key.Path(), "fresh", "2");
  }
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, key.Path(), "old"), "1");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, key.Path(), "fresh"), std::nullopt);
}

namespace {

// What a run of the leak check reports for something left open.
template <class Leak>
std::string ReportFor(Leak leak) {
  testing::TestPartResultArray results;
  LeakCheck check;
  const testing::TestInfo& info = *testing::UnitTest::GetInstance()->current_test_info();
  check.OnTestStart(info);
  [[maybe_unused]] auto left = leak();
  {
    testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
    check.OnTestEnd(info);
  }
  std::string text;
  for (int i = 0; i < results.size(); ++i) text += results.GetTestPartResult(i).message();
  return text;
}

}  // namespace

TEST(LeakCheck, FindsAFile) {
  TempDir dir;
  const std::string report = ReportFor([&dir] {
    return FileHandle(CreateFileA(dir.Join("f").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
  });
  EXPECT_NE(report.find("1 more open: File"), std::string::npos) << report;
}

TEST(LeakCheck, FindsAKey) {
  const std::string report = ReportFor([] {
    HKEY key = nullptr;
    RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Software\\Microsoft", 0, KEY_READ, &key);
    return KeyHandle(key);
  });
  EXPECT_NE(report.find("1 more open: Key"), std::string::npos) << report;
}

TEST(LeakCheck, FindsAWindow) {
  const std::string report = ReportFor([] {
    return WindowHandle(
        CreateWindowA("STATIC", "left", WS_OVERLAPPED, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr));
  });
  EXPECT_NE(report.find("1 more open: top-level window"), std::string::npos) << report;
}

TEST(LeakCheck, IsContentWithNothingLeft) {
  EXPECT_EQ(ReportFor([] { return 0; }), "");
}

TEST(WaitUntil, GivesUp) {
  EXPECT_FALSE(WaitUntil([] { return false; }, 50));
}
