// Configuration files and INI sections as variables.
#include "stores/varlist2.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "ini_support.h"
#include "messages/app_vars.h"
#include "stores/configcodec.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/import_double.h"
#include "support/temp_dir.h"

namespace {

using namespace std::string_literals;

// The format, done once more and differently from the program: each byte is stored as the byte plus 63 with
// its two hexadecimal digits exchanged.
std::string Scrambled(const std::string& plain) {
  std::string stored;
  for (const char ch : plain) {
    const int sum = (static_cast<unsigned char>(ch) + '?') % 256;
    stored += static_cast<char>(sum / 16 + sum % 16 * 16);
  }
  return stored;
}

std::string Unscrambled(const std::string& stored) {
  std::string plain;
  for (const char ch : stored) {
    const int byte = static_cast<unsigned char>(ch);
    plain += static_cast<char>((byte / 16 + byte % 16 * 16 + 256 - '?') % 256);
  }
  return plain;
}

std::string Checksum(const std::string& plain) {
  unsigned long total = 0;
  for (const char ch : plain) total += static_cast<unsigned char>(ch);
  return std::to_string(total);
}

const std::string kHeader = "Quorvale Configuration File 1.0\0"s;

// A whole file over entries as they stand on the disk ("name\0value\0...").
std::string FileOf(const std::string& entries) {
  const std::string plain = kHeader + entries + "\0"s;
  return Scrambled(plain + Checksum(plain) + "\0"s);
}

BOOL WINAPI FailingRead(HANDLE, LPVOID, DWORD, LPDWORD got, LPOVERLAPPED) {
  *got = 0;
  SetLastError(ERROR_CRC);
  return FALSE;
}

DWORD WINAPI FailingSize(HANDLE, LPDWORD) {
  SetLastError(ERROR_INVALID_HANDLE);
  return INVALID_FILE_SIZE;
}

class ConfigFileTest : public AppVarsTest {
 protected:
  std::string Path() const { return mDir.Join("a.qlc"); }
  uint32_t ReadBytes(const std::string& bytes) {
    mDir.Write("a.qlc", bytes);
    return ReadConfigFile(mList, Path().c_str());
  }
  uint32_t Write() { return WriteConfigFile(mList, Path().c_str()); }
  std::string Bytes() const { return mDir.Read("a.qlc"); }

