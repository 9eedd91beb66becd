#include "platform/fio.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/handle.h"
#include "support/assert_recorder.h"
#include "support/import_double.h"
#include "support/temp_dir.h"

namespace {

std::vector<bool> gFailures;  // what the hook was told: true for a write

// Records failed reads and writes while it lives.
class FailureRecorder {
 public:
  FailureRecorder() {
    gFailures.clear();
    HookTable hooks = Hooks();
    hooks.fileIoFailed = [](bool write) { gFailures.push_back(write); };
    mFormer = SetHooks(hooks);
  }
  ~FailureRecorder() { SetHooks(mFormer); }

 private:
  HookTable mFormer;
};

FioFile Opened(const std::string& path, FioMode mode) {
  FioFile file;
  EXPECT_EQ(FioOpen(path.c_str(), mode, file), fioOK);
  return file;
}

uint32_t Position(FioFile& file) {
  uint32_t pos = 0xBAD;
  EXPECT_EQ(FioGetPos(file, pos), fioOK);
  return pos;
}

// All lines of `bytes` as the reader gives them.
std::vector<std::string> Lines(const std::string& bytes, int32_t maxlen = 512) {
  TempDir dir;
  FioFile file = Opened(dir.Write("lines", bytes), fioREAD);
  std::vector<std::string> lines;
  std::vector<char> buffer(maxlen, 'X');
  FioResult result;
  while ((result = FioReadLine(file, maxlen, buffer.data())) == fioOK && lines.size() < 1000)
    lines.push_back(buffer.data());
  EXPECT_EQ(result, fioEOF);
  return lines;
}

using List = std::vector<std::string>;

// ---- values ----

TEST(Fio, ResultCodesAndModes) {
  EXPECT_EQ(fioOK, 0);
  EXPECT_EQ(fioEOF, 1);
  EXPECT_EQ(fioNOT_FOUND, 2);
  EXPECT_EQ(fioEXISTS, 3);
  EXPECT_EQ(fioOPEN_FAILED, 4);
  EXPECT_EQ(fioIO_ERROR, 8);
  EXPECT_EQ(fioREAD, 0);
  EXPECT_EQ(fioWRITE, 1);
  EXPECT_EQ(fioREADWRITE, 2);
  EXPECT_EQ(fioWRITE_TRUNC, 3);
}

// ---- opening ----

TEST(FioOpening, MissingFileIsNotFoundInEveryMode) {
  TempDir dir;
  for (FioMode mode : {fioREAD, fioWRITE, fioREADWRITE, fioWRITE_TRUNC}) {
    FioFile file;
    EXPECT_EQ(FioOpen(dir.Join("none").c_str(), mode, file), fioNOT_FOUND) << mode;
    EXPECT_FALSE(file.handle);
    EXPECT_FALSE(dir.Has("none"));
  }
}

TEST(FioOpening, AnyOtherFailureIsOpenFailed) {
  TempDir dir;
  FioFile file;
  EXPECT_EQ(FioOpen(dir.Join("none\\deeper").c_str(), fioREAD, file), fioOPEN_FAILED);
  EXPECT_EQ(FioOpen(dir.Path().c_str(), fioREAD, file), fioOPEN_FAILED);
  const std::string path = dir.Write("ro", "x");
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(FioOpen(path.c_str(), fioWRITE, file), fioOPEN_FAILED);
}

// Whether somebody who lets others do everything can open the file.
bool OthersMay(DWORD access, const std::string& path) {
  const FileHandle file(CreateFileA(path.c_str(), access,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr));
  return static_cast<bool>(file);
}

TEST(FioOpening, ReadersShareAndWritersDoNot) {
  TempDir dir;
  const std::string path = dir.Write("a", "x");
  FioFile first = Opened(path, fioREAD);
  FioFile second = Opened(path, fioREAD);
  FioFile third;
  EXPECT_EQ(FioOpen(path.c_str(), fioWRITE, third), fioOPEN_FAILED);
  EXPECT_TRUE(OthersMay(GENERIC_READ, path));
  EXPECT_FALSE(OthersMay(GENERIC_WRITE, path));
  EXPECT_EQ(FioClose(first), fioOK);
  EXPECT_EQ(FioClose(second), fioOK);
  for (FioMode mode : {fioWRITE, fioREADWRITE, fioWRITE_TRUNC}) {
    FioFile writer = Opened(path, mode);
    EXPECT_EQ(FioOpen(path.c_str(), fioREAD, third), fioOPEN_FAILED) << mode;
    EXPECT_FALSE(OthersMay(GENERIC_READ, path)) << mode;
    EXPECT_FALSE(OthersMay(GENERIC_WRITE, path)) << mode;
    EXPECT_EQ(FioClose(writer), fioOK);
  }
}

TEST(FioOpening, ReadModeCannotWrite) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abc"), fioREAD);
  FailureRecorder failures;
  EXPECT_EQ(FioWrite(file, 1, "x"), fioIO_ERROR);
  EXPECT_EQ(dir.Read("a"), "abc");
}

