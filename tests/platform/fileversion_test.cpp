#include "platform/fileversion.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "support/files.h"
#include "support/process.h"
#include "support/temp_dir.h"

namespace {

// Little-endian bytes of a version resource under construction.
class Bytes {
 public:
  void Word(uint16_t value) {
    mBytes.push_back(static_cast<char>(value & 0xFF));
    mBytes.push_back(static_cast<char>(value >> 8));
  }
  void Dword(uint32_t value) {
    Word(static_cast<uint16_t>(value & 0xFFFF));
    Word(static_cast<uint16_t>(value >> 16));
  }
  void Wide(const std::string& text) {
    for (char ch : text) Word(static_cast<unsigned char>(ch));
    Word(0);
  }
  void Align() {
    while (mBytes.size() % 4) mBytes.push_back('\0');
  }
  void Append(const std::string& bytes) { mBytes += bytes; }
  const std::string& Get() const { return mBytes; }

 private:
  std::string mBytes;
};

// One node: lengths, type, key, value, children.
std::string Node(const std::string& key, uint16_t valueLength, bool text, const std::string& value,
                 const std::string& children = "") {
  Bytes body;
  body.Word(valueLength);
  body.Word(text ? 1 : 0);
  body.Wide(key);
  Bytes node;
  node.Word(0);
  node.Append(body.Get());
  node.Align();
  node.Append(value);
  if (!children.empty()) {
    node.Align();
    node.Append(children);
  }
  std::string bytes = node.Get();
  bytes[0] = static_cast<char>(bytes.size() & 0xFF);
  bytes[1] = static_cast<char>(bytes.size() >> 8);
  return bytes;
}

std::string Aligned(std::string bytes) {
  while (bytes.size() % 4) bytes += '\0';
  return bytes;
}

std::string WideBytes(const std::string& text) {
  Bytes bytes;
  bytes.Wide(text);
  return bytes.Get();
}

std::string StringTable(const std::string& translation, const std::string& version) {
  const std::string text =
      Node("FileVersion", static_cast<uint16_t>(version.size() + 1), true, WideBytes(version));
  return Aligned(Node(translation, 0, true, "", text));
}

std::string StringInfo(const std::string& tables) {
  return Aligned(Node("StringFileInfo", 0, true, "", tables));
}

std::string VarInfo(const std::string& translations) {
  const uint16_t length = static_cast<uint16_t>(translations.size());
  return Aligned(Node("VarFileInfo", 0, true, "", Node("Translation", length, false, translations)));
}

std::string Translation(uint16_t language, uint16_t codePage) {
  Bytes bytes;
  bytes.Word(language);
  bytes.Word(codePage);
  return bytes.Get();
}

std::string Fixed(uint32_t ms, uint32_t ls) {
  Bytes bytes;
  for (uint32_t value : {0xFEEF04BDu, 0x10000u, ms, ls, ms, ls, 0x3Fu, 0u, 4u, 1u, 0u, 0u, 0u})
    bytes.Dword(value);
  return bytes.Get();
}

std::string VersionBytes(const std::string& fixed, const std::string& children) {
  return Node("VS_VERSION_INFO", static_cast<uint16_t>(fixed.size()), false, fixed, children);
}

// A program file whose only version resource is `resource`.
std::string FileWith(const TempDir& dir, const std::string& resource) {
  const std::string path = dir.Join("versioned.exe");
  EXPECT_TRUE(CopyFileA(HelperPath("exit_with.exe").c_str(), path.c_str(), FALSE));
  const HANDLE update = BeginUpdateResourceA(path.c_str(), TRUE);
  EXPECT_NE(update, nullptr);
  if (!resource.empty()) {
    EXPECT_TRUE(UpdateResourceA(update, MAKEINTRESOURCEA(16), MAKEINTRESOURCEA(1), 0x0409,
                                const_cast<char*>(resource.data()), static_cast<DWORD>(resource.size())));
  }
  EXPECT_TRUE(EndUpdateResourceA(update, FALSE));
  return path;
}

// The text, or "-" when there is none.
std::string VersionText(const std::string& path) {
  Str text("untouched");
  if (GetFileVersionText(path.c_str(), text)) return text.Chars();
  EXPECT_EQ(text, "untouched");
  return "-";
}

int32_t Language(const std::string& path, bool expectSeveral = false) {
  bool several = !expectSeveral;
  const int32_t language = GetFileLanguage(path.c_str(), several);
  EXPECT_EQ(several, expectSeveral);
  return language;
}

TEST(FileVersionText, OfTheFirstTranslation) {
  TempDir dir;
  const std::string resource = VersionBytes(
      Fixed(0x00060000, 0x00000001),
      StringInfo(StringTable("040904b0", "english 1") + StringTable("040c04e4", "6.0 (200707050000)")) +
          VarInfo(Translation(0x040C, 0x04E4) + Translation(0x0409, 0x04B0)));
  EXPECT_EQ(VersionText(FileWith(dir, resource)), "6.0 (200707050000)");
}

TEST(FileVersionText, WithoutTranslationListByTheUsualOnes) {
  for (const char* translation : {"040904b0", "040904E4", "040c04b0", "040C04E4", "000004b0", "000004e4"}) {
    TempDir dir;
    const std::string resource =
        VersionBytes(Fixed(0x00010002, 0), StringInfo(StringTable(translation, "found")));
    EXPECT_EQ(VersionText(FileWith(dir, resource)), "found") << translation;
  }
}

TEST(FileVersionText, TranslationThatNamesNoTableFallsBackToTheUsualOnes) {
  TempDir dir;
  const std::string resource =
      VersionBytes(Fixed(0x00010002, 0),
                   StringInfo(StringTable("040904b0", "found")) + VarInfo(Translation(0x0407, 1200)));
  EXPECT_EQ(VersionText(FileWith(dir, resource)), "found");
}

TEST(FileVersionText, SurroundingBlanksGo) {
  TempDir dir;
  const std::string resource =
      VersionBytes(Fixed(0x00010002, 0), StringInfo(StringTable("040904b0", " 1, 2 ")));
  EXPECT_EQ(VersionText(FileWith(dir, resource)), "1, 2");
}

TEST(FileVersionText, WithoutTextTheFourNumbers) {
  TempDir dir;
  EXPECT_EQ(VersionText(FileWith(dir, VersionBytes(Fixed(0x0006000A, 0x00078001), ""))), "6.10.7.32769");
  const std::string emptyText =
      VersionBytes(Fixed(0x00010002, 0x00030004), StringInfo(StringTable("040904b0", "")));
  EXPECT_EQ(VersionText(FileWith(dir, emptyText)), "1.2.3.4");
}

TEST(FileVersionText, WithoutTextAndNumbersNothing) {
  TempDir dir;
  EXPECT_EQ(VersionText(FileWith(dir, VersionBytes("", ""))), "-");
  std::string fixed = Fixed(0x00010002, 0);
  fixed[0] ^= 1;  // the signature
  EXPECT_EQ(VersionText(FileWith(dir, VersionBytes(fixed, ""))), "-");
}

TEST(FileVersionText, FileWithoutResourceOrNoFile) {
  TempDir dir;
  EXPECT_EQ(VersionText(FileWith(dir, "")), "-");
  EXPECT_EQ(VersionText(dir.Write("text.txt", "no program")), "-");
  EXPECT_EQ(VersionText(dir.Join("none.exe")), "-");
}

TEST(FileVersionText, OfTheRunningProgram) {
  char program[MAX_PATH];
  GetModuleFileNameA(nullptr, program, sizeof program);
  EXPECT_EQ(VersionText(program).substr(0, 3), "6.0");
}

TEST(FileLanguage, OnlyTranslation) {
  TempDir dir;
  const std::string resource = VersionBytes(Fixed(0x00010000, 0), VarInfo(Translation(0x040C, 0x04E4)));
  EXPECT_EQ(Language(FileWith(dir, resource)), 0x040C);
}

TEST(FileLanguage, HighSublanguage) {
  TempDir dir;
  const std::string resource = VersionBytes(Fixed(0x00010000, 0), VarInfo(Translation(0xFC0C, 0x04E4)));
  EXPECT_EQ(Language(FileWith(dir, resource)), 0xFC0C);
}

TEST(FileLanguage, TwoTranslationsAreSeveral) {
  TempDir dir;
  const std::string resource =
      VersionBytes(Fixed(0x00010000, 0), VarInfo(Translation(0x040C, 0x04E4) + Translation(0x0409, 0x04E4)));
  EXPECT_EQ(Language(FileWith(dir, resource), true), -1);
}

TEST(FileLanguage, NoneAtAll) {
  TempDir dir;
  EXPECT_EQ(Language(FileWith(dir, VersionBytes(Fixed(0x00010000, 0), ""))), -1);
  EXPECT_EQ(Language(FileWith(dir, VersionBytes(Fixed(0x00010000, 0), VarInfo("")))), -1);
  EXPECT_EQ(Language(FileWith(dir, "")), -1);
  EXPECT_EQ(Language(dir.Join("none.dll")), -1);
}

TEST(FileLanguage, HalfATranslationIsNone) {
  TempDir dir;
  EXPECT_EQ(Language(FileWith(dir, VersionBytes(Fixed(0x00010000, 0), VarInfo(std::string("\x0C\x04", 2))))),
            -1);
}

std::string Whole() {
  return VersionBytes(Fixed(0x00010002, 0x00030004),
                      StringInfo(StringTable("040c04e4", "6.0 (1)")) + VarInfo(Translation(0x040C, 0x04E4)));
}

// Reads both answers of a damaged file; whatever they are, they must come.
void ReadDamaged(const std::string& path) {
  Str text;
  bool several = false;
  const bool found = GetFileVersionText(path.c_str(), text);
  EXPECT_TRUE(found || text.IsEmpty());
  const int32_t language = GetFileLanguage(path.c_str(), several);
  EXPECT_TRUE(language >= -1 && language <= 0xFFFF);
  EXPECT_TRUE(!several || language == -1);
}

TEST(FileVersionDamage, CutAtManyPlaces) {
  TempDir dir;
  const std::string whole = Whole();
  for (size_t size = 2; size < whole.size(); size += 12) ReadDamaged(FileWith(dir, whole.substr(0, size)));
}

TEST(FileVersionDamage, EveryLengthFieldAtItsExtremes) {
  TempDir dir;
  const std::string whole = Whole();
  const std::string path = FileWith(dir, whole);
  const std::string program = ReadWholeFile(path);
  const size_t place = program.find(whole);
  ASSERT_NE(place, std::string::npos);
  // Node heads lie at multiples of four: total length, then the value's.
  for (size_t pos = 0; pos + 4 <= whole.size(); pos += 4) {
    for (const char* words : {"\xFF\xFF\xFF\xFF", "\x01\0\xFF\xFF", "\0\0\0\0"}) {
      std::string damaged = program;
      damaged.replace(place + pos, 4, words, 4);
      WriteWholeFile(path, damaged);
      ReadDamaged(path);
    }
  }
}

}  // namespace
