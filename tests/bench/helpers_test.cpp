// The helper programs: what the tests of the program rely on.
#include <gtest/gtest.h>
#include <windows.h>

#include "base/handle.h"
#include "support/files.h"
#include "support/font_maker.h"
#include "support/library_maker.h"
#include "support/process.h"
#include "support/registry_guard.h"
#include "support/temp_dir.h"
#include "support/wait.h"

namespace {

std::string Driver(const std::string& arguments) {
  const ProcessResult result = RunProcess(Quoted(HelperPath("dialog_driver.exe")) + " " + arguments);
  return std::to_string(result.exitCode) + ":" + result.output;
}

int CALLBACK CountFamily(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM count) {
  if (lstrcmpA(font->lfFaceName, "Veltrane Bench") == 0) ++*reinterpret_cast<int*>(count);
  return 1;
}

bool WaitForReady(ChildProcess& child) {
  return WaitUntil([&child] { return child.Output().rfind("ready", 0) == 0; });
}

}  // namespace

TEST(FontMaker, FontIsAcceptedUnderItsFamily) {
  TempDir dir;
  FontSpec spec;
  spec.family = "Veltrane Bench";
  const std::string path = dir.Write("bench.ttf", MakeFont(spec));
  EXPECT_LT(dir.Read("bench.ttf").size(), 1400u);
  ASSERT_EQ(AddFontResourceA(path.c_str()), 1);
  HDC screen = GetDC(nullptr);
  LOGFONTA wanted = {};
  wanted.lfCharSet = DEFAULT_CHARSET;
  lstrcpynA(wanted.lfFaceName, "Veltrane Bench", LF_FACESIZE);
  int found = 0;
  EnumFontFamiliesExA(screen, &wanted, CountFamily, reinterpret_cast<LPARAM>(&found), 0);
  ReleaseDC(nullptr, screen);
  EXPECT_TRUE(RemoveFontResourceA(path.c_str()));
  EXPECT_GT(found, 0);
}

