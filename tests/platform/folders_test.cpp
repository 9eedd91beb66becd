#include "platform/folders.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shlobj.h>

#include <string>

#include "base/runstate.h"
#include "support/files.h"
#include "support/import_double.h"
#include "support/leak_check.h"
#include "support/process.h"
#include "support/registry_guard.h"
#include "support/temp_dir.h"

namespace {

std::string Text(const Str& text) { return text.Chars(); }

void ExpectFolder(bool (*get)(Str&)) {
  Str dir;
  ASSERT_TRUE(get(dir));
  EXPECT_TRUE(IsFolder(Text(dir))) << dir.Chars();
  EXPECT_NE(Text(dir).back(), '\\');
}

TEST(Folders, WindowsAndSystem) {
  char expected[MAX_PATH];
  Str dir;
  GetWindowsDirectoryA(expected, sizeof expected);
  ExpectFolder(Folders::GetWindowsDir);
  ASSERT_TRUE(Folders::GetWindowsDir(dir));
  EXPECT_EQ(Text(dir), expected);
  GetSystemDirectoryA(expected, sizeof expected);
  ExpectFolder(Folders::GetSystemDir);
  ASSERT_TRUE(Folders::GetSystemDir(dir));
  EXPECT_EQ(Text(dir), expected);
}

TEST(Folders, TemporaryHasNoTrailingBackslash) {
  char expected[MAX_PATH];
  GetTempPathA(sizeof expected, expected);
  ExpectFolder(Folders::GetTempDir);
  Str dir;
  ASSERT_TRUE(Folders::GetTempDir(dir));
  EXPECT_EQ(Text(dir) + "\\", expected);
}

// The temporary folder comes from the environment; other values of it for one test.
class Environment {
 public:
  explicit Environment(const char* value) {
    GetEnvironmentVariableA("TMP", mFormer, sizeof mFormer);
    SetEnvironmentVariableA("TMP", value);
  }
  ~Environment() { SetEnvironmentVariableA("TMP", mFormer); }

