#include "base/utf8.h"

#include <cstddef>

namespace {

bool IsTwoByteLead(unsigned char byte) { return (byte & 0xE0) == 0xC0; }

}  // namespace

std::u16string DecodeUtf8(std::string_view source) {
  const std::string_view text = source.substr(0, source.find('\0'));
  std::u16string units;
  units.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const size_t length = lead < 0x80 ? 1 : IsTwoByteLead(lead) ? 2 : 3;
    if (length > text.size() - i) break;
    unsigned unit = length == 1 ? lead : lead & (length == 2 ? 0x1Fu : 0x0Fu);
    for (size_t k = 1; k < length; ++k) unit = unit << 6 | (static_cast<unsigned char>(text[i + k]) & 0x3Fu);
    units += static_cast<char16_t>(unit);
    i += length;
  }
  return units;
}
