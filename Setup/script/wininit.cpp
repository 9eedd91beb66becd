#include "script/wininit.h"

#include "base/ascii.h"

namespace {

constexpr std::string_view kHeader = "[Rename]";
constexpr std::string_view kLineEnd = "\r\n";

// Position behind the header's line, npos when there is no header.
size_t FindBehindHeader(std::string_view text) {
  for (size_t pos = 0; pos < text.size();) {
    size_t end = text.find('\n', pos);
    if (end == std::string_view::npos) end = text.size();
    const std::string_view line = text.substr(pos, end - pos);
    if (EqualNoCase(line.substr(0, line.find_last_not_of(" \t\r") + 1), kHeader))
      return end < text.size() ? end + 1 : end;
    pos = end + 1;
  }
  return std::string_view::npos;
}

}  // namespace

std::string AddWinInitRename(std::string_view text, std::string_view dest, std::string_view src) {
  std::string result(text);
  size_t place = FindBehindHeader(text);
  const bool missing = place == std::string_view::npos;
  if (missing) place = result.size();
  std::string lines;
  // The line before must be ended, be it the header's own or the file's last.
  if (place > 0 && result[place - 1] != '\n') lines += kLineEnd;
  if (missing) {
    lines += kHeader;
    lines += kLineEnd;
  }
  lines += dest.empty() ? std::string_view("NUL") : dest;
  lines += '=';
  lines += src;
  lines += kLineEnd;
  result.insert(place, lines);
  return result;
}

bool IsShortName(std::string_view fileName) {
  const size_t dot = fileName.find('.');
  const std::string_view base = fileName.substr(0, dot);
  const std::string_view ext = dot == std::string_view::npos ? std::string_view() : fileName.substr(dot + 1);
  return !base.empty() && base.size() <= 8 && ext.size() <= 3 && ext.find('.') == std::string_view::npos &&
         fileName.find(' ') == std::string_view::npos;
}
