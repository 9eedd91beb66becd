// INI stores over files, memory blocks and string lists: opening, loading, writing back.
#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/handle.h"
#include "base/hooks.h"
#include "ini_support.h"
#include "messages/res.h"
#include "stores/inistore.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/import_double.h"
#include "support/library_maker.h"
#include "support/temp_dir.h"

namespace {

using namespace std::string_literals;

const std::string kHeader = "; Veltrane INI v1: Equation Preferences\r\n\r\n";

// Counts the failures that the file layer reports to the user.
class IoFailures {
 public:
  IoFailures() {
    sReads = sWrites = 0;
    HookTable hooks = Hooks();
    hooks.fileIoFailed = [](bool write) { ++(write ? sWrites : sReads); };
    mFormer = SetHooks(hooks);
  }
  ~IoFailures() { SetHooks(mFormer); }
  static int sReads;
  static int sWrites;

 private:
  HookTable mFormer;
};
int IoFailures::sReads = 0;
int IoFailures::sWrites = 0;

BOOL WINAPI FailingRead(HANDLE, LPVOID, DWORD, LPDWORD got, LPOVERLAPPED) {
  *got = 0;
  SetLastError(ERROR_CRC);
  return FALSE;
}

BOOL WINAPI FailingTruncation(HANDLE) {
  SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}

class IniFileTest : public testing::Test {
 protected:
  std::string Write(std::string_view bytes) { return mDir.Write("a.ini", bytes); }
  std::string Read() { return mDir.Read("a.ini"); }
  IniStorePtr Open(bool readOnly) { return IniOpen(mDir.Join("a.ini").c_str(), readOnly); }
  // Opens the file for writing and closes it.
  void Rewrite() {
    IniStorePtr ini = Open(false);
    ASSERT_NE(ini, nullptr);
    EXPECT_TRUE(IniClose(ini));
    EXPECT_EQ(ini, nullptr);
  }

  TempDir mDir;
};

// Opening

TEST_F(IniFileTest, ReadOnlyNeedsTheFile) {
  EXPECT_EQ(Open(true), nullptr);
  EXPECT_FALSE(mDir.Has("a.ini"));
}

TEST_F(IniFileTest, WritableCreatesTheFile) {
  IniStorePtr ini = Open(false);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Listing(ini.get()), "");
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Read(), kHeader);
}

TEST_F(IniFileTest, MissingFolderFails) {
  EXPECT_EQ(IniOpen(mDir.Join("none\\a.ini").c_str(), false), nullptr);
  EXPECT_EQ(IniOpen(mDir.Join("none\\a.ini").c_str(), true), nullptr);
}

TEST_F(IniFileTest, FolderFails) {
  EXPECT_EQ(IniOpen(mDir.Path().c_str(), true), nullptr);
  EXPECT_EQ(IniOpen(mDir.Path().c_str(), false), nullptr);
}

TEST_F(IniFileTest, ReadOnlyFileIsRefusedForWriting) {
  const std::string path = Write("[A]\nk=1\n");
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(Open(false), nullptr);
  EXPECT_NE(Open(true), nullptr);
}

TEST_F(IniFileTest, CreateMakesAFileWithItsHeader) {
  EXPECT_TRUE(IniCreate(mDir.Join("a.ini").c_str()));
  EXPECT_EQ(Read(), kHeader);
  EXPECT_FALSE(IniCreate(mDir.Join("none\\a.ini").c_str()));
}

TEST_F(IniFileTest, CreateKeepsWhatIsThere) {
  Write("[A]\nk=1\n");
  EXPECT_TRUE(IniCreate(mDir.Join("a.ini").c_str()));
  EXPECT_EQ(Read(), kHeader + "[A]\r\nk=1\r\n\r\n");
}

TEST_F(IniFileTest, WrongCaseOfTheRegistryPrefixIsAFile) {
  char former[MAX_PATH];
  GetCurrentDirectoryA(sizeof(former), former);
  SetCurrentDirectoryA(mDir.Path().c_str());
  const IniStorePtr ini = IniOpen("reg*HKEY_CURRENT_USER\\Software", true);
  SetCurrentDirectoryA(former);
  EXPECT_EQ(ini, nullptr);
  HKEY root = HKEY_USERS;
  Str path;
  EXPECT_TRUE(IniParsePath("reg*HKEY_CURRENT_USER\\Software", root, path));
  EXPECT_EQ(root, nullptr);
  EXPECT_EQ(path, "reg*HKEY_CURRENT_USER\\Software");
}