TEST(FioOpening, WriteModeKeepsTheContentAndCannotRead) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abc"), fioWRITE);
  FailureRecorder failures;
  char buffer[4];
  EXPECT_EQ(FioRead(file, 1, buffer), fioIO_ERROR);
  EXPECT_EQ(FioWrite(file, 1, "X"), fioOK);
  EXPECT_EQ(FioClose(file), fioOK);
  EXPECT_EQ(dir.Read("a"), "Xbc");
}

TEST(FioOpening, ReadWriteModeDoesBoth) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abc"), fioREADWRITE);
  char buffer[2] = "";
  EXPECT_EQ(FioRead(file, 1, buffer), fioOK);
  EXPECT_EQ(buffer[0], 'a');
  EXPECT_EQ(FioWrite(file, 1, "X"), fioOK);
  EXPECT_EQ(FioClose(file), fioOK);
  EXPECT_EQ(dir.Read("a"), "aXc");
}

TEST(FioOpening, TruncatingModeEmptiesTheFile) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abc"), fioWRITE_TRUNC);
  EXPECT_EQ(FioClose(file), fioOK);
  EXPECT_EQ(dir.Read("a"), "");
}

TEST(FioOpening, AnotherFileTakesThePlaceOfAnOpenOne) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abc"), fioWRITE);
  EXPECT_EQ(FioOpen(dir.Write("b", "x").c_str(), fioREAD, file), fioOK);
  // The first one is closed: it can be opened again.
  FioFile again = Opened(dir.Join("a"), fioREAD);
}

TEST(FioOpening, NullPathAsserts) {
  AssertRecorder recorder;
  FioFile file;
  EXPECT_EQ(FioOpen(nullptr, fioREAD, file), fioOPEN_FAILED);
  EXPECT_EQ(recorder.Only(), "path");
  recorder.Clear();
  EXPECT_EQ(FioCreate(nullptr, fioREAD, file), fioOPEN_FAILED);
  EXPECT_EQ(recorder.Only(), "path");
}

// ---- creating ----

TEST(FioCreating, ExistingFileOrFolder) {
  TempDir dir;
  FioFile file;
  EXPECT_EQ(FioCreate(dir.Write("a", "abc").c_str(), fioWRITE, file), fioEXISTS);
  EXPECT_EQ(dir.Read("a"), "abc");
  EXPECT_EQ(FioCreate(dir.Path().c_str(), fioWRITE, file), fioEXISTS);
}

TEST(FioCreating, AccessByMode) {
  TempDir dir;
  const struct {
    FioMode mode;
    bool reads, writes;
  } rows[] = {{fioREAD, true, false},
              {fioWRITE, false, true},
              {fioREADWRITE, true, true},
              {fioWRITE_TRUNC, false, true}};
  for (const auto& row : rows) {
    const std::string path = dir.Join("new" + std::to_string(row.mode));
    FioFile file;
    ASSERT_EQ(FioCreate(path.c_str(), row.mode, file), fioOK);
    FailureRecorder failures;
    char buffer[2];
    EXPECT_EQ(FioRead(file, 1, buffer), row.reads ? fioEOF : fioIO_ERROR) << row.mode;
    EXPECT_EQ(FioWrite(file, 1, "x"), row.writes ? fioOK : fioIO_ERROR) << row.mode;
  }
}

