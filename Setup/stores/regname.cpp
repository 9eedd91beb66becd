#include "stores/regname.h"

#include "stores/iniline.h"

namespace {

int HexDigit(char ch) {
  if (ch >= '0' && ch <= '9') return ch - '0';
  if (ch >= 'A' && ch <= 'F') return ch - 'A' + 10;
  return -1;
}

// The character that `code`, the text behind a "$", stands for, and how long the code is; false for none.
bool DecodeMark(std::string_view code, char& ch, size_t& size) {
  constexpr std::string_view kMarks = "/_$";
  constexpr std::string_view kMeant = "\\ $";
  const size_t mark = code.empty() ? std::string_view::npos : kMarks.find(code.front());
  if (mark != std::string_view::npos) {
    ch = kMeant[mark];
    size = 1;
    return true;
  }
  size = 2;
  if (code.size() < 2 || HexDigit(code[0]) < 0 || HexDigit(code[1]) < 0) return false;
  ch = static_cast<char>(HexDigit(code[0]) * 16 + HexDigit(code[1]));
  return true;
}

}  // namespace

std::string DecodeSubKeyName(std::string_view name) {
  if (!name.starts_with('$')) return std::string(name);
  std::string decoded;
  for (size_t i = 1; i < name.size(); ++i) {
    char ch = name[i];
    size_t size = 0;
    if (ch == '$' && !DecodeMark(name.substr(i + 1), ch, size)) {
      ch = '$';
      size = 0;
    }
    decoded += ch;
    i += size;
  }
  return decoded;
}

std::string_view ValueDataText(std::string_view data) {
  return UpToLineEnd(data.substr(0, data.find('\0'))).substr(0, kIniMaxLine);
}