  TempDir mDir;
  VarList mList;
};

// Writing

TEST_F(ConfigFileTest, IsWrittenByteForByte) {
  mList.Set("%ProgDir", "C:\\Veltrane");
  mList.Set("AppName", "Veltrane");
  mList.Set("Empty", "");
  mList.Set("Accents", "\xe9\xff");
  EXPECT_EQ(Write(), 0u);
  const std::string plain =
      kHeader + "Accents\0\xe9\xff\0Empty\0\0AppName\0Veltrane\0%ProgDir\0C:\\Veltrane\0\0"s;
  EXPECT_EQ(Unscrambled(Bytes()), plain + Checksum(plain) + "\0"s);
  EXPECT_EQ(Bytes(), Scrambled(plain + Checksum(plain) + "\0"s));
}

TEST_F(ConfigFileTest, FirstBytesAreKnown) {
  EXPECT_EQ(Write(), 0u);
  // "Q" is 51: plus 3F is 90, exchanged 09; "u" is 75: B4, exchanged 4B; "o" is 6F: AE, exchanged EA.
  EXPECT_EQ(Bytes().substr(0, 3), "\x09\x4b\xea");
}

TEST_F(ConfigFileTest, EmptyListIsHeaderEndMarkAndChecksum) {
  EXPECT_EQ(Write(), 0u);
  EXPECT_EQ(Bytes(), FileOf(""));
  EXPECT_EQ(ReadConfigFile(mList, Path().c_str()), 0u);
  EXPECT_TRUE(mList.IsEmpty());
}

TEST_F(ConfigFileTest, LongerFileIsReplacedWhole) {
  mDir.Write("a.qlc", std::string(5000, 'x'));
  mList.Set("A", "1");
  EXPECT_EQ(Write(), 0u);
  EXPECT_EQ(Bytes(), FileOf("A\0001\0"s));
}

TEST_F(ConfigFileTest, UnwritablePlacesGiveOpenFailed) {
  EXPECT_EQ(WriteConfigFile(mList, mDir.Join("none\\a.qlc").c_str()), 0x80040202u);
  EXPECT_EQ(WriteConfigFile(mList, mDir.Path().c_str()), 0x80040202u);
  const std::string path = mDir.Write("a.qlc", "old");
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(Write(), 0x80040202u);
  EXPECT_EQ(Bytes(), "old");
}

TEST_F(ConfigFileTest, FullDiskGivesTransferFailed) {
  mList.Set("A", std::string(5000, 'x').c_str());
  const FullDisk disk(1000);
  EXPECT_EQ(Write(), 0x80040209u);
}

TEST_F(ConfigFileTest, ReadFailureGivesTransferFailed) {
  mList.Set("A", "1");
  EXPECT_EQ(Write(), 0u);
  VarList read;
  const ImportDouble reading("ReadFile", reinterpret_cast<void*>(&FailingRead));
  EXPECT_EQ(ReadConfigFile(read, Path().c_str()), 0x80040209u);
  EXPECT_TRUE(read.IsEmpty());
}

TEST_F(ConfigFileTest, UnknownSizeGivesTransferFailed) {
  EXPECT_EQ(Write(), 0u);
  const ImportDouble sizing("GetFileSize", reinterpret_cast<void*>(&FailingSize));
  EXPECT_EQ(ReadConfigFile(mList, Path().c_str()), 0x80040209u);
}

// Blocks of more than a megabyte cannot be had.
void* (*sOriginalAllocation)(size_t) = nullptr;
void* LimitedAllocation(size_t size) { return size > 1024 * 1024 ? nullptr : sOriginalAllocation(size); }

TEST_F(ConfigFileTest, NoMemoryForWritingIsToldApart) {
  mList.Set("A", std::string(2 * 1024 * 1024, 'x').c_str());
  const ImportDouble allocating("malloc", reinterpret_cast<void*>(&LimitedAllocation));
  sOriginalAllocation = reinterpret_cast<decltype(sOriginalAllocation)>(allocating.Original());
  EXPECT_EQ(Write(), 0x80000000u);
  EXPECT_FALSE(PathExists(Path()));
}

TEST_F(ConfigFileTest, NoMemoryForReadingGivesTransferFailed) {
  mList.Set("A", std::string(2 * 1024 * 1024, 'x').c_str());
  EXPECT_EQ(Write(), 0u);
  VarList read;
  const ImportDouble allocating("malloc", reinterpret_cast<void*>(&LimitedAllocation));
  sOriginalAllocation = reinterpret_cast<decltype(sOriginalAllocation)>(allocating.Original());
  EXPECT_EQ(ReadConfigFile(read, Path().c_str()), 0x80040209u);
  EXPECT_TRUE(read.IsEmpty());
}

// Reading

TEST_F(ConfigFileTest, EntriesAreReadFromKnownBytes) {
  EXPECT_EQ(ReadBytes(FileOf("C\0three\0%B\0two\0A\0\0"s)), 0u);
  EXPECT_EQ(Listing(mList), "A= %B=two C=three");
}

TEST_F(ConfigFileTest, OrderIsReversedByReading) {
  mList.Set("A", "1");
  mList.Set("B", "2");
  mList.Set("C", "3");
  EXPECT_EQ(Write(), 0u);
  EXPECT_EQ(Bytes(), FileOf("C\0003\0B\0002\0A\0001\0"s));
  VarList read;
  EXPECT_EQ(ReadConfigFile(read, Path().c_str()), 0u);
  EXPECT_EQ(Listing(read), "A=1 B=2 C=3");
  EXPECT_EQ(WriteConfigFile(read, Path().c_str()), 0u);
  EXPECT_EQ(Bytes(), FileOf("A\0001\0B\0002\0C\0003\0"s));
}

TEST_F(ConfigFileTest, FrozenVariablesComeBackFrozen) {
  mList.Set("%A", "1");
  mList.Set("A", "2");
  EXPECT_EQ(Write(), 0u);
  EXPECT_EQ(Bytes(), FileOf("%A\0001\0"s));
  VarList read;
  EXPECT_EQ(ReadConfigFile(read, Path().c_str()), 0u);
  read.Set("A", "3");
  EXPECT_EQ(Listing(read), "%A=1");
}

TEST_F(ConfigFileTest, EntriesAreSetIntoTheGivenList) {
  mList.Set("%A", "kept");
  mList.Set("B", "replaced");
  EXPECT_EQ(ReadBytes(FileOf("A\0new\0B\0new\0"s)), 0u);
  EXPECT_EQ(Listing(mList), "B=new %A=kept");
}

TEST_F(ConfigFileTest, BytesBehindTheChecksumAreIgnored) {
  EXPECT_EQ(ReadBytes(FileOf("A\0001\0"s) + "more"), 0u);
  EXPECT_EQ(Listing(mList), "A=1");
}

TEST_F(ConfigFileTest, MissingFileGivesOpenFailed) {
  EXPECT_EQ(ReadConfigFile(mList, Path().c_str()), 0x80040202u);
  EXPECT_EQ(ReadConfigFile(mList, mDir.Path().c_str()), 0x80040202u);
}

TEST_F(ConfigFileTest, WrongHeaderSetsNothing) {
  const std::string plain = "Quorvale Configuration File 1.1\0A\0001\0\0"s;
  EXPECT_EQ(ReadBytes(Scrambled(plain + Checksum(plain) + "\0"s)), 0x8004020du);
  for (const char* header : {"Quorvale Configuration File 1.", "Quorvale Configuration File 1.0 ",
                             "quorvale Configuration File 1.0", ""}) {
    const std::string other = header + "\0A\0001\0\0"s;
    EXPECT_EQ(ReadBytes(Scrambled(other + Checksum(other) + "\0"s)), 0x8004020du) << header;
  }
  EXPECT_TRUE(mList.IsEmpty());
}

TEST_F(ConfigFileTest, UnscrambledFileIsRefused) {
  EXPECT_EQ(ReadBytes(Unscrambled(FileOf("A\0001\0"s))), 0x8004020du);
  EXPECT_TRUE(mList.IsEmpty());
}

TEST_F(ConfigFileTest, WrongChecksumLeavesTheEntriesSet) {
  const std::string plain = kHeader + "A\0001\0B\0002\0\0"s;
  EXPECT_EQ(ReadBytes(Scrambled(plain + "1234\0"s)), 0x8004020du);
  EXPECT_EQ(Listing(mList), "B=2 A=1");
}

TEST_F(ConfigFileTest, ChecksumsThatAreNoNumbers) {
  const std::string plain = kHeader + "A\0001\0\0"s;
  const std::string right = Checksum(plain);
  EXPECT_EQ(ReadBytes(Scrambled(plain + right + "\0"s)), 0u);
  EXPECT_EQ(ReadBytes(Scrambled(plain + "0" + right + "\0"s)), 0u);
  for (const std::string& text : {""s, "x" + right, right + "x", "-" + right, right + "0",
                                  "4294967296" + right, std::to_string(4294967296ull + std::stoull(right))}) {
    EXPECT_EQ(ReadBytes(Scrambled(plain + text + "\0"s)), 0x8004020du) << text;
  }
}

TEST_F(ConfigFileTest, FileCutAnywhereIsRefused) {
  const std::string whole = FileOf("First\0one\0%Second\0two\0"s);
  for (size_t size = 0; size < whole.size(); ++size) {
    VarList list;
    mDir.Write("a.qlc", whole.substr(0, size));
    EXPECT_EQ(ReadConfigFile(list, Path().c_str()), 0x8004020du) << size;
    const size_t first = kHeader.size() + "First\0one\0"s.size();
    const size_t second = first + "%Second\0two\0"s.size();
    const char* const read = size < first ? "" : size < second ? "First=one" : "%Second=two First=one";
    EXPECT_EQ(Listing(list), read) << size;
  }
}

TEST_F(ConfigFileTest, AnyChangedByteIsNoticed) {
  const std::string whole = FileOf("First\0one\0%Second\0two\0"s);
  for (size_t i = 0; i < whole.size(); ++i) {
    std::string damaged = whole;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x10);
    VarList list;
    mDir.Write("a.qlc", damaged);
    EXPECT_EQ(ReadConfigFile(list, Path().c_str()), 0x8004020du) << i;
  }
}