 private:
  char mFormer[MAX_PATH] = "";
};

TEST(Folders, TemporaryRootKeepsItsBackslash) {
  Environment environment("C:\\");
  Str dir;
  ASSERT_TRUE(Folders::GetTempDir(dir));
  EXPECT_EQ(Text(dir), "C:\\");
}

TEST(Folders, TooLongTemporaryFolderIsRefused) {
  const std::string folder = "C:\\" + std::string(300, 't');
  Environment environment(folder.c_str());
  Str dir("untouched");
  // The system gives nothing, or another folder; never a cut one.
  if (Folders::GetTempDir(dir)) {
    EXPECT_TRUE(IsFolder(Text(dir))) << dir.Chars();
  }
}

TEST(Folders, UserAppData) {
  AllowOpenHandles("the shell keeps its folder keys open");
  ExpectFolder(Folders::GetUserAppDataDir);
  Str dir;
  ASSERT_TRUE(Folders::GetUserAppDataDir(dir));
  char expected[MAX_PATH] = "";
  GetEnvironmentVariableA("APPDATA", expected, sizeof expected);
  EXPECT_EQ(Text(dir), expected);
}

TEST(Folders, ProgramsIsThatOfAllUsers) {
  AllowOpenHandles("the shell keeps its folder keys open");
  ExpectFolder(Folders::GetProgramsDir);
  Str dir;
  ASSERT_TRUE(Folders::GetProgramsDir(dir));
  char allUsers[MAX_PATH] = "";
  GetEnvironmentVariableA("ALLUSERSPROFILE", allUsers, sizeof allUsers);
  EXPECT_EQ(Text(dir).substr(0, std::string(allUsers).size()), allUsers);
  EXPECT_EQ(Text(dir).substr(Text(dir).rfind('\\')), "\\Programs");
}

TEST(Folders, ProgramFiles) {
  AllowOpenHandles("the shell keeps its folder keys open");
  ExpectFolder(Folders::GetProgramFilesFolder);
  Str dir;
  ASSERT_TRUE(Folders::GetProgramFilesFolder(dir));
  char expected[MAX_PATH] = "";
  GetEnvironmentVariableA("ProgramFiles", expected, sizeof expected);
  EXPECT_EQ(Text(dir), expected);
}

DWORD WINAPI NoTempPath(DWORD, LPSTR) { return 0; }
DWORD WINAPI LongTempPath(DWORD size, LPSTR) { return size; }  // the room it would need
UINT WINAPI NoFolder(LPSTR, UINT) { return 0; }
BOOL WINAPI NoShellFolder(HWND, LPSTR, int, BOOL) { return FALSE; }

TEST(Folders, TemporaryThatTheSystemDoesNotNameFails) {
  Str dir("untouched");
  {
    const ImportDouble none("GetTempPathA", reinterpret_cast<void*>(&NoTempPath));
    EXPECT_FALSE(Folders::GetTempDir(dir));
  }
  const ImportDouble tooLong("GetTempPathA", reinterpret_cast<void*>(&LongTempPath));
  EXPECT_FALSE(Folders::GetTempDir(dir));
  EXPECT_EQ(Text(dir), "untouched");
}

TEST(Folders, WindowsAndSystemThatTheSystemDoesNotNameFail) {
  const ImportDouble windows("GetWindowsDirectoryA", reinterpret_cast<void*>(&NoFolder));
  const ImportDouble system("GetSystemDirectoryA", reinterpret_cast<void*>(&NoFolder));
  Str dir("untouched");
  EXPECT_FALSE(Folders::GetWindowsDir(dir));
  EXPECT_FALSE(Folders::GetSystemDir(dir));
  EXPECT_EQ(Text(dir), "untouched");
}

// A shell that knows the user's own folder only.
BOOL WINAPI UsersShellFolder(HWND, LPSTR path, int csidl, BOOL create) {
  if (csidl != CSIDL_PROGRAMS) return FALSE;
  lstrcpyA(path, create ? "C:\\users\\me\\Programs\\" : "not asked to create it");
  return TRUE;
}

TEST(Folders, ProgramsFallsBackToThatOfTheUser) {
  const ImportDouble shell("SHGetSpecialFolderPathA", reinterpret_cast<void*>(&UsersShellFolder));
  Str dir;
  ASSERT_TRUE(Folders::GetProgramsDir(dir));
  EXPECT_EQ(Text(dir), "C:\\users\\me\\Programs");
}

TEST(Folders, ShellThatNamesNoFolderFails) {
  const ImportDouble shell("SHGetSpecialFolderPathA", reinterpret_cast<void*>(&NoShellFolder));
  Str dir("untouched");
  EXPECT_FALSE(Folders::GetProgramsDir(dir));
  EXPECT_FALSE(Folders::GetProgramFilesFolder(dir));
  EXPECT_FALSE(Folders::GetUserAppDataDir(dir));
  EXPECT_EQ(Text(dir), "untouched");
}

std::string gModulePath;
DWORD WINAPI GivenModulePath(HMODULE, LPSTR buffer, DWORD size) {
  // As Windows does: what does not fit is cut, and the size is the answer.
  lstrcpynA(buffer, gModulePath.c_str(), static_cast<int>(size));
  return static_cast<DWORD>(gModulePath.size()) < size ? static_cast<DWORD>(gModulePath.size()) : size;
}

// The program's path when the system tells `path`; "(failed)" when it is refused.
std::string ModulePathOf(const std::string& path) {
  const ImportDouble asking("GetModuleFileNameA", reinterpret_cast<void*>(&GivenModulePath));
  gModulePath = path;
  Str result("(failed)");
  const bool known = Folders::GetModulePath(result);
  EXPECT_EQ(known, Text(result) != "(failed)");
  return Text(result);
}

TEST(Folders, ModulePathOf260CharactersIsTheLongest) {
  const std::string longest = "C:\\" + std::string(257, 'x');
  EXPECT_EQ(ModulePathOf(longest), longest);
  EXPECT_EQ(ModulePathOf(longest + "x"), "(failed)");
  EXPECT_EQ(ModulePathOf(longest + std::string(500, 'x')), "(failed)");
  EXPECT_EQ(ModulePathOf(""), "(failed)");
}

TEST(Folders, ModulePathOfTheNativeKindBecomesAnOrdinaryOne) {
  EXPECT_EQ(ModulePathOf("\\\\?\\C:\\a\\Setup.exe"), "C:\\a\\Setup.exe");
  EXPECT_EQ(ModulePathOf("\\\\?\\UNC\\server\\share\\Setup.exe"), "\\\\server\\share\\Setup.exe");
  EXPECT_EQ(ModulePathOf("UNC\\server\\share\\Setup.exe"), "\\\\server\\share\\Setup.exe");
}

TEST(Folders, ModulePathIsThisProgram) {
  Str path;
  ASSERT_TRUE(Folders::GetModulePath(path));
  char expected[MAX_PATH];
  GetModuleFileNameA(nullptr, expected, sizeof expected);
  EXPECT_EQ(Text(path), expected);
  EXPECT_TRUE(PathExists(Text(path)));
}

DWORD gModuleLength = 0;

DWORD WINAPI LongModulePath(HMODULE, LPSTR buffer, DWORD size) {
  const std::string path = "C:\\" + std::string(gModuleLength > 3 ? gModuleLength - 3 : 0, 'x');
  lstrcpynA(buffer, path.c_str(), static_cast<int>(size));
  return gModuleLength < size ? gModuleLength : size;
}

TEST(Folders, ModulePathHasAtMost260Characters) {
  const ImportDouble naming("GetModuleFileNameA", reinterpret_cast<void*>(&LongModulePath));
  Str path("kept");
  for (const DWORD length : {261u, 262u, 1000u, 0u}) {
    gModuleLength = length;
    EXPECT_FALSE(Folders::GetModulePath(path)) << length;
    EXPECT_EQ(path, "kept");
  }
  gModuleLength = 260;
  ASSERT_TRUE(Folders::GetModulePath(path));
  EXPECT_EQ(path.Length(), 260);
}

TEST(Platform, FlagsAndVersionOfThisSystem) {
  OSVERSIONINFOA info = {};
  info.dwOSVersionInfoSize = sizeof info;
  ASSERT_TRUE(GetVersionExA(&info));
  DetectPlatform();
  EXPECT_EQ(::Run().windowsMajor, info.dwMajorVersion);
  EXPECT_EQ(::Run().windowsMinor, info.dwMinorVersion);
  EXPECT_EQ((::Run().platformFlags & kPlatformNT) != 0, info.dwPlatformId == VER_PLATFORM_WIN32_NT);
  EXPECT_EQ(::Run().IsWin9x(), info.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS);
  EXPECT_EQ((::Run().platformFlags & kPlatformMajor4) != 0, info.dwMajorVersion >= 4);
}

TEST(Platform, FormerFlagsAreReplaced) {
  ::Run().platformFlags = kPlatformWin9x | kPlatformNT;
  DetectPlatform();
  EXPECT_NE(::Run().platformFlags & (kPlatformNT | kPlatformWin9x), DWORD{kPlatformNT | kPlatformWin9x});
}

// Runs itself once more under a name that the system takes for a program on Windows 98.
constexpr char kWin98Name[] = "vtwin98.exe";

void ExpectWindows98() {
  DetectPlatform();
  EXPECT_TRUE(::Run().IsWin9x());
  EXPECT_EQ(::Run().platformFlags, uint32_t{kPlatformWin9x | kPlatformMajor4});
  EXPECT_EQ(::Run().windowsMajor, 4);
  EXPECT_EQ(::Run().windowsMinor, 10);
}

TEST(Platform, Windows98IsTheConsumerFamily) {
  if (!GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version")) {
    GTEST_SKIP() << "only Wine can pose as another system";
  }
  char program[MAX_PATH];
  GetModuleFileNameA(nullptr, program, sizeof program);
  if (std::string(program).ends_with(kWin98Name)) return ExpectWindows98();

  TempDir dir;
  const std::string key = std::string("Software\\Wine\\AppDefaults\\") + kWin98Name;
  RegistryGuard guard(HKEY_CURRENT_USER, key);
  SetRegistryString(HKEY_CURRENT_USER, key, "Version", "win98");
  ASSERT_TRUE(CopyFileA(program, dir.Join(kWin98Name).c_str(), TRUE));
  const ProcessResult result =
      RunProcess(Quoted(dir.Join(kWin98Name)) + " --gtest_filter=Platform.Windows98IsTheConsumerFamily");
  EXPECT_TRUE(result.started);
  EXPECT_EQ(result.exitCode, 0u) << result.output;
  EXPECT_NE(result.output.find("[  PASSED  ] 1 test"), std::string::npos) << result.output;
}

}  // namespace