TEST(FioCreating, IsNotShared) {
  TempDir dir;
  FioFile file, other;
  ASSERT_EQ(FioCreate(dir.Join("a").c_str(), fioREAD, file), fioOK);
  EXPECT_EQ(FioOpen(dir.Join("a").c_str(), fioREAD, other), fioOPEN_FAILED);
  EXPECT_FALSE(OthersMay(GENERIC_READ, dir.Join("a")));
  EXPECT_FALSE(OthersMay(GENERIC_WRITE, dir.Join("a")));
}

DWORD WINAPI NothingThere(LPCSTR) {
  SetLastError(ERROR_FILE_NOT_FOUND);
  return INVALID_FILE_ATTRIBUTES;
}

TEST(FioCreating, FileMadeMeanwhileIsNotTakenOver) {
  TempDir dir;
  const std::string path = dir.Write("a", "of another");
  FioFile file;
  {
    // The look finds nothing; by the time of the creation the file is there.
    const ImportDouble look("GetFileAttributesA", reinterpret_cast<void*>(&NothingThere));
    EXPECT_EQ(FioCreate(path.c_str(), fioWRITE, file), fioEXISTS);
  }
  EXPECT_FALSE(file.handle);
  EXPECT_EQ(dir.Read("a"), "of another");
}

TEST(FioCreating, MissingFolderIsOpenFailed) {
  TempDir dir;
  FioFile file;
  EXPECT_EQ(FioCreate(dir.Join("none\\a").c_str(), fioWRITE, file), fioOPEN_FAILED);
}

// ---- closing ----

TEST(FioClosing, ReleasesTheFileAndResetsTheRecord) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abc"), fioWRITE);
  EXPECT_EQ(FioClose(file), fioOK);
  EXPECT_FALSE(file.handle);
  FioFile again = Opened(dir.Join("a"), fioWRITE);
}

TEST(FioClosing, TwiceAssertsAndIsAnError) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abc"), fioREAD);
  EXPECT_EQ(FioClose(file), fioOK);
  AssertRecorder recorder;
  EXPECT_EQ(FioClose(file), fioIO_ERROR);
  EXPECT_EQ(recorder.Only(), "file");
}

TEST(FioClosing, RefusedByTheSystemIsAnError) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abc"), fioREAD);
  const HANDLE handle = file.handle.Get();
  CloseHandle(handle);  // behind the record's back
  EXPECT_EQ(FioClose(file), fioIO_ERROR);
}

TEST(FioClosing, EveryOperationOnAClosedRecordAssertsAndFails) {
  struct Row {
    const char* name;
    FioResult (*call)(FioFile& file);
  };
  static char buffer[8];
  static uint32_t number;
  const Row rows[] = {
      {"read", [](FioFile& file) { return FioRead(file, 1, buffer); }},
      {"write", [](FioFile& file) { return FioWrite(file, 1, "x"); }},
      {"seek", [](FioFile& file) { return FioSeek(file, 0); }},
      {"position", [](FioFile& file) { return FioGetPos(file, number); }},
      {"end", [](FioFile& file) { return FioSetEOF(file, 0); }},
      {"size", [](FioFile& file) { return FioGetSize(file, number); }},
      {"line", [](FioFile& file) { return FioReadLine(file, 8, buffer); }},
  };
  for (const Row& row : rows) {
    AssertRecorder recorder;
    FioFile file;
    EXPECT_EQ(row.call(file), fioIO_ERROR) << row.name;
    EXPECT_EQ(recorder.Only(), "file") << row.name;
  }
}

// ---- reading and writing ----

