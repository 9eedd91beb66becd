#include "support/library_maker.h"

#include <cstdio>
#include <cstdlib>

#include "support/bytes.h"

namespace {

constexpr unsigned kVersionType = 16;
constexpr unsigned kStringType = 6;
constexpr unsigned kSectionAddress = 0x1000;
constexpr unsigned kFileAlignment = 0x200;
constexpr unsigned kSectionAlignment = 0x1000;

ByteWriter Little() { return ByteWriter(ByteWriter::Order::kLittle); }

// ---- version resource ----

// One node: length, value length, type (1 text, 0 binary), key, value, children; each on a 4-byte boundary.
std::string Node(const std::string& key, const std::string& value, unsigned valueLength, bool text,
                 const std::vector<std::string>& children) {
  ByteWriter w = Little();
  w.U16(0);
  w.U16(valueLength);
  w.U16(text ? 1 : 0);
  w.Wide(key);
  w.U16(0);
  w.Align(4);
  w.Text(value);
  for (const std::string& child : children) {
    w.Align(4);
    w.Text(child);
  }
  w.PatchU16(0, static_cast<unsigned>(w.Size()));
  return w.Bytes();
}

std::string TextNode(const std::string& key, const std::string& text) {
  ByteWriter value = Little();
  value.Wide(text);
  value.U16(0);
  return Node(key, value.Bytes(), static_cast<unsigned>(text.size() + 1), true, {});
}

std::string FixedInfo(const LibrarySpec& spec) {
  ByteWriter w = Little();
  w.U32(0xFEEF04BD);
  w.U32(0x00010000);
  for (const Version4& version : {spec.fileVersion, spec.productVersion}) {
    w.U32(version[0] << 16 | version[1]);
    w.U32(version[2] << 16 | version[3]);
  }
  w.U32(0x3F);
  w.U32(0);
  w.U32(0x00000004);  // for 32-bit Windows
  w.U32(spec.fileType);
  for (int i = 0; i < 3; ++i) w.U32(0);
  return w.Bytes();
}

std::string VersionResource(const LibrarySpec& spec) {
  std::vector<Translation> translations = spec.translations;
  if (translations.empty()) translations.push_back({0x0409, 1252});
  ByteWriter pairs = Little();
  for (const Translation& translation : translations) {
    pairs.U16(translation.language);
    pairs.U16(translation.codePage);
  }
  const std::string var =
      Node("VarFileInfo", "", 0, true,
           {Node("Translation", pairs.Bytes(), static_cast<unsigned>(pairs.Size()), false, {})});
  std::vector<std::string> children;
  if (!spec.texts.empty()) {
    char table[9] = "";
    snprintf(table, sizeof table, "%04x%04x", translations[0].language & 0xFFFF,
             translations[0].codePage & 0xFFFF);
    std::vector<std::string> texts;
    for (const auto& [name, text] : spec.texts) texts.push_back(TextNode(name, text));
    children.push_back(Node("StringFileInfo", "", 0, true, {Node(table, "", 0, true, texts)}));
  }
  children.push_back(var);
  const std::string fixed = FixedInfo(spec);
  return Node("VS_VERSION_INFO", fixed, static_cast<unsigned>(fixed.size()), false, children);
}

// ---- string table ----

// Sixteen texts each; block n holds the ids 16 * (n - 1) and up.
std::map<unsigned, std::string> StringBlocks(const std::map<unsigned, std::string>& strings) {
  std::map<unsigned, std::string> blocks;
  for (const auto& [id, unused] : strings) {
    const unsigned block = id / 16 + 1;
    if (blocks.count(block) != 0) continue;
    ByteWriter w = Little();
    for (unsigned i = 0; i < 16; ++i) {
      const auto found = strings.find((block - 1) * 16 + i);
      const std::string text = found == strings.end() ? "" : found->second;
      w.U16(static_cast<unsigned>(text.size()));
      w.Wide(text);
    }
    blocks[block] = w.Bytes();
  }
  return blocks;
}

// ---- resource section ----

using ResourceTree = std::map<unsigned, std::map<unsigned, std::string>>;  // type, id, bytes

void DirectoryHead(ByteWriter& w, size_t entries) {
  for (int i = 0; i < 3; ++i) w.U32(0);
  w.U16(0);
  w.U16(static_cast<unsigned>(entries));
}

// The three levels type, id and language; then the data entries, then the data.
std::string ResourceSection(const ResourceTree& tree, unsigned language) {
  constexpr unsigned kSubdirectory = 0x80000000;
  size_t directories = 16 + 8 * tree.size();
  size_t leaves = 0;
  for (const auto& [type, ids] : tree) {
    directories += 16 + 8 * ids.size() + 24 * ids.size();
    leaves += ids.size();
  }
  ByteWriter w = Little();
  DirectoryHead(w, tree.size());
  size_t idAt = 16 + 8 * tree.size();
  for (const auto& [type, ids] : tree) {
    w.U32(type);
    w.U32(kSubdirectory | static_cast<unsigned>(idAt));
    idAt += 16 + 8 * ids.size();
  }
  size_t languageAt = idAt;
  for (const auto& [type, ids] : tree) {
    DirectoryHead(w, ids.size());
    for (const auto& [id, bytes] : ids) {
      w.U32(id);
      w.U32(kSubdirectory | static_cast<unsigned>(languageAt));
      languageAt += 24;
    }
  }
  size_t entryAt = directories;
  size_t dataAt = directories + 16 * leaves;
  for (size_t i = 0; i < leaves; ++i) {
    DirectoryHead(w, 1);
    w.U32(language);
    w.U32(static_cast<unsigned>(entryAt));
    entryAt += 16;
  }
  for (const auto& [type, ids] : tree)
    for (const auto& [id, bytes] : ids) {
      w.U32(kSectionAddress + static_cast<unsigned>(dataAt));
      w.U32(static_cast<unsigned>(bytes.size()));
      w.U32(0);
      w.U32(0);
      dataAt += (bytes.size() + 3) / 4 * 4;
    }
  for (const auto& [type, ids] : tree)
    for (const auto& [id, bytes] : ids) {
      w.Text(bytes);
      w.Align(4);
    }
  return w.Bytes();
}

unsigned Up(size_t size, unsigned unit) { return static_cast<unsigned>((size + unit - 1) / unit * unit); }

void OptionalHeader(ByteWriter& w, unsigned sectionSize) {
  w.U16(0x10B);
  w.U16(0);
  w.U32(0);
  w.U32(Up(sectionSize, kFileAlignment));
  w.U32(0);
  w.U32(0);  // no entry
  w.U32(0);
  w.U32(0);
  w.U32(0x10000000);
  w.U32(kSectionAlignment);
  w.U32(kFileAlignment);
  for (const unsigned value : {4u, 0u, 0u, 0u, 4u, 0u}) w.U16(value);
  w.U32(0);
  w.U32(kSectionAddress + Up(sectionSize, kSectionAlignment));
  w.U32(0x200);
  w.U32(0);
  w.U16(2);
  w.U16(0);
  for (const unsigned value : {0x100000u, 0x1000u, 0x100000u, 0x1000u, 0u, 16u}) w.U32(value);
  for (unsigned directory = 0; directory < 16; ++directory) {
    w.U32(directory == 2 && sectionSize != 0 ? kSectionAddress : 0);
    w.U32(directory == 2 ? sectionSize : 0);
  }
}

}  // namespace

