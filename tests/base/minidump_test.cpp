#include "base/minidump.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

#include "base/hooks.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/import_double.h"
#include "support/temp_dir.h"

namespace {

using Names = std::vector<std::string>;

const char* gVersion = nullptr;

bool FindVariable(const char* name, Str* value) {
  if (strcmp(name, "Version") != 0 || gVersion == nullptr) return false;
  *value = gVersion;
  return true;
}

// Dumps go to a folder of the test's own.
class MiniDump : public testing::Test {
 protected:
  void SetUp() override {
    gVersion = "6.0 (1234)";
    HookTable hooks = Hooks();
    hooks.variable = FindVariable;
    mFormer = SetHooks(hooks);
    GetEnvironmentVariableA("TMP", mFormerTemp, MAX_PATH);
    SetEnvironmentVariableA("TMP", mTemp.Path().c_str());
  }
  void TearDown() override {
    SetEnvironmentVariableA("TMP", mFormerTemp);
    SetHooks(mFormer);
  }

  TempDir mTemp;
  char mFormerTemp[MAX_PATH] = "";
  HookTable mFormer = {};
};

TEST_F(MiniDump, FirstAndSecondNames) {
  Str path;
  ASSERT_TRUE(WriteMiniDump(path));
  EXPECT_EQ(path.View(), mTemp.Join("VTSetup_1234_0.dmp"));
  ASSERT_TRUE(WriteMiniDump(path));
  EXPECT_EQ(path.View(), mTemp.Join("VTSetup_1234_1.dmp"));
}

TEST_F(MiniDump, TakesTheFirstFreeNumber) {
  mTemp.Write("VTSetup_1234_0.dmp", "old");
  mTemp.Write("VTSetup_1234_2.dmp", "old");
  Str path;
  ASSERT_TRUE(WriteMiniDump(path));
  EXPECT_EQ(path.View(), mTemp.Join("VTSetup_1234_1.dmp"));
  ASSERT_TRUE(WriteMiniDump(path));
  EXPECT_EQ(path.View(), mTemp.Join("VTSetup_1234_3.dmp"));
  EXPECT_EQ(mTemp.Read("VTSetup_1234_0.dmp"), "old");
}

TEST_F(MiniDump, AFolderOfThatNameIsTaken) {
  mTemp.MakeFolder("VTSetup_1234_0.dmp");
  Str path;
  ASSERT_TRUE(WriteMiniDump(path));
  EXPECT_EQ(path.View(), mTemp.Join("VTSetup_1234_1.dmp"));
}

TEST_F(MiniDump, NumbersGoOnWithoutABound) {
  for (int i = 0; i < 150; ++i) mTemp.Write("VTSetup_1234_" + std::to_string(i) + ".dmp", "");
  Str path;
  ASSERT_TRUE(WriteMiniDump(path));
  EXPECT_EQ(path.View(), mTemp.Join("VTSetup_1234_150.dmp"));
}

TEST_F(MiniDump, IsADumpFile) {
  Str path;
  ASSERT_TRUE(WriteMiniDump(path));
  const std::string bytes = ReadWholeFile(path.Chars());
  ASSERT_GT(bytes.size(), 32u);
  EXPECT_EQ(bytes.substr(0, 4), "MDMP");
  const auto number = [&](size_t at) {
    uint32_t value = 0;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
  };
  EXPECT_EQ(number(24), 0u);  // the kind: a normal one
  constexpr uint32_t kExceptionStream = 6;
  const uint32_t streams = number(8);
  ASSERT_LE(number(12) + streams * 12, bytes.size());
  for (uint32_t i = 0; i < streams; ++i) EXPECT_NE(number(number(12) + i * 12), kExceptionStream);
}

TEST_F(MiniDump, WithoutAVersionNumber) {
  for (const char* version : {static_cast<const char*>(nullptr), "6.0"}) {
    gVersion = version;
    Str path;
    ASSERT_TRUE(WriteMiniDump(path));
    EXPECT_NE(path.Find("\\VTSetup_NoBuildNum_"), -1);
  }
  EXPECT_EQ(NamesIn(mTemp.Path()), (Names{"VTSetup_NoBuildNum_0.dmp", "VTSetup_NoBuildNum_1.dmp"}));
}

TEST_F(MiniDump, WhereNoFileCanBeCreatedThereIsNone) {
  SetEnvironmentVariableA("TMP", mTemp.Join("missing").c_str());
  Str path;
  EXPECT_FALSE(WriteMiniDump(path));
  EXPECT_TRUE(NamesIn(mTemp.Path()).empty());
}

TEST_F(MiniDump, ATemporaryFolderThatCannotBeNamedAsserts) {
  SetEnvironmentVariableA("TMP", ("C:\\" + std::string(300, 'x')).c_str());
  AssertRecorder recorder;
  Str path;
  EXPECT_FALSE(WriteMiniDump(path));
  EXPECT_EQ(recorder.Texts().back(), "GetMiniDumpPath(\"VTSetup\",index,miniDumpPath)");
}

DWORD WINAPI TempPathBeyondTheRoom(DWORD, LPSTR) { return 261; }

TEST_F(MiniDump, ATemporaryFolderThatIsTooLongAsserts) {
  AssertRecorder recorder;
  const ImportDouble naming("GetTempPathA", reinterpret_cast<void*>(&TempPathBeyondTheRoom));
  Str path;
  EXPECT_FALSE(WriteMiniDump(path));
  EXPECT_EQ(recorder.Only(), "GetMiniDumpPath(\"VTSetup\",index,miniDumpPath)");
}

DWORD WINAPI NoTempPath(DWORD, LPSTR) { return 0; }

TEST_F(MiniDump, ATemporaryFolderThatTheSystemDoesNotKnowAsserts) {
  AssertRecorder recorder;
  const ImportDouble naming("GetTempPathA", reinterpret_cast<void*>(&NoTempPath));
  Str path;
  EXPECT_FALSE(WriteMiniDump(path));
  EXPECT_EQ(recorder.Texts(),
            (Names{"::GetTempPathA(260,pathStr) > 0", "GetMiniDumpPath(\"VTSetup\",index,miniDumpPath)"}));
}

// Needs a dump writer that fails; test_other_systems.py puts one in the system folder.
TEST_F(MiniDump, WhatCannotBeWrittenLeavesNoFile) {
  if (GetEnvironmentVariableA("VT_DUMP_WRITER_FAILS", nullptr, 0) == 0)
    GTEST_SKIP() << "the dump writer works here";
  Str path;
  EXPECT_FALSE(WriteMiniDump(path));
  EXPECT_TRUE(NamesIn(mTemp.Path()).empty());
}

// Needs a system without a dump writer.
TEST_F(MiniDump, WithoutADumpWriterThereIsNone) {
  if (GetEnvironmentVariableA("VT_NO_DUMP_WRITER", nullptr, 0) == 0)
    GTEST_SKIP() << "the dump writer works here";
  Str path;
  EXPECT_FALSE(WriteMiniDump(path));
  EXPECT_TRUE(NamesIn(mTemp.Path()).empty());
}

}  // namespace
