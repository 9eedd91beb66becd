#include "base/dynlib.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "base/runstate.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/temp_dir.h"
#include "box_driver.h"

namespace {

const char* const kFunctions[] = {"GetFileVersionInfoA", "VerQueryValueA"};

std::string SystemFolder() {
  char path[MAX_PATH];
  GetSystemDirectoryA(path, MAX_PATH);
  return path;
}

TEST(DynLib, ResolvesTheListedFunctions) {
  const DynLib library("version.dll", kFunctions, 2, 0);
  ASSERT_TRUE(library.IsLoaded());
  EXPECT_EQ(library.Func(0), GetProcAddress(library.Module(), "GetFileVersionInfoA"));
  EXPECT_EQ(library.Func(1), GetProcAddress(library.Module(), "VerQueryValueA"));
}

TEST(DynLib, FunctionsCanBeCalled) {
  static const char* const names[] = {"GetFileVersionInfoSizeA"};
  const DynLib library("version.dll", names, 1, 0);
  const auto size = library.FuncAs<DWORD(WINAPI*)(const char*, DWORD*)>(0);
  ASSERT_NE(size, nullptr);
  DWORD ignored = 0;
  EXPECT_EQ(size("C:\\no such file", &ignored), 0u);
}

TEST(DynLib, AMissingFunctionAssertsWithItsName) {
  static const char* const names[] = {"VerQueryValueA", "NoSuchFunction"};
  AssertRecorder recorder;
  const DynLib library("version.dll", names, 2, 0);
  EXPECT_EQ(recorder.Only(), "NoSuchFunction");
  EXPECT_NE(library.Func(0), nullptr);
  EXPECT_EQ(library.Func(1), nullptr);
}

TEST(DynLib, ANullNameAsserts) {
  static const char* const names[] = {nullptr, "VerQueryValueA"};
  AssertRecorder recorder;
  const DynLib library("version.dll", names, 2, 0);
  EXPECT_EQ(recorder.Only(), "funcNames[i]");
  EXPECT_EQ(library.Func(0), nullptr);
  EXPECT_NE(library.Func(1), nullptr);
}

TEST(DynLib, FunctionIndexIsChecked) {
  const DynLib library("version.dll", kFunctions, 2, 0);
  for (int32_t i : {-1, 2, 1000}) {
    AssertRecorder recorder;
    EXPECT_EQ(library.Func(i), nullptr);
    EXPECT_EQ(recorder.Only(), "(i >= 0) && (i < mNumFuncs)");
  }
}

TEST(DynLib, NullPathAsserts) {
  AssertRecorder recorder;
  const DynLib library(nullptr, kFunctions, 2, 0);
  EXPECT_EQ(recorder.Only(), "pathStr");
  EXPECT_FALSE(library.IsLoaded());
}

TEST(DynLib, NullNamesAssert) {
  AssertRecorder recorder;
  const DynLib library("version.dll", nullptr, 2, 0);
  EXPECT_EQ(recorder.Only(), "funcNames");
  EXPECT_TRUE(library.IsLoaded());
  recorder.Clear();
  EXPECT_EQ(library.Func(0), nullptr);
  EXPECT_EQ(recorder.Only(), "(i >= 0) && (i < mNumFuncs)");
}

TEST(DynLib, AMissingLibraryIsSilentWithoutTheFlag) {
  AssertRecorder recorder;
  const DynLib library("vt-no-such.dll", kFunctions, 2, 0);
  EXPECT_FALSE(library.IsLoaded());
  EXPECT_EQ(library.Func(0), nullptr);
  EXPECT_TRUE(recorder.Texts().empty());
  EXPECT_TRUE(recorder.LogLines().empty());
}

TEST(DynLib, AMissingLibraryIsShownWithTheFlag) {
  BoxDriver driver("DLL Path", IDOK);
  const DynLib library("vt-no-such.dll", kFunctions, 2, DynLib::kReportFailure);
  driver.Finish();
  EXPECT_FALSE(library.IsLoaded());
  EXPECT_TRUE(driver.mShown);
  EXPECT_EQ(driver.mText, "Could not load DLL: vt-no-such.dll");
}

TEST(DynLib, AMissingLibraryIsOnlyLoggedInASilentRun) {
  ::Run().setupFlags = kQuiet;
  AssertRecorder recorder;
  const DynLib library("vt-no-such.dll", kFunctions, 2, DynLib::kReportFailure);
  ::Run() = RunState{};
  ASSERT_EQ(recorder.LogLines().size(), 1u);
  EXPECT_EQ(recorder.LogLines()[0], "Could not load DLL: vt-no-such.dll");
}

TEST(DynLib, DestructionFreesTheLibrary) {
  ASSERT_EQ(GetModuleHandleA("lz32.dll"), nullptr);
  {
    static const char* const names[] = {"LZClose"};
    const DynLib library("lz32.dll", names, 1, 0);
    ASSERT_TRUE(library.IsLoaded());
    EXPECT_NE(GetModuleHandleA("lz32.dll"), nullptr);
  }
  EXPECT_EQ(GetModuleHandleA("lz32.dll"), nullptr);
}

TEST(DynLib, AFullPathIsTakenAsItIs) {
  const DynLib library((SystemFolder() + "\\version.dll").c_str(), kFunctions, 2, 0);
  EXPECT_TRUE(library.IsLoaded());
}

// A library planted where a search would find it first must not be loaded.
TEST(DynLib, ABareNameComesFromTheSystemFolderOnly) {
  const TempDir folder;
  ASSERT_TRUE(CopyFileA((SystemFolder() + "\\lz32.dll").c_str(), folder.Join("vtplanted.dll").c_str(), TRUE));
  char former[MAX_PATH];
  GetCurrentDirectoryA(MAX_PATH, former);
  ASSERT_TRUE(SetCurrentDirectoryA(folder.Path().c_str()));
  static const char* const names[] = {"LZClose"};
  EXPECT_FALSE(DynLib("vtplanted.dll", names, 1, 0).IsLoaded());
  EXPECT_FALSE(DynLib(".\\vtplanted.dll", names, 1, 0).IsLoaded());
  EXPECT_FALSE(DynLib("..\\vtplanted.dll", names, 1, 0).IsLoaded());
  EXPECT_FALSE(DynLib("C:vtplanted.dll", names, 1, 0).IsLoaded());
  EXPECT_FALSE(DynLib("", names, 1, 0).IsLoaded());
  EXPECT_TRUE(DynLib("lz32.dll", names, 1, 0).IsLoaded());
  EXPECT_TRUE(DynLib(folder.Join("vtplanted.dll").c_str(), names, 1, 0).IsLoaded());
  SetCurrentDirectoryA(former);
}

TEST(DynLib, SystemLibraryPath) {
  EXPECT_EQ(SystemLibraryPath("version.dll").View(), SystemFolder() + "\\version.dll");
}

}  // namespace