Version4 VersionNumber(const std::string& text) {
  Version4 version = {};
  const char* at = text.c_str();
  for (unsigned& part : version) {
    char* end = nullptr;
    part = static_cast<unsigned>(strtoul(at, &end, 10));
    if (*end != '.') break;
    at = end + 1;
  }
  return version;
}

std::string MakeLibrary(const LibrarySpec& spec) {
  ResourceTree tree;
  if (!spec.strings.empty()) tree[kStringType] = StringBlocks(spec.strings);
  if (spec.hasVersion) tree[kVersionType][1] = VersionResource(spec);
  const std::string section = ResourceSection(tree, spec.resourceLanguage);
  const unsigned size = static_cast<unsigned>(section.size());

  ByteWriter w = Little();
  w.Text("MZ");
  w.PadTo(0x3C);
  w.U32(0x40);
  w.Text(std::string("PE\0\0", 4));
  w.U16(0x14C);
  w.U16(1);
  for (int i = 0; i < 3; ++i) w.U32(0);
  w.U16(224);
  w.U16(0x210E);  // executable, 32 bits, library, no line numbers and symbols
  OptionalHeader(w, size);
  w.Text(std::string(".rsrc\0\0\0", 8));
  w.U32(size);
  w.U32(kSectionAddress);
  w.U32(Up(size, kFileAlignment));
  w.U32(0x200);
  for (int i = 0; i < 3; ++i) w.U32(0);
  w.U32(0x40000040);
  w.PadTo(0x200);
  w.Text(section);
  w.Align(kFileAlignment);
  return w.Bytes();
}

std::string MakeLzFile(const std::string& bytes, char lastLetter) {
  ByteWriter w = Little();
  w.Text("SZDD\x88\xF0\x27\x33");
  w.U8('A');
  w.U8(static_cast<unsigned char>(lastLetter));
  w.U32(static_cast<unsigned>(bytes.size()));
  for (size_t at = 0; at < bytes.size(); at += 8) {
    w.U8(0xFF);  // the next eight are plain bytes
    w.Text(std::string_view(bytes).substr(at, 8));
  }
  return w.Bytes();
}
