#include "support/font_maker.h"

#include <array>
#include <utility>
#include <vector>

#include "support/bytes.h"

namespace {

constexpr unsigned kGlyphs = 3;  // .notdef, A, space
constexpr unsigned kAdvance = 600;

using Table = std::pair<const char*, std::string>;

ByteWriter Big() { return ByteWriter(ByteWriter::Order::kBig); }

bool Has(const FontSpec& spec, const char* word) { return spec.style.find(word) != std::string::npos; }

std::string Head(const FontSpec& spec) {
  ByteWriter w = Big();
  w.U32(0x00010000);
  w.U32(spec.revision);
  w.U32(0);           // checkSumAdjustment, set at the end
  w.U32(0x5F0F3CF5);  // magic
  w.U16(0x000B);
  w.U16(1000);  // units per em
  w.U32(0);
  w.U32(0xB0000000);  // created
  w.U32(0);
  w.U32(0xB0000000);  // modified
  w.U16(50);
  w.U16(0);
  w.U16(550);
  w.U16(700);
  w.U16((Has(spec, "Bold") ? 1 : 0) | (Has(spec, "Italic") ? 2 : 0));
  w.U16(8);
  w.U16(2);
  w.U16(0);  // short offsets in loca
  w.U16(0);
  return w.Bytes();
}

std::string Hhea() {
  ByteWriter w = Big();
  w.U32(0x00010000);
  w.U16(800);
  w.U16(0xFF38);  // -200
  w.U16(0);
  w.U16(kAdvance);
  w.U16(50);
  w.U16(50);
  w.U16(550);
  w.U16(1);
  for (int i = 0; i < 7; ++i) w.U16(0);
  w.U16(kGlyphs);
  return w.Bytes();
}

std::string Hmtx() {
  ByteWriter w = Big();
  for (unsigned i = 0; i < kGlyphs; ++i) {
    w.U16(kAdvance);
    w.U16(i == 2 ? 0 : 50);
  }
  return w.Bytes();
}

std::string Maxp() {
  ByteWriter w = Big();
  w.U32(0x00010000);
  for (const unsigned value : {kGlyphs, 4u, 1u, 0u, 0u, 1u, 0u, 0u, 0u, 0u, 0u, 0u, 0u, 0u}) w.U16(value);
  return w.Bytes();
}

// A box of four corners.
std::string Glyph() {
  ByteWriter w = Big();
  for (const unsigned value : {1u, 50u, 0u, 550u, 700u}) w.U16(value);  // contours and bounds
  w.U16(3);                                                             // last point
  w.U16(0);                                                             // no instructions
  for (int i = 0; i < 4; ++i) w.U8(1);                                  // on the curve, 16-bit offsets
  for (const unsigned x : {50u, 0u, 500u, 0u}) w.U16(x);
  for (const unsigned y : {0u, 700u, 0u, 0xFD44u}) w.U16(y);
  w.Align(4);
  return w.Bytes();
}

std::string Loca() {
  const unsigned half = static_cast<unsigned>(Glyph().size() / 2);
  ByteWriter w = Big();
  for (const unsigned offset : {0u, half, 2 * half, 2 * half}) w.U16(offset);
  return w.Bytes();
}

std::string Cmap() {
  ByteWriter w = Big();
  w.U16(0);
  w.U16(1);
  w.U16(3);
  w.U16(1);
  w.U32(12);
  // Format 4 with the segments space, A and the end.
  for (const unsigned value : {4u, 40u, 0u, 6u, 4u, 1u, 2u}) w.U16(value);
  for (const unsigned end : {0x20u, 0x41u, 0xFFFFu}) w.U16(end);
  w.U16(0);
  for (const unsigned start : {0x20u, 0x41u, 0xFFFFu}) w.U16(start);
  for (const unsigned delta : {0xFFE2u, 0xFFC0u, 1u}) w.U16(delta);
  for (int i = 0; i < 3; ++i) w.U16(0);
  return w.Bytes();
}

std::string Post() {
  ByteWriter w = Big();
  w.U32(0x00030000);
  w.U32(0);
  w.U16(0xFF9C);
  w.U16(50);
  for (int i = 0; i < 5; ++i) w.U32(0);
  return w.Bytes();
}

std::string Os2(const FontSpec& spec) {
  const bool bold = Has(spec, "Bold");
  const bool italic = Has(spec, "Italic");
  ByteWriter w = Big();
  w.U16(1);
  w.U16(500);
  w.U16(bold ? 700 : 400);
  w.U16(5);
  w.U16(0);  // installable
  for (const unsigned value : {650u, 600u, 0u, 75u, 650u, 600u, 0u, 350u, 50u, 300u, 0u}) w.U16(value);
  for (int i = 0; i < 10; ++i) w.U8(0);  // panose
  w.U32(1);                              // Basic Latin
  for (int i = 0; i < 3; ++i) w.U32(0);
  w.Text("VTST");
  w.U16((italic ? 1 : 0) | (bold ? 0x20 : 0) | (!italic && !bold ? 0x40 : 0));
  for (const unsigned value : {0x20u, 0x41u, 800u, 0xFF38u, 0u, 800u, 200u}) w.U16(value);
  w.U32(1);  // Latin 1
  w.U32(0);
  return w.Bytes();
}

std::string Name(const FontSpec& spec) {
  const std::string full = !spec.fullName.empty()    ? spec.fullName
                           : spec.style == "Regular" ? spec.family
                                                     : spec.family + " " + spec.style;
  std::string postscript = full;
  for (char& c : postscript)
    if (c == ' ') c = '-';
  const std::array<std::string, 7> windows = {"",   spec.family,   spec.style, full,
                                              full, "Version 1.0", postscript};
  std::array<std::string, 7> mac = windows;
  if (!spec.macFamily.empty()) mac[1] = spec.macFamily;
  if (!spec.macFullName.empty()) mac[4] = spec.macFullName;

  ByteWriter records = Big();
  ByteWriter texts = Big();
  unsigned count = 0;
  const auto add = [&](unsigned platform, unsigned encoding, unsigned language,
                       const std::array<std::string, 7>& names) {
    for (unsigned id = 1; id < names.size(); ++id) {
      const size_t at = texts.Size();
      if (platform == 3)
        texts.Wide(names[id]);
      else
        texts.Text(names[id]);
      for (const unsigned value : {platform, encoding, language, id, static_cast<unsigned>(texts.Size() - at),
                                   static_cast<unsigned>(at)})
        records.U16(value);
      ++count;
    }
  };
  if (spec.macNames) add(1, 0, 0, mac);
  if (spec.windowsNames) add(3, 1, 0x409, windows);
  ByteWriter w = Big();
  w.U16(0);
  w.U16(count);
  w.U16(6 + 12 * count);
  w.Text(records.Bytes());
  w.Text(texts.Bytes());
  return w.Bytes();
}

unsigned Checksum(const std::string& bytes) {
  unsigned sum = 0;
  for (size_t i = 0; i < bytes.size(); i += 4)
    for (size_t k = 0; k < 4; ++k)
      if (i + k < bytes.size())
        sum += static_cast<unsigned>(static_cast<unsigned char>(bytes[i + k])) << (8 * (3 - k));
  return sum;
}

}  // namespace