TEST(FioTransfer, MoreThanOnePiece) {
  TempDir dir;
  std::string bytes(25001, '\0');
  for (size_t i = 0; i < bytes.size(); i++) bytes[i] = static_cast<char>(i * 13 + i / 256);
  FioFile out;
  ASSERT_EQ(FioCreate(dir.Join("a").c_str(), fioWRITE, out), fioOK);
  EXPECT_EQ(FioWrite(out, static_cast<uint32_t>(bytes.size()), bytes.data()), fioOK);
  EXPECT_EQ(FioClose(out), fioOK);
  EXPECT_TRUE(dir.Read("a") == bytes);

  FioFile in = Opened(dir.Join("a"), fioREAD);
  std::string back(bytes.size(), 'X');
  uint32_t got = 0;
  EXPECT_EQ(FioRead(in, static_cast<uint32_t>(back.size()), back.data(), &got), fioOK);
  EXPECT_EQ(got, bytes.size());
  EXPECT_TRUE(back == bytes);
}

TEST(FioTransfer, ReadAtTheEndIsEof) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abc"), fioREAD);
  char buffer[10];
  uint32_t got = 99;
  EXPECT_EQ(FioRead(file, 10, buffer, &got), fioOK);  // what is left
  EXPECT_EQ(got, 3u);
  EXPECT_EQ(FioRead(file, 10, buffer, &got), fioEOF);
  EXPECT_EQ(got, 0u);
}

TEST(FioTransfer, ExactPieceSizeThenEof) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", std::string(20000, 'x')), fioREAD);
  std::string buffer(30000, '\0');
  uint32_t got = 0;
  EXPECT_EQ(FioRead(file, 30000, buffer.data(), &got), fioOK);
  EXPECT_EQ(got, 20000u);
  EXPECT_EQ(FioRead(file, 30000, buffer.data(), &got), fioEOF);
}

TEST(FioTransfer, NothingIsReportedOnSuccessOrAtTheEnd) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", ""), fioREADWRITE);
  FailureRecorder failures;
  char buffer[4];
  EXPECT_EQ(FioRead(file, 4, buffer), fioEOF);
  EXPECT_EQ(FioWrite(file, 3, "abc"), fioOK);
  EXPECT_EQ(FioWrite(file, 0, ""), fioOK);
  EXPECT_TRUE(gFailures.empty());
}

TEST(FioTransfer, FailedReadAndWriteAreReportedOnceEach) {
  TempDir dir;
  const std::string path = dir.Write("a", "abc");
  FailureRecorder failures;
  char buffer[4];
  FioFile writer = Opened(path, fioWRITE);
  uint32_t got = 99;
  EXPECT_EQ(FioRead(writer, 3, buffer, &got), fioIO_ERROR);
  EXPECT_EQ(got, 0u);
  EXPECT_EQ(gFailures, std::vector<bool>{false});
  EXPECT_EQ(FioClose(writer), fioOK);
  FioFile reader = Opened(path, fioREAD);
  EXPECT_EQ(FioWrite(reader, 25000, std::string(25000, 'x').data()), fioIO_ERROR);
  EXPECT_EQ(gFailures, (std::vector<bool>{false, true}));
}

// The sizes of the transfers asked of the system, and what the system answers to each after
// the first `gGoodTransfers`.
std::vector<DWORD> gTransfers;
size_t gGoodTransfers = 0;
enum class Trouble { kNone, kShort, kFull, kRefused } gTrouble = Trouble::kNone;
decltype(&ReadFile) gReadFile = nullptr;
decltype(&WriteFile) gWriteFile = nullptr;

BOOL WINAPI RecordedRead(HANDLE file, LPVOID bytes, DWORD count, LPDWORD got, LPOVERLAPPED overlapped) {
  gTransfers.push_back(count);
  if (gTrouble == Trouble::kNone || gTransfers.size() <= gGoodTransfers)
    return gReadFile(file, bytes, count, got, overlapped);
  *got = 0;
  SetLastError(ERROR_CRC);
  return FALSE;
}

