#include "stores/configcodec.h"

#include <cstdint>

#include "base/ascii.h"

namespace {

constexpr std::string_view kHeader = "Quorvale Configuration File 1.0";
constexpr unsigned kOffset = 63;  // added to each byte

uint8_t SwapHalves(unsigned byte) { return static_cast<uint8_t>((byte & 0x0F) << 4 | (byte & 0xF0) >> 4); }

char Scramble(char ch) {
  return static_cast<char>(SwapHalves((static_cast<unsigned char>(ch) + kOffset) & 0xFF));
}

char Unscramble(std::byte byte) {
  return static_cast<char>((SwapHalves(std::to_integer<unsigned>(byte)) - kOffset) & 0xFF);
}

uint32_t ByteTotal(std::string_view text) {
  uint32_t total = 0;
  for (const char ch : text) total += static_cast<unsigned char>(ch);
  return total;
}

// Takes the NUL-terminated text at `pos` and steps behind it; false when the text runs past the end.
bool TakeText(std::string_view all, size_t& pos, std::string_view& text) {
  const size_t end = all.find('\0', pos);
  if (end == std::string_view::npos) return false;
  text = all.substr(pos, end - pos);
  pos = end + 1;
  return true;
}

bool ParseTotal(std::string_view digits, uint32_t& total) {
  uint64_t number = 0;
  for (const char ch : digits) {
    if (!IsAsciiDigit(ch)) return false;
    number = number * 10 + static_cast<unsigned>(ch - '0');
    if (number > UINT32_MAX) return false;
  }
  total = static_cast<uint32_t>(number);
  return !digits.empty();
}

}  // namespace

ConfigEncoder::ConfigEncoder() : mText(kHeader) { mText += '\0'; }

void ConfigEncoder::Reserve(size_t entryBytes) { mText.reserve(mText.size() + entryBytes + 20); }

void ConfigEncoder::Add(std::string_view name, std::string_view value, bool frozen) {
  if (frozen) mText += '%';
  mText += name;
  mText += '\0';
  mText += value;
  mText += '\0';
}

std::string ConfigEncoder::Finish() {
  mText += '\0';
  mText += std::to_string(ByteTotal(mText));
  mText += '\0';
  for (char& ch : mText) ch = Scramble(ch);
  return std::move(mText);
}

void DecodeConfig(std::span<const std::byte> file, ConfigContents& contents) {
  contents.entries.clear();
  contents.valid = false;
  contents.text.clear();
  contents.text.reserve(file.size());
  for (const std::byte byte : file) contents.text += Unscramble(byte);

  const std::string_view all(contents.text);
  size_t pos = 0;
  std::string_view header;
  if (!TakeText(all, pos, header) || header != kHeader) return;
  while (pos < all.size() && all[pos] != '\0') {
    std::string_view name;
    std::string_view value;
    if (!TakeText(all, pos, name) || !TakeText(all, pos, value)) return;
    contents.entries.emplace_back(name, value);
  }
  if (pos >= all.size()) return;
  ++pos;  // the end marker
  const uint32_t total = ByteTotal(all.substr(0, pos));
  std::string_view digits;
  uint32_t stored = 0;
  contents.valid = TakeText(all, pos, digits) && ParseTotal(digits, stored) && stored == total;
}