TEST_F(IniFileTest, WritableStoreKeepsOthersOut) {
  Write("[A]\nk=1\n");
  const IniStorePtr ini = Open(false);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Open(true), nullptr);
  EXPECT_EQ(Open(false), nullptr);
}

TEST_F(IniFileTest, ReadOnlyStoresMayBeSeveral) {
  Write("[A]\nk=1\n");
  const IniStorePtr first = Open(true);
  const IniStorePtr second = Open(true);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(ReadOf(second.get(), "A", "k"), "1");
}

// The header line

TEST_F(IniFileTest, HeaderIsConsumed) {
  Write(kHeader + "[A]\r\nk=1\r\n");
  Rewrite();
  EXPECT_EQ(Read(), kHeader + "[A]\r\nk=1\r\n\r\n");
}

TEST_F(IniFileTest, FileWithoutHeaderIsReadFromItsFirstLineAndGainsIt) {
  Write("[A]\r\nk=1\r\n");
  {
    const IniStorePtr ini = Open(true);
    EXPECT_EQ(ReadOf(ini.get(), "A", "k"), "1");
  }
  EXPECT_EQ(Read(), "[A]\r\nk=1\r\n");
  Rewrite();
  EXPECT_EQ(Read(), kHeader + "[A]\r\nk=1\r\n\r\n");
}

TEST_F(IniFileTest, OtherCommentsInTheFirstLineAreKept) {
  for (const char* comment :
       {"; Veltrane INI v1: equation preferences", "; Veltrane INI v1: Equation Preferences ",
        " ; Veltrane INI v1: Equation Preferences", "; Veltrane INI v2: Equation Preferences"}) {
    Write(comment + "\r\n[A]\r\n"s);
    Rewrite();
    EXPECT_EQ(Read(), kHeader + comment + "\r\n\r\n[A]\r\n\r\n");
  }
}

TEST_F(IniFileTest, HeaderIsConsumedInTheFirstLineOnly) {
  Write("\r\n" + kHeader + "[A]\r\n");
  Rewrite();
  EXPECT_EQ(Read(), kHeader + "; Veltrane INI v1: Equation Preferences\r\n\r\n[A]\r\n\r\n");
}

TEST_F(IniFileTest, HeaderAloneIsAnEmptyStore) {
  Write("; Veltrane INI v1: Equation Preferences");
  const IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Listing(ini.get()), "");
}

// Loading

TEST_F(IniFileTest, EveryLineEndIsUnderstood) {
  Write("[A]\ra=1\nb=2\r\nc=3\n\rd=4");
  const IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Listing(ini.get()), "[A] a=1 b=2 c=3 d=4");
}

TEST_F(IniFileTest, EmptyFileIsAnEmptyStore) {
  Write("");
  Rewrite();
  EXPECT_EQ(Read(), kHeader);
}

TEST_F(IniFileTest, LineOf600CharactersIsHeldAsTwo) {
  Write("[A]\n" + std::string(600, 'x') + "\n");
  Rewrite();
  EXPECT_EQ(Read(), kHeader + "[A]\r\n" + std::string(511, 'x') + "\r\n" + std::string(89, 'x') + "\r\n\r\n");
}

TEST_F(IniFileTest, BytesWithoutSenseAreHarmless) {
  std::string bytes;
  uint32_t random = 1;
  for (int i = 0; i < 100000; ++i) {
    random = random * 1103515245u + 12345u;
    bytes += static_cast<char>(random >> 16);
  }
  Write(bytes);
  const IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  EXPECT_FALSE(IniFindSection(ini.get(), "none"));
}

TEST_F(IniFileTest, NulsHideTheRestOfALine) {
  Write("[A]\nk=1\0x=2\nn=3\n"s + std::string(1000, '\0'));
  const IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Listing(ini.get()), "[A] k=1 n=3");
}