BOOL WINAPI RecordedWrite(HANDLE file, LPCVOID bytes, DWORD count, LPDWORD written, LPOVERLAPPED overlapped) {
  gTransfers.push_back(count);
  if (gTrouble == Trouble::kNone || gTransfers.size() <= gGoodTransfers)
    return gWriteFile(file, bytes, count, written, overlapped);
  if (gTrouble == Trouble::kShort) return gWriteFile(file, bytes, count - 1, written, overlapped);
  *written = 0;
  SetLastError(gTrouble == Trouble::kFull ? ERROR_DISK_FULL : ERROR_ACCESS_DENIED);
  return FALSE;
}

// Looks on at every transfer while it lives.
class TransferRecorder {
 public:
  explicit TransferRecorder(Trouble trouble = Trouble::kNone, size_t goodTransfers = 0)
      : mRead("ReadFile", reinterpret_cast<void*>(&RecordedRead)),
        mWrite("WriteFile", reinterpret_cast<void*>(&RecordedWrite)) {
    gTransfers.clear();
    gTrouble = trouble;
    gGoodTransfers = goodTransfers;
    gReadFile = reinterpret_cast<decltype(&ReadFile)>(mRead.Original());
    gWriteFile = reinterpret_cast<decltype(&WriteFile)>(mWrite.Original());
  }

 private:
  ImportDouble mRead;
  ImportDouble mWrite;
};

TEST(FioTransfer, PiecesAreAtMostTenThousandBytes) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", ""), fioREADWRITE);
  std::string bytes(25001, 'x');
  TransferRecorder recorder;
  EXPECT_EQ(FioWrite(file, 25001, bytes.data()), fioOK);
  EXPECT_EQ(gTransfers, (std::vector<DWORD>{10000, 10000, 5001}));
  EXPECT_EQ(FioSeek(file, 0), fioOK);
  gTransfers.clear();
  EXPECT_EQ(FioRead(file, 20000, bytes.data()), fioOK);
  EXPECT_EQ(gTransfers, (std::vector<DWORD>{10000, 10000}));
}

TEST(FioTransfer, NothingIsBuffered) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abcdef"), fioREADWRITE);
  TransferRecorder recorder;
  char bytes[2];
  EXPECT_EQ(FioRead(file, 1, bytes), fioOK);
  EXPECT_EQ(FioWrite(file, 1, "X"), fioOK);
  EXPECT_EQ(FioRead(file, 2, bytes), fioOK);
  EXPECT_EQ(gTransfers, (std::vector<DWORD>{1, 1, 2}));
}

TEST(FioTransfer, ShortWriteIsAnErrorAndReported) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", ""), fioWRITE);
  const std::string bytes(25000, 'x');
  FailureRecorder failures;
  {
    TransferRecorder recorder(Trouble::kShort, 1);
    EXPECT_EQ(FioWrite(file, 25000, bytes.data()), fioIO_ERROR);
    EXPECT_EQ(gTransfers.size(), 2u) << "no further piece";
  }
  EXPECT_EQ(gFailures, std::vector<bool>{true});
  EXPECT_EQ(Position(file), 19999u);
}

TEST(FioTransfer, WriteThatFailsInTheMiddleIsReportedOnce) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", ""), fioWRITE);
  const std::string bytes(25000, 'x');
  for (Trouble trouble : {Trouble::kFull, Trouble::kRefused}) {
    FailureRecorder failures;
    TransferRecorder recorder(trouble, 2);
    EXPECT_EQ(FioWrite(file, 25000, bytes.data()), fioIO_ERROR);
    EXPECT_EQ(gFailures, std::vector<bool>{true});
  }
}

TEST(FioTransfer, ReadThatFailsInTheMiddleTellsHowMuchCame) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", std::string(25000, 'x')), fioREAD);
  std::string bytes(25000, '\0');
  FailureRecorder failures;
  TransferRecorder recorder(Trouble::kRefused, 2);
  uint32_t got = 0;
  EXPECT_EQ(FioRead(file, 25000, bytes.data(), &got), fioIO_ERROR);
  EXPECT_EQ(got, 20000u);
  EXPECT_EQ(gFailures, std::vector<bool>{false});
}

// ---- lines ----

