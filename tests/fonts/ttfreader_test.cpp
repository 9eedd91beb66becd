// The TrueType reader on bytes: one test for each rule of the four tables it reads.
#include "fonts/ttfreader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/bytes.h"
#include "support/font_maker.h"

namespace {

std::span<const std::byte> AsBytes(const std::string& text) {
  return std::as_bytes(std::span<const char>(text.data(), text.size()));
}

struct Record {
  unsigned platform;
  unsigned number;
  std::string text;
  int offset = -1;  // into the texts; -1: where the text lies
  int length = -1;
};

std::string NameTable(const std::vector<Record>& records, int count = -1, int storage = -1) {
  ByteWriter w(ByteWriter::Order::kBig);
  std::string texts;
  w.U16(0);
  w.U16(count >= 0 ? static_cast<unsigned>(count) : static_cast<unsigned>(records.size()));
  w.U16(storage >= 0 ? static_cast<unsigned>(storage) : static_cast<unsigned>(6 + 12 * records.size()));
  for (const Record& record : records) {
    w.U16(record.platform);
    w.U16(0);
    w.U16(0);
    w.U16(record.number);
    w.U16(record.length >= 0 ? static_cast<unsigned>(record.length)
                             : static_cast<unsigned>(record.text.size()));
    w.U16(record.offset >= 0 ? static_cast<unsigned>(record.offset) : static_cast<unsigned>(texts.size()));
    texts += record.text;
  }
  w.Text(texts);
  return w.Bytes();
}

const std::vector<Record> kGood = {{1, 1, "Family"}, {1, 4, "Full"}};

TEST(TtfNames, TheFirstMacintoshRecordsCount) {
  TtfNames names;
  ASSERT_TRUE(TtfReadNames(AsBytes(NameTable({{0, 4, "Unicode"},
                                              {3, 1, "Windows"},
                                              {1, 2, "Style"},
                                              {1, 4, "Full 1"},
                                              {1, 4, "Full 2"},
                                              {1, 1, "Family 1"},
                                              {1, 1, "Family 2"}})),
                           names));
  EXPECT_EQ(names.full, "Full 1");
  EXPECT_EQ(names.family, "Family 1");
}

TEST(TtfNames, BothNamesAreNeeded) {
  TtfNames names;
  EXPECT_FALSE(TtfReadNames(AsBytes(NameTable({{1, 1, "Family"}, {3, 4, "Full"}})), names));
  EXPECT_FALSE(TtfReadNames(AsBytes(NameTable({{1, 4, "Full"}})), names));
  EXPECT_FALSE(TtfReadNames(AsBytes(NameTable({})), names));
  EXPECT_FALSE(TtfReadNames(AsBytes(NameTable({{1, 1, ""}, {1, 4, "Full"}})), names));
}

TEST(TtfNames, ANulEndsAName) {
  TtfNames names;
  ASSERT_TRUE(TtfReadNames(AsBytes(NameTable({{1, 1, std::string("Fam\0ily", 7)}, {1, 4, "Full"}})), names));
  EXPECT_EQ(names.family, "Fam");
}

TEST(TtfNames, ADamagedTableIsRefused) {
  TtfNames names;
  EXPECT_FALSE(TtfReadNames({}, names));
  const std::string good = NameTable(kGood);
  for (size_t size = 0; size < good.size(); ++size) {
    TtfNames cut;
    EXPECT_FALSE(TtfReadNames(AsBytes(good.substr(0, size)), cut)) << size;
  }
  EXPECT_FALSE(TtfReadNames(AsBytes(NameTable(kGood, 0xFFFF)), names));
  EXPECT_FALSE(TtfReadNames(AsBytes(NameTable(kGood, -1, 0xFFFF)), names));
  EXPECT_FALSE(TtfReadNames(AsBytes(NameTable({{1, 1, "Family", 0xFFFF}, {1, 4, "Full"}})), names));
  EXPECT_FALSE(TtfReadNames(AsBytes(NameTable({{1, 1, "Family", -1, 0xFFFF}, {1, 4, "Full"}})), names));
}

TEST(TtfNames, AsManyRecordsAsATableCanHold) {
  std::vector<Record> records(0xFFFF - 2, Record{3, 1, "", 0, 0});
  records.push_back(kGood[0]);
  records.push_back(kGood[1]);
  // Only the last records count; the texts lie at the table's start, as far as an offset reaches.
  for (Record& record : records) record.text.clear();
  records[0xFFFD].offset = records[0xFFFE].offset = 0;
  records[0xFFFD].length = records[0xFFFE].length = 2;
  TtfNames names;
  ASSERT_TRUE(TtfReadNames(AsBytes(NameTable(records, -1, 6 + 12 * 5 + 1)), names));
  EXPECT_EQ(names.full.size(), 1u);  // the low byte of a platform number, then a NUL
}

TEST(TtfDirectory, FindsTheThreeTables) {
  const std::string font = MakeFont({});
  TtfTables tables;
  ASSERT_EQ(TtfTableCount(AsBytes(font)), 10);
  ASSERT_TRUE(TtfFindTables(AsBytes(font), static_cast<uint32_t>(font.size()), tables));
  EXPECT_EQ(tables.head.length, 54u);
  uint32_t revision = 0;
  ASSERT_TRUE(TtfReadRevision(AsBytes(font.substr(tables.head.offset, tables.head.length)), revision));
  EXPECT_EQ(revision, 0x00010000u);
}

TEST(TtfDirectory, ATableMayEndWithTheFileButNotBehindIt) {
  ByteWriter w(ByteWriter::Order::kBig);
  w.U32(0x00010000);
  w.U16(2);
  w.PadTo(12);
  for (const char* tag : {"head", "name"}) {
    w.Text(tag);
    w.U32(0);
    w.U32(100);
    w.U32(50);
  }
  TtfTables tables;
  EXPECT_TRUE(TtfFindTables(AsBytes(w.Bytes()), 150, tables));
  EXPECT_FALSE(TtfFindTables(AsBytes(w.Bytes()), 149, tables));
  EXPECT_FALSE(TtfFindTables(AsBytes(w.Bytes()), 99, tables));
  w.PatchU32(12 + 8, 0xFFFFFFFF);  // offset plus length wraps round
  EXPECT_FALSE(TtfFindTables(AsBytes(w.Bytes()), 0xFFFFFFFF, tables));
}

TEST(TtfDirectory, ACutDirectoryIsRefused) {
  const std::string font = MakeFont({});
  TtfTables tables;
  for (size_t size = 0; size < 12 + 10 * 16; ++size)
    EXPECT_FALSE(TtfFindTables(AsBytes(font.substr(0, size)), static_cast<uint32_t>(font.size()), tables))
        << size;
  EXPECT_EQ(TtfTableCount(AsBytes(font.substr(0, 11))), -1);
}

TEST(TtfRevision, NeedsEightBytes) {
  uint32_t revision = 0;
  EXPECT_FALSE(TtfReadRevision(AsBytes(std::string(7, 'x')), revision));
  EXPECT_TRUE(TtfReadRevision(AsBytes(std::string("\0\1\0\0\x12\x34\x56\x78", 8)), revision));
  EXPECT_EQ(revision, 0x12345678u);
}

TEST(TtfStyle, ComesFromTwoBitsOfTheSelection) {
  for (unsigned selection = 0; selection < 0x80; ++selection) {
    std::string table(64, '\xFF');
    table[62] = static_cast<char>(0xFF);
    table[63] = static_cast<char>(selection);
    uint32_t style = 9;
    ASSERT_TRUE(TtfReadStyle(AsBytes(table), style));
    EXPECT_EQ(style, ((selection & 1) ? 2u : 0u) + ((selection & 0x20) ? 1u : 0u));
  }
  uint32_t style = 0;
  EXPECT_FALSE(TtfReadStyle(AsBytes(std::string(63, 'x')), style));
}

}  // namespace