TEST_F(ConfigFileTest, NulsAndNonsenseAreRefused) {
  EXPECT_EQ(ReadBytes(std::string(100000, '\0')), 0x8004020du);
  EXPECT_EQ(ReadBytes(Scrambled(kHeader + std::string(100000, 'x'))), 0x8004020du);
  EXPECT_EQ(ReadBytes(Scrambled(kHeader)), 0x8004020du);
  EXPECT_EQ(ReadBytes(Scrambled(kHeader + "\0"s)), 0x8004020du);
  EXPECT_EQ(ReadBytes("text"), 0x8004020du);
  EXPECT_TRUE(mList.IsEmpty());
}

TEST_F(ConfigFileTest, NamelessFrozenEntryIsIgnored) {
  EXPECT_EQ(ReadBytes(FileOf("%\0value\0A\0001\0"s)), 0u);
  EXPECT_EQ(Listing(mList), "A=1");
}

TEST_F(ConfigFileTest, TenMegabytesAreRead) {
  ConfigEncoder encoder;
  size_t count = 0;
  for (size_t size = 0; size < 10 * 1024 * 1024; ++count) {
    const std::string name = std::to_string(count);
    encoder.Add(name, "v", false);
    size += name.size() + 3;
  }
  EXPECT_EQ(ReadBytes(encoder.Finish()), 0u);
  Str value;
  EXPECT_TRUE(mList.Get(std::to_string(count - 1).c_str(), value));
  EXPECT_EQ(value, "v");
}