TEST_F(IniFileTest, LineWhoseBeginningIsNulsIsNoPartOfTheLineBefore) {
  const std::string nuls(511, '\0');
  Write("[A]\n" + nuls + "a=1\nb=2\n" + nuls + "c=3\n" + nuls + nuls + "d=4\n");
  const IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Listing(ini.get()), "[A] a=1 b=2 c=3 d=4");
}

TEST_F(IniFileTest, TenMegabytesAreRead) {
  std::string bytes = "[Big]\n";
  const std::string line = "Key=" + std::string(95, 'v') + "\n";
  while (bytes.size() < 10 * 1024 * 1024) bytes += line;
  bytes += "[Last]\nk=1\n";
  Write(bytes);
  const IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(ReadOf(ini.get(), "Last", "k"), "1");
}

TEST_F(IniFileTest, TenMegabytesOfBracketsAreRead) {
  std::string bytes;
  while (bytes.size() < 10 * 1024 * 1024) bytes += "[\n";
  bytes += "[Last]\nk=1\n";
  Write(bytes);
  const IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(ReadOf(ini.get(), "Last", "k"), "1");
}

// Closing

TEST_F(IniFileTest, ReadOnlyStoreWritesNothing) {
  const std::string path = Write("[A]\nk=1\n");
  IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  IniFindSection(ini.get(), "A");
  EXPECT_TRUE(IniWriteString(ini.get(), "k", "2"));
  EXPECT_EQ(ReadOf(ini.get(), "A", "k"), "2");
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Read(), "[A]\nk=1\n");
}

TEST_F(IniFileTest, LeavingTheScopeWritesBack) {
  Write("[A]\nk=1\n");
  {
    const IniStorePtr ini = Open(false);
    ASSERT_NE(ini, nullptr);
    IniFindSection(ini.get(), "A");
    IniWriteString(ini.get(), "k", "2");
  }
  EXPECT_EQ(Read(), kHeader + "[A]\r\nk=2\r\n\r\n");
}

TEST_F(IniFileTest, ShorterContentTruncatesTheFile) {
  std::string text = "[A]\r\n";
  for (int i = 0; i < 1000; ++i) text += "Key" + std::to_string(i) + "=value\r\n";
  Write(text);
  IniStorePtr ini = Open(false);
  ASSERT_NE(ini, nullptr);
  IniDeleteSection(ini.get(), "A");
  IniFindSection(ini.get(), "B", true);
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Read(), kHeader + "[B]\r\n\r\n");
}

TEST_F(IniFileTest, LongerContentIsWhole) {
  Write("[A]\r\nk=1\r\n");
  IniStorePtr ini = Open(false);
  ASSERT_NE(ini, nullptr);
  IniFindSection(ini.get(), "A");
  std::string expected = kHeader + "[A]\r\nk=1\r\n";
  for (int i = 0; i < 3000; ++i) {
    const std::string key = "Key" + std::to_string(i);
    IniAddString(ini.get(), key.c_str(), "value");
    expected += key + "=value\r\n";
  }
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Read(), expected + "\r\n");
}

TEST_F(IniFileTest, RewritingTwiceChangesNothingMore) {
  Write("stray\n[A]\n ; note\nk = v\n[open\n[B]\n\n\nx\n");
  Rewrite();
  const std::string once = Read();
  Rewrite();
  EXPECT_EQ(Read(), once);
}

