#pragma once
// The bytes of a configuration file: header, entries, end marker and checksum, all of it scrambled. Pure.
//
//   "Quorvale Configuration File 1.0" 00 { ["%"] name 00 value 00 } 00 checksum 00
//
// The checksum is the decimal text of the 32-bit sum of all bytes up to and including the end marker.
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class ConfigEncoder {
 public:
  ConfigEncoder();
  void Reserve(size_t entryBytes);
  // A frozen entry comes back frozen.
  void Add(std::string_view name, std::string_view value, bool frozen);
  // The scrambled file; the encoder is spent.
  std::string Finish();

 private:
  std::string mText;
};

struct ConfigContents {
  std::string text;  // unscrambled; the entries point into it
  std::vector<std::pair<std::string_view, std::string_view>> entries;  // names with their "%", in file order
  bool valid = false;  // header and checksum are right; the entries before a fault are listed all the same
};

void DecodeConfig(std::span<const std::byte> file, ConfigContents& contents);