TEST_F(ConfigFileTest, ValuesThatNameThemselvesAreReadAsTheyAre) {
  EXPECT_EQ(ReadBytes(FileOf("A\0<A>\0"s)), 0u);
  EXPECT_EQ(Listing(mList), "A=<A>");
  EXPECT_EQ(ReadBytes(FileOf("B\0one\0C\0<B>\0"s)), 0u);
  EXPECT_EQ(Listing(mList), "C=<B> B=one A=<A>");
}

TEST_F(ConfigFileTest, NullPathIsReported) {
  AssertRecorder recorder;
  EXPECT_EQ(ReadConfigFile(mList, nullptr), 0x80040202u);
  EXPECT_EQ(WriteConfigFile(mList, nullptr), 0x80040202u);
  EXPECT_EQ(recorder.Texts(), (std::vector<std::string>{"path", "path"}));
}

// Sections

class LoadSectionTest : public AppVarsTest {};

TEST_F(LoadSectionTest, KeysBecomeApplicationVariables) {
  MemoryStore ini("[Config]\nA=1\nB = two words\n; c\nline\n[Other]\nC=3\n");
  EXPECT_EQ(LoadSection(ini, "config"), 0x40200u);
  EXPECT_EQ(Listing(AppVars()), "B=two words A=1");
}

TEST_F(LoadSectionTest, EmptyValuesAreSkipped) {
  AppSetVariable("A", "kept");
  MemoryStore ini("[Config]\nA=\nB=\nC=3\n");
  EXPECT_EQ(LoadSection(ini, "Config"), 0x40200u);
  EXPECT_EQ(Listing(AppVars()), "C=3 A=kept");
}

TEST_F(LoadSectionTest, VariablesAreMutableAndFrozenOnesStay) {
  AppVars().Set("%A", "frozen");
  MemoryStore ini("[Config]\nA=1\nB=2\n");
  EXPECT_EQ(LoadSection(ini, "Config"), 0x40200u);
  AppSetVariable("B", "3");
  EXPECT_EQ(Listing(AppVars()), "B=3 %A=frozen");
}

TEST_F(LoadSectionTest, EmptySectionIsASuccess) {
  MemoryStore ini("[Config]\n");
  EXPECT_EQ(LoadSection(ini, "Config"), 0x40200u);
  EXPECT_TRUE(AppVars().IsEmpty());
}

TEST_F(LoadSectionTest, MissingSectionIsNone) {
  MemoryStore ini("[Other]\nA=1\n");
  EXPECT_EQ(LoadSection(ini, "Config"), 0x80040202u);
  EXPECT_TRUE(AppVars().IsEmpty());
}

TEST_F(LoadSectionTest, NullStoreIsReported) {
  AssertRecorder recorder;
  EXPECT_EQ(LoadSection(nullptr, "Config"), 0x80040202u);
  EXPECT_EQ(recorder.Only(), "ini");
}

}  // namespace