std::string MakeFont(const FontSpec& spec) {
  const std::string glyphs = Glyph() + Glyph();
  // In the order of their tags, as the directory has to be.
  const std::vector<Table> tables = {
      {"OS/2", Os2(spec)}, {"cmap", Cmap()}, {"glyf", glyphs}, {"head", Head(spec)}, {"hhea", Hhea()},
      {"hmtx", Hmtx()},    {"loca", Loca()}, {"maxp", Maxp()}, {"name", Name(spec)}, {"post", Post()}};
  ByteWriter w = Big();
  w.U32(0x00010000);
  w.U16(static_cast<unsigned>(tables.size()));
  w.U16(128);
  w.U16(3);
  w.U16(static_cast<unsigned>(tables.size()) * 16 - 128);
  size_t offset = 12 + 16 * tables.size();
  size_t headAt = 0;
  for (const auto& [tag, bytes] : tables) {
    if (std::string(tag) == "head") headAt = offset;
    w.Text(tag);
    w.U32(Checksum(bytes));
    w.U32(static_cast<unsigned>(offset));
    w.U32(static_cast<unsigned>(bytes.size()));
    offset += (bytes.size() + 3) / 4 * 4;
  }
  for (const auto& [tag, bytes] : tables) {
    w.Text(bytes);
    w.Align(4);
  }
  w.PatchU32(headAt + 8, 0xB1B0AFBA - Checksum(w.Bytes()));
  return w.Bytes();
}