TEST(FioLine, FailedReadIsReportedOnceAndLeavesNoText) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "line\r\n"), fioREAD);
  FailureRecorder failures;
  TransferRecorder recorder(Trouble::kRefused);
  char buffer[20] = "left over";
  EXPECT_EQ(FioReadLine(file, 20, buffer), fioIO_ERROR);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(gFailures, std::vector<bool>{false});
}

TEST(FioLine, ReadsNoMoreThanFitsBesideTheTerminator) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", std::string(700, 'x')), fioREAD);
  TransferRecorder recorder;
  char buffer[512];
  EXPECT_EQ(FioReadLine(file, 512, buffer), fioOK);
  EXPECT_EQ(gTransfers, std::vector<DWORD>{511});
}

TEST(FioLine, LastLineWithoutLineEnd) { EXPECT_EQ(Lines("one\r\ntwo"), (List{"one", "two"})); }

TEST(FioLine, EmptyFile) { EXPECT_EQ(Lines(""), List{}); }

TEST(FioLine, LongLineComesInPieces) {
  const std::string line(700, 'x');
  EXPECT_EQ(Lines(line), (List{line.substr(0, 511), line.substr(0, 189)}));
  EXPECT_EQ(Lines(line + "\r\nnext"), (List{line.substr(0, 511), line.substr(0, 189), "next"}));
}

TEST(FioLine, EachPairIsOneEnd) {
  EXPECT_EQ(Lines("a\r\nb\n\rc"), (List{"a", "b", "c"}));
  EXPECT_EQ(Lines("a\rb\nc"), (List{"a", "b", "c"}));
}

TEST(FioLine, TwoPairsHoldAnEmptyLine) {
  EXPECT_EQ(Lines("a\r\n\r\n"), (List{"a", ""}));
  EXPECT_EQ(Lines("a\r\n\r\nb"), (List{"a", "", "b"}));
}

TEST(FioLine, TwoOfOneKindAreTwoEnds) {
  EXPECT_EQ(Lines("a\r\r"), (List{"a", ""}));
  EXPECT_EQ(Lines("a\n\nb"), (List{"a", "", "b"}));
  EXPECT_EQ(Lines("a\r\r\nb"), (List{"a", "", "b"}));
}

TEST(FioLine, PairThatStraddlesThePieceIsStillOneEnd) {
  // Seven characters and CR fill the buffer of nine; LF is the next byte of the file.
  EXPECT_EQ(Lines("1234567\r\nnext", 9), (List{"1234567", "next"}));
  EXPECT_EQ(Lines("1234567\n\rnext", 9), (List{"1234567", "next"}));
}

TEST(FioLine, SingleEndInTheLastPlaceOfThePiece) {
  EXPECT_EQ(Lines("1234567\rnext", 9), (List{"1234567", "next"}));
  EXPECT_EQ(Lines("1234567\r\rnext", 9), (List{"1234567", "", "next"}));
  EXPECT_EQ(Lines("1234567\r", 9), List{"1234567"});
}

TEST(FioLine, LineThatFillsThePieceLeavesItsEndToTheNextCall) {
  EXPECT_EQ(Lines("12345678\r\nnext", 9), (List{"12345678", "", "next"}));
}

TEST(FioLine, PositionIsJustBehindTheLineEnd) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "one\r\ntwo\nthree"), fioREAD);
  char buffer[100];
  EXPECT_EQ(FioReadLine(file, 100, buffer), fioOK);
  EXPECT_EQ(Position(file), 5u);
  EXPECT_EQ(FioReadLine(file, 100, buffer), fioOK);
  EXPECT_EQ(Position(file), 9u);
  EXPECT_EQ(FioReadLine(file, 100, buffer), fioOK);
  EXPECT_EQ(Position(file), 14u);
  EXPECT_EQ(FioReadLine(file, 100, buffer), fioEOF);
}

TEST(FioLine, NeverWritesBeyondTheBuffer) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abcdefgh\r\n"), fioREAD);
  char buffer[6] = {'?', '?', '?', '?', '?', '?'};
  EXPECT_EQ(FioReadLine(file, 5, buffer), fioOK);
  EXPECT_STREQ(buffer, "abcd");
  EXPECT_EQ(buffer[5], '?');
}