TEST_F(IniFileTest, FailedWriteIsReportedAndKeepsTheOldContent) {
  const std::string old = kHeader + "[A]\r\nk=1\r\n\r\n";
  const std::string path = Write(old);
  IniStorePtr ini = Open(false);
  ASSERT_NE(ini, nullptr);
  IniFindSection(ini.get(), "A");
  IniWriteString(ini.get(), "k", "a value that is longer");
  // A handle that cannot write stands for a disk that does not take it.
  ini->file.handle.Reset();
  ini->file.handle.Reset(CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  const IoFailures failures;
  EXPECT_FALSE(IniClose(ini));
  EXPECT_EQ(IoFailures::sWrites, 1);
  EXPECT_EQ(Read(), old);
}

TEST_F(IniFileTest, FullDiskKeepsTheOldContent) {
  std::string old = kHeader + "[A]\r\nk=1\r\n";
  while (old.size() < 30000) old += "Key" + std::to_string(old.size()) + "=" + std::string(100, 'v') + "\r\n";
  old += "\r\n";
  Write(old);
  // Room for a part of what is added, at the end of a piece that the file layer writes and within one.
  for (const DWORD room : {0, 1, 100, 9999, 10000, 15000}) {
    IniStorePtr ini = Open(false);
    ASSERT_NE(ini, nullptr);
    IniFindSection(ini.get(), "A");
    IniWriteString(ini.get(), "k", std::string(500, 'n').c_str());
    for (int i = 0; i < 50; ++i) IniAddString(ini.get(), "more", std::string(400, 'm').c_str());
    const IoFailures failures;
    const FullDisk disk(static_cast<DWORD>(old.size()) + room);
    EXPECT_FALSE(IniClose(ini));
    EXPECT_EQ(IoFailures::sWrites, 1);
    EXPECT_EQ(Read(), old);
  }
}

TEST_F(IniFileTest, FullDiskTakesContentThatIsNotLonger) {
  const std::string old = kHeader + "[A]\r\nk=1\r\n\r\n";
  Write(old);
  IniStorePtr ini = Open(false);
  ASSERT_NE(ini, nullptr);
  IniFindSection(ini.get(), "A");
  IniWriteString(ini.get(), "k", "2");
  const FullDisk disk(static_cast<DWORD>(old.size()));
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(Read(), kHeader + "[A]\r\nk=2\r\n\r\n");
}

TEST_F(IniFileTest, ReadFailureFailsTheOpening) {
  const std::string path = Write("[A]\nk=1\n");
  const IoFailures failures;
  {
    const ImportDouble reading("ReadFile", reinterpret_cast<void*>(&FailingRead));
    EXPECT_EQ(Open(true), nullptr);
    EXPECT_EQ(Open(false), nullptr);
  }
  EXPECT_EQ(IoFailures::sReads, 2);
  EXPECT_EQ(Read(), "[A]\nk=1\n");
}

TEST_F(IniFileTest, TruncationThatFailsIsReported) {
  Write("[A]\nk=1\n" + std::string(1000, 'x'));
  IniStorePtr ini = Open(false);
  ASSERT_NE(ini, nullptr);
  IniDeleteSection(ini.get(), "A");
  AssertRecorder recorder;
  {
    const ImportDouble truncating("SetEndOfFile", reinterpret_cast<void*>(&FailingTruncation));
    EXPECT_FALSE(IniClose(ini));
  }
  EXPECT_EQ(recorder.Only(), "err == fioOK");
}

// Speed: what a large script needs

TEST_F(IniFileTest, TenThousandScriptLinesAreReadInNoTime) {
  constexpr int kLines = 10000;
  std::string script = "[easy_install]\n";
  for (int i = 0; i < kLines; ++i)
    script +=
        "D\xe9"
        "File" +
        std::to_string(i) + "\n";
  script += "[files]\n";
  for (int i = 0; i < kLines; ++i) {
    const std::string number = std::to_string(i);
    script +=
        "D\xe9"
        "File" +
        number + "=1,files\\f" + number + ".dat,<ProgDir>\\f" + number + ".dat,1000\n";
  }
  Write(script);
  const DWORD start = GetTickCount();
  const IniStorePtr ini = Open(true);
  ASSERT_NE(ini, nullptr);
  Str key;
  Str value;
  int lines = 0;
  while (IniFindSection(ini.get(), "easy_install") && IniSeekLine(ini.get(), lines) &&
         IniNextLine(ini.get(), false, key, value)) {
    const Str file = key;
    ASSERT_TRUE(IniFindSection(ini.get(), "files"));
    ASSERT_TRUE(IniReadStr(ini.get(), file, value)) << file.Chars();
    ++lines;
  }
  EXPECT_EQ(lines, kLines);
  EXPECT_LT(GetTickCount() - start, 3000u);
}

TEST_F(IniFileTest, TenThousandKeysAreWrittenInNoTime) {
  const DWORD start = GetTickCount();
  IniStorePtr ini = Open(false);
  ASSERT_NE(ini, nullptr);
  IniFindSection(ini.get(), "A", true);
  for (int i = 0; i < 10000; ++i) IniWriteLong(ini.get(), ("Key" + std::to_string(i)).c_str(), i);
  for (int i = 0; i < 10000; ++i) IniWriteLong(ini.get(), ("Key" + std::to_string(i)).c_str(), -i);
  EXPECT_TRUE(IniClose(ini));
  EXPECT_LT(GetTickCount() - start, 5000u);
  const IniStorePtr again = Open(true);
  EXPECT_EQ(ReadOf(again.get(), "A", "Key9999"), "-9999");
}

// Stores of another kind

TEST(IniWriteBack, StoreOfAnotherKindIsReportedAndNotWritten) {
  AssertRecorder recorder;
  MemHandle block = BlockOf("[A]\nk=1\n");
  IniStore memory(iniMEM, false);
  memory.hand = &block;
  EXPECT_FALSE(WriteIniFile(memory));
  EXPECT_FALSE(WriteIniKey(memory));
  IniStore file(iniFILE, false);
  EXPECT_FALSE(WriteIniMemory(file));
  EXPECT_EQ(recorder.Texts(), (std::vector<std::string>{"ini->type == iniFILE", "ini->type == iniREG",
                                                        "ini->type == iniMEM", "ini->m.ptr"}));
  EXPECT_EQ(TextOf(block), "[A]\nk=1\n");
}

TEST(IniWriteBack, MemoryStoreWithoutABlockIsReported) {
  AssertRecorder recorder;
  IniStore memory(iniMEM, false);
  EXPECT_FALSE(WriteIniMemory(memory));
  EXPECT_EQ(recorder.Only(), "ini->m.ptr");
}

// Memory blocks

TEST(IniMemoryStore, EmptyHandleIsAnEmptyStore) {
  MemHandle block;
  IniStorePtr ini = IniOpenMem(block, false);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Listing(ini.get()), "");
  EXPECT_TRUE(IniClose(ini));
  EXPECT_EQ(TextOf(block), "");
}

