// sources: stores/configcodec.cpp
// Any bytes decode without fault; what is encoded reads back the same; one changed or
// missing byte is noticed.
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "stores/configcodec.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

using Entries = std::vector<std::pair<std::string, std::string>>;

ConfigContents Decode(std::string_view file) {
  ConfigContents contents;
  DecodeConfig(std::as_bytes(std::span(file)), contents);
  for (const auto& [name, value] : contents.entries) {
    Require(!name.empty() && name.find('\0') == std::string_view::npos &&
            value.find('\0') == std::string_view::npos);
    // Each text can be used as one that ends in a NUL.
    Require(name.data()[name.size()] == '\0' && value.data()[value.size()] == '\0');
  }
  return contents;
}

std::string Encode(const Entries& entries) {
  ConfigEncoder encoder;
  for (const auto& [name, value] : entries) {
    const bool frozen = name.starts_with('%');
    encoder.Add(std::string_view(name).substr(frozen ? 1 : 0), value, frozen);
  }
  return encoder.Finish();
}

// The input as alternating names and values.
Entries EntriesOf(std::string_view data) {
  Entries entries;
  while (!data.empty()) {
    std::string pieces[2];
    for (std::string& piece : pieces) {
      const size_t end = data.find('\n');
      piece = data.substr(0, end);
      std::erase(piece, '\0');
      data = end == std::string_view::npos ? std::string_view() : data.substr(end + 1);
    }
    if (!pieces[0].empty()) entries.emplace_back(pieces[0], pieces[1]);
  }
  return entries;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  Decode(input);

  const Entries entries = EntriesOf(input);
  const std::string file = Encode(entries);
  const ConfigContents contents = Decode(file);
  Require(contents.valid);
  Require(contents.entries.size() == entries.size());
  for (size_t i = 0; i < entries.size(); ++i) {
    Require(contents.entries[i].first == entries[i].first && contents.entries[i].second == entries[i].second);
  }

  // What lies behind the checksum's NUL does not count; every byte before it does.
  const size_t at = size > 0 ? data[0] * file.size() / 256 : 0;
  Require(!Decode(std::string_view(file).substr(0, at)).valid);
  std::string damaged = file;
  damaged[at] = static_cast<char>(damaged[at] ^ (size > 1 && data[1] != 0 ? data[1] : 1));
  const ConfigContents read = Decode(damaged);
  if (read.valid) {
    // A changed digit of the checksum cannot go unnoticed, nor can a single changed byte of the sum.
    std::abort();
  }
  return 0;
}
