// sources: stores/regname.cpp stores/iniline.cpp
// Names without "$" stand for themselves; any name that is encoded decodes to what was meant; nothing grows.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "stores/regname.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// The form that decodes to `name`, with every byte written as a mark where `dense` says so.
std::string Encoded(std::string_view name, bool dense) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string text = "$";
  for (const char ch : name) {
    const auto byte = static_cast<unsigned char>(ch);
    if (ch == '\\' && !dense) {
      text += "$/";
    } else if (ch == ' ' && !dense) {
      text += "$_";
    } else if (ch == '$' && !dense) {
      text += "$$";
    } else if (dense || byte < 0x20) {
      text += '$';
      text += kHex[byte >> 4];
      text += kHex[byte & 0x0F];
    } else {
      text += ch;
    }
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view name(reinterpret_cast<const char*>(data), size);
  const std::string decoded = DecodeSubKeyName(name);
  Require(decoded.size() <= name.size());
  if (!name.starts_with('$')) Require(decoded == name);
  if (name.starts_with('$') && name.find('$', 1) == std::string_view::npos)
    Require(decoded == name.substr(1));
  Require(DecodeSubKeyName(Encoded(name, false)) == name);
  Require(DecodeSubKeyName(Encoded(name, true)) == name);

  const std::string_view value = ValueDataText(name);
  Require(name.starts_with(value) && value.size() <= 511);
  Require(value.find_first_of(std::string_view("\0\r\n", 3)) == std::string_view::npos);
  return 0;
}