TEST(IniMemoryStore, WritesLinesWithLineEndsAndANul) {
  MemHandle block = BlockOf("[A]\nk=1\n");
  {
    const IniStorePtr ini = IniOpenMem(block, false);
    ASSERT_NE(ini, nullptr);
    EXPECT_EQ(block.GetLockCount(), 0);
  }
  const MemLock lock(block);
  EXPECT_EQ(std::string(lock.Ptr(), block.Size()), "[A]\r\nk=1\r\n\r\n\0"s);
}

TEST(IniMemoryStore, IsUnlockedAfterwards) {
  MemHandle block = BlockOf("[A]\nk=1\n");
  IniStorePtr ini = IniOpenMem(block, false);
  IniClose(ini);
  EXPECT_EQ(block.GetLockCount(), 0);
}

TEST(IniMemoryStore, HasNoFileHeader) {
  MemoryStore ini("; Veltrane INI v1: Equation Preferences\n[A]\n");
  EXPECT_EQ(ini.Close(), "; Veltrane INI v1: Equation Preferences\r\n\r\n[A]\r\n\r\n");
}

TEST(IniMemoryStore, ReadOnlyLeavesTheBlock) {
  MemoryStore ini("[A]\nk=1\n", true);
  IniFindSection(ini, "A");
  IniWriteString(ini, "k", "2");
  EXPECT_EQ(ini.Close(), "[A]\nk=1\n");
}

TEST(IniMemoryStore, LockedHandleIsReported) {
  MemHandle block = BlockOf("[A]\nk=1\n");
  AssertRecorder recorder;
  const MemLock lock(block);
  const IniStorePtr ini = IniOpenMem(block, true);
  EXPECT_EQ(recorder.Only(), "hand.GetLockCount() == 0");
  EXPECT_EQ(ReadOf(ini.get(), "A", "k"), "1");
}