TEST(LibraryMaker, VersionTranslationAndTextsAreRead) {
  TempDir dir;
  LibrarySpec spec;
  spec.fileVersion = VersionNumber("1.2.3.4");
  spec.translations = {{0x040C, 1252}, {0x0409, 1252}};
  spec.texts = {{"FileDescription", "d\xe9j\xe0"}};
  spec.strings = {{10, "ten"}, {1999, "caf\xe9"}};
  const std::string path = dir.Write("made.dll", MakeLibrary(spec));
  ModuleHandle version(LoadLibraryA("version.dll"));
  const auto getSize = reinterpret_cast<DWORD(WINAPI*)(LPCSTR, LPDWORD)>(
      reinterpret_cast<void*>(GetProcAddress(version.Get(), "GetFileVersionInfoSizeA")));
  const auto getInfo = reinterpret_cast<BOOL(WINAPI*)(LPCSTR, DWORD, DWORD, LPVOID)>(
      reinterpret_cast<void*>(GetProcAddress(version.Get(), "GetFileVersionInfoA")));
  const auto query = reinterpret_cast<BOOL(WINAPI*)(LPCVOID, LPCSTR, LPVOID*, PUINT)>(
      reinterpret_cast<void*>(GetProcAddress(version.Get(), "VerQueryValueA")));
  std::string info(getSize(path.c_str(), nullptr), '\0');
  ASSERT_TRUE(getInfo(path.c_str(), 0, static_cast<DWORD>(info.size()), info.data()));
  void* value = nullptr;
  UINT size = 0;
  ASSERT_TRUE(query(info.data(), "\\", &value, &size));
  EXPECT_EQ(static_cast<VS_FIXEDFILEINFO*>(value)->dwFileVersionMS, 0x00010002u);
  EXPECT_EQ(static_cast<VS_FIXEDFILEINFO*>(value)->dwFileVersionLS, 0x00030004u);
  EXPECT_EQ(static_cast<VS_FIXEDFILEINFO*>(value)->dwFileType, 2u);
  ASSERT_TRUE(query(info.data(), "\\VarFileInfo\\Translation", &value, &size));
  EXPECT_EQ(size, 8u);
  EXPECT_EQ(static_cast<WORD*>(value)[0], 0x040C);
  EXPECT_EQ(static_cast<WORD*>(value)[2], 0x0409);
  ASSERT_TRUE(query(info.data(), "\\StringFileInfo\\040c04e4\\FileDescription", &value, &size));
  EXPECT_STREQ(static_cast<char*>(value), "d\xe9j\xe0");

  ModuleHandle library(LoadLibraryExA(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
  ASSERT_TRUE(library);
  char text[32] = "";
  EXPECT_EQ(LoadStringA(library.Get(), 1999, text, sizeof text), 4);
  EXPECT_STREQ(text, "caf\xe9");
  EXPECT_EQ(LoadStringA(library.Get(), 10, text, sizeof text), 3);
  EXPECT_EQ(LoadStringA(library.Get(), 11, text, sizeof text), 0);
}

TEST(LibraryMaker, LzFileExpands) {
  TempDir dir;
  const std::string bytes = "some text that is not a multiple of eight bytes long.";
  const std::string packed = dir.Write("a.tx_", MakeLzFile(bytes, 't'));
  ModuleHandle lz(LoadLibraryA("lz32.dll"));
  const auto open = reinterpret_cast<INT(WINAPI*)(LPSTR, LPOFSTRUCT, WORD)>(
      reinterpret_cast<void*>(GetProcAddress(lz.Get(), "LZOpenFileA")));
  const auto read = reinterpret_cast<INT(WINAPI*)(INT, LPSTR, INT)>(
      reinterpret_cast<void*>(GetProcAddress(lz.Get(), "LZRead")));
  const auto close =
      reinterpret_cast<void(WINAPI*)(INT)>(reinterpret_cast<void*>(GetProcAddress(lz.Get(), "LZClose")));
  OFSTRUCT data = {};
  const INT file = open(const_cast<char*>(packed.c_str()), &data, OF_READ);
  ASSERT_GE(file, 0);
  char room[200] = "";
  const INT count = read(file, room, sizeof room);
  close(file);
  EXPECT_EQ(std::string(room, static_cast<size_t>(count)), bytes);
}

TEST(HoldFile, OthersMeetASharingViolation) {
  TempDir dir;
  const std::string path = dir.Write("held.txt", "x");
  ChildProcess holder(Quoted(HelperPath("hold_file.exe")) + " " + Quoted(path) + " none");
  ASSERT_TRUE(WaitForReady(holder));
  FileHandle file(
      CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  const DWORD error = GetLastError();
  EXPECT_FALSE(file);
  EXPECT_EQ(error, static_cast<DWORD>(ERROR_SHARING_VIOLATION));
  holder.Kill();
}

TEST(StandInWindow, AnswersARegisteredMessageAndLogsIt) {
  TempDir dir;
  ChildProcess window(Quoted(HelperPath("stand_in_window.exe")) +
                      " VTStandIn Caption -message VTAsk 100 -quit VTGo -log " + Quoted(dir.Join("log.txt")));
  ASSERT_TRUE(WaitForReady(window));
  const HWND found = FindWindowA("VTStandIn", "Caption");
  ASSERT_NE(found, nullptr);
  DWORD_PTR answer = 0;
  EXPECT_TRUE(SendMessageTimeoutA(found, RegisterWindowMessageA("VTAsk"), 1, 2, SMTO_NORMAL, 5000, &answer));
  EXPECT_EQ(answer, 100u);
  PostMessageA(found, RegisterWindowMessageA("VTGo"), 0, 0);
  EXPECT_TRUE(window.WaitForExit(5000));
  EXPECT_EQ(dir.Read("log.txt"), "VTAsk 1 2\r\nVTGo 0 0\r\n");
}

TEST(StandInWindow, HangsOnRequest) {
  ChildProcess window(Quoted(HelperPath("stand_in_window.exe")) + " VTStandIn Caption -hang VTAsk");
  ASSERT_TRUE(WaitForReady(window));
  DWORD_PTR answer = 0;
  EXPECT_FALSE(SendMessageTimeoutA(FindWindowA("VTStandIn", "Caption"), RegisterWindowMessageA("VTAsk"), 0, 0,
                                   SMTO_NORMAL, 200, &answer));
}

TEST(DialogDriver, FindsListsAndClicksAMessageBox) {
  ChildProcess driver(Quoted(HelperPath("dialog_driver.exe")) +
                      " -caption \"Bench box\" -class #32770 list get 0 click 7 gone");
  EXPECT_EQ(MessageBoxA(nullptr, "Go on?", "Bench box", MB_YESNO), IDNO);
  ASSERT_TRUE(driver.WaitForExit());
  EXPECT_EQ(driver.ExitCode(), 0u) << driver.Output();
  const std::string output = driver.Output();
  EXPECT_NE(output.find("\tGo on?\r\n"), std::string::npos) << output;
  EXPECT_NE(output.find("6\tButton\tve"), std::string::npos) << output;
  EXPECT_NE(output.find("\r\nBench box\r\n"), std::string::npos) << output;
}

TEST(DialogDriver, SendsKeys) {
  ChildProcess driver(Quoted(HelperPath("dialog_driver.exe")) +
                      " -caption \"Bench box\" wait-focus 6 keys {TAB}{ENTER} gone");
  EXPECT_EQ(MessageBoxA(nullptr, "Go on?", "Bench box", MB_YESNO), IDNO);
  ASSERT_TRUE(driver.WaitForExit());
  EXPECT_EQ(driver.ExitCode(), 0u) << driver.Output();
}

TEST(DialogDriver, SetsATextAndReadsIt) {
  WindowHandle window(CreateWindowA("STATIC", "Bench parent", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200,
                                    100, nullptr, nullptr, nullptr, nullptr));
  HWND edit = CreateWindowA("EDIT", "old", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20, window.Get(),
                            reinterpret_cast<HMENU>(500), nullptr, nullptr);
  ASSERT_NE(edit, nullptr);
  ChildProcess driver(
      Quoted(HelperPath("dialog_driver.exe")) +
      " -starts Bench -has 500 set 500 \"new text\" wait-text 500 \"new text\" get 500 close");
  ASSERT_TRUE(WaitUntil([&driver] {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
      if (message.message != WM_CLOSE) DispatchMessageA(&message);
    return driver.WaitForExit(0);
  })) << driver.Output();
  EXPECT_EQ(driver.ExitCode(), 0u) << driver.Output();
  EXPECT_EQ(driver.Output(), "new text\r\n");
}

TEST(DialogDriver, PrintsTheLinesOfAList) {
  WindowHandle window(CreateWindowA("STATIC", "Bench parent", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200,
                                    100, nullptr, nullptr, nullptr, nullptr));
  HWND list = CreateWindowA("LISTBOX", "", WS_CHILD | WS_VISIBLE | LBS_HASSTRINGS, 0, 0, 100, 80,
                            window.Get(), reinterpret_cast<HMENU>(500), nullptr, nullptr);
  ASSERT_NE(list, nullptr);
  const std::string longLine(200, 'x');
  for (const char* line : {"first", "second \xE9", longLine.c_str()})
    SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
  ChildProcess driver(Quoted(HelperPath("dialog_driver.exe")) + " -starts Bench -has 500 items 500");
  ASSERT_TRUE(WaitUntil([&driver] {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
    return driver.WaitForExit(0);
  })) << driver.Output();
  EXPECT_EQ(driver.ExitCode(), 0u) << driver.Output();
  EXPECT_EQ(driver.Output(), "first\r\nsecond \xE9\r\n" + longLine + "\r\n");
}

TEST(DialogDriver, EveryWaitIsBounded) {
  EXPECT_EQ(Driver("-caption \"No such window\" -t 100 find"), "1:dialog_driver: no such window\r\n");
  WindowHandle window(CreateWindowA("STATIC", "Bench lonely", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200,
                                    100, nullptr, nullptr, nullptr, nullptr));
  EXPECT_EQ(Driver("-caption \"Bench lonely\" -t 100 click 1").substr(0, 2), "3:");
  EXPECT_EQ(Driver("-caption \"Bench lonely\" -t 100 none").substr(0, 2), "4:");
  EXPECT_EQ(Driver("-caption \"Bench lonely\" find dance").substr(0, 2), "2:");
}

TEST(KeyAccess, DenyStopsWritingAndAllowLetsGo) {
  RegistryGuard guard(HKEY_CURRENT_USER, "Software\\VeltraneTest");
  SetRegistryString(HKEY_CURRENT_USER, guard.Path(), "a", "1");
  const std::string helper = Quoted(HelperPath("key_access.exe"));
  ASSERT_EQ(RunProcess(helper + " deny HKCU\\Software\\VeltraneTest").exitCode, 0u);
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\VeltraneTest", 0, KEY_SET_VALUE, &key),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, guard.Path(), "a"), "1");
  ASSERT_EQ(RunProcess(helper + " allow HKCU\\Software\\VeltraneTest").exitCode, 0u);
  SetRegistryString(HKEY_CURRENT_USER, guard.Path(), "a", "2");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, guard.Path(), "a"), "2");
}

TEST(WithoutPrivilege, ThePrivilegeIsGone) {
  const std::string helper = Quoted(HelperPath("without_privilege.exe"));
  EXPECT_EQ(RunProcess(helper + " SeShutdownPrivilege " + Quoted(Quoted(HelperPath("exit_with.exe")) + " 77"))
                .exitCode,
            77u);
  EXPECT_EQ(RunProcess(helper + " SeNoSuchPrivilege x").exitCode, 3u);
}

TEST(SelfReg, RegistersAndFailsOnRequest) {
  RegistryGuard guard(HKEY_CURRENT_USER, "Software\\VeltraneTest");
  ModuleHandle library(LoadLibraryA(HelperPath("selfreg.dll").c_str()));
  ASSERT_TRUE(library);
  const auto registerServer = reinterpret_cast<HRESULT(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(library.Get(), "DllRegisterServer")));
  EXPECT_EQ(registerServer(), S_OK);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\VeltraneTest\\SelfReg", "Registered"),
            HelperPath("selfreg.dll"));
  SetEnvironmentVariableA("VT_SELFREG", "0x80004005");
  EXPECT_EQ(registerServer(), E_FAIL);
  SetEnvironmentVariableA("VT_SELFREG", nullptr);
}