TEST(FioLine, RoomForTheEndAloneReadsNothing) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abc"), fioREAD);
  char buffer[1] = {'?'};
  EXPECT_EQ(FioReadLine(file, 1, buffer), fioEOF);
  EXPECT_EQ(buffer[0], '\0');
  EXPECT_EQ(Position(file), 0u);
}

TEST(FioLine, MaximumOfZeroOrLessAsserts) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abc"), fioREAD);
  for (int32_t maxlen : {0, -1, INT32_MIN}) {
    AssertRecorder recorder;
    char buffer[1] = {'?'};
    EXPECT_EQ(FioReadLine(file, maxlen, buffer), fioEOF);
    EXPECT_EQ(recorder.Only(), "maxlen > 0");
    EXPECT_EQ(buffer[0], '?');
  }
  EXPECT_EQ(Position(file), 0u);
}

TEST(FioLine, NulBytesInTheFileDoNoHarm) {
  const std::string bytes("a\0b\r\nc", 6);
  EXPECT_EQ(Lines(bytes), (List{"a", "c"}));
}

TEST(FioLine, WriteEndsWithCrLf) {
  TempDir dir;
  FioFile file;
  ASSERT_EQ(FioCreate(dir.Join("a").c_str(), fioWRITE, file), fioOK);
  EXPECT_EQ(FioWriteLine(file, "one"), fioOK);
  EXPECT_EQ(FioWriteLine(file, ""), fioOK);
  EXPECT_EQ(FioWriteLine(file, "\xe9t\xe9"), fioOK);
  EXPECT_EQ(FioClose(file), fioOK);
  EXPECT_EQ(dir.Read("a"), "one\r\n\r\n\xe9t\xe9\r\n");
}

TEST(FioLine, FailedWriteIsReportedOnce) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abc"), fioREAD);
  FailureRecorder failures;
  EXPECT_EQ(FioWriteLine(file, "line"), fioIO_ERROR);
  EXPECT_EQ(gFailures, std::vector<bool>{true});
}

// ---- positions and sizes ----

TEST(FioPosition, SeekIsFromTheStart) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abcdef"), fioREAD);
  EXPECT_EQ(Position(file), 0u);
  EXPECT_EQ(FioSeek(file, 4), fioOK);
  EXPECT_EQ(Position(file), 4u);
  char ch = 0;
  EXPECT_EQ(FioRead(file, 1, &ch), fioOK);
  EXPECT_EQ(ch, 'e');
  EXPECT_EQ(FioSeek(file, 0), fioOK);
  EXPECT_EQ(Position(file), 0u);
}

TEST(FioPosition, UpToFourGigabytes) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", ""), fioREAD);
  for (uint32_t pos : {0x80000000u, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
    EXPECT_EQ(FioSeek(file, pos), fioOK);
    EXPECT_EQ(Position(file), pos);
  }
}

TEST(FioPosition, SetEofCutsAndExtends) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abcdef"), fioWRITE);
  EXPECT_EQ(FioSetEOF(file, 2), fioOK);
  EXPECT_EQ(Position(file), 2u);
  uint32_t size = 0;
  EXPECT_EQ(FioGetSize(file, size), fioOK);
  EXPECT_EQ(size, 2u);
  EXPECT_EQ(FioSetEOF(file, 5), fioOK);
  EXPECT_EQ(FioGetSize(file, size), fioOK);
  EXPECT_EQ(size, 5u);
  EXPECT_EQ(FioClose(file), fioOK);
  EXPECT_EQ(dir.Read("a").substr(0, 2), "ab");
}

TEST(FioPosition, SetEofInReadModeIsAnError) {
  TempDir dir;
  FioFile file = Opened(dir.Write("a", "abcdef"), fioREAD);
  EXPECT_EQ(FioSetEOF(file, 2), fioIO_ERROR);
  uint32_t size = 0;
  EXPECT_EQ(FioGetSize(file, size), fioOK);
  EXPECT_EQ(size, 6u);
}

}  // namespace