TEST(IniMemoryStore, LineOf512CharactersFails) {
  MemHandle good = BlockOf("[A]\n" + std::string(511, 'x') + "\n");
  EXPECT_NE(IniOpenMem(good, true), nullptr);
  MemHandle bad = BlockOf("[A]\n" + std::string(512, 'x') + "\n");
  EXPECT_EQ(IniOpenMem(bad, false), nullptr);
  EXPECT_EQ(TextOf(bad), "[A]\n" + std::string(512, 'x') + "\n");
  EXPECT_EQ(bad.GetLockCount(), 0);
  MemHandle long600 = BlockOf("[A]\nk=" + std::string(600, 'x') + "\n");
  EXPECT_EQ(IniOpenMem(long600, true), nullptr);
}

TEST(IniMemoryStore, TextEndsAtTheBlocksEndOrANul) {
  MemHandle unterminated("[A]\nk=1", 7);
  IniStorePtr ini = IniOpenMem(unterminated, true);
  EXPECT_EQ(ReadOf(ini.get(), "A", "k"), "1");
  MemHandle nul("[A]\nk=1\n\0x=2\n", 13);
  ini = IniOpenMem(nul, true);
  EXPECT_EQ(Listing(ini.get()), "[A] k=1");
}

// String lists

class IniStringListTest : public testing::Test {
 protected:
  void TearDown() override { SetProgramModule(nullptr); }
  void UseStrings(const std::map<unsigned, std::string>& strings) {
    LibrarySpec spec;
    spec.strings = strings;
    const std::string path = mDir.Write("strings.dll", MakeLibrary(spec));
    mModule.Reset(LoadLibraryExA(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    ASSERT_TRUE(mModule);
    SetProgramModule(mModule.Get());
  }

  TempDir mDir;
  ModuleHandle mModule;
};

TEST_F(IniStringListTest, ItemsAreLinesUpToTheEndMark) {
  UseStrings({{4000, "[Config]"},
              {4001, "CompanyName = Quorvale"},
              {4002, "A=<B>"},
              {4003, "!END!"},
              {4004, "x=1"}});
  const IniStorePtr ini = IniOpenStrList(4000);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Listing(ini.get()), "[Config] CompanyName=Quorvale A=<B>");
}

TEST_F(IniStringListTest, MissingItemEndsTheList) {
  UseStrings({{4000, "[Config]"}, {4001, "a=1"}, {4003, "b=2"}});
  const IniStorePtr ini = IniOpenStrList(4000);
  EXPECT_EQ(Listing(ini.get()), "[Config] a=1");
}

TEST_F(IniStringListTest, MissingListIsEmpty) {
  UseStrings({{1, "x"}});
  IniStorePtr ini = IniOpenStrList(4000);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Listing(ini.get()), "");
  EXPECT_TRUE(IniClose(ini));
}

TEST_F(IniStringListTest, ItemsAreCutAt511Characters) {
  UseStrings({{4000, "[A]"}, {4001, "k=" + std::string(600, 'v')}, {4002, "n=1"}});
  const IniStorePtr ini = IniOpenStrList(4000);
  EXPECT_EQ(ReadOf(ini.get(), "A", "k"), std::string(509, 'v'));
  EXPECT_EQ(ReadOf(ini.get(), "A", "n"), "1");
}

TEST_F(IniStringListTest, ChangesAreNotKept) {
  UseStrings({{4000, "[A]"}, {4001, "k=1"}});
  IniStorePtr ini = IniOpenStrList(4000);
  IniFindSection(ini.get(), "A");
  EXPECT_TRUE(IniWriteString(ini.get(), "k", "2"));
  EXPECT_TRUE(IniClose(ini));
  const IniStorePtr again = IniOpenStrList(4000);
  EXPECT_EQ(ReadOf(again.get(), "A", "k"), "1");
}

TEST_F(IniStringListTest, BuiltInSettingsOfTheProgram) {
  const IniStorePtr ini = IniOpenStrList(4000);
  ASSERT_NE(ini, nullptr);
  EXPECT_EQ(Listing(ini.get()), "[Config] CompanyName=Quorvale");
}

}  // namespace
