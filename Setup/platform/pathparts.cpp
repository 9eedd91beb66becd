#include "platform/pathparts.h"

#include "base/ascii.h"

namespace PathText {
namespace {

constexpr std::string_view kNetworkPrefix = "\\\\";
constexpr std::string_view kDots = "...";
constexpr std::string_view kDotsFolder = "...\\";
constexpr std::string_view kCutMark = " ...";

bool IsNetwork(std::string_view path) { return path.substr(0, 2) == kNetworkPrefix; }

// Bytes of the character at `pos`. A lead byte at the very end stands for itself.
size_t CharLength(std::string_view text, size_t pos, LeadByteTest lead) {
  return lead && lead(static_cast<unsigned char>(text[pos])) && pos + 1 < text.size() ? 2 : 1;
}

// Server and share, up to and not including the backslash behind the share; the whole
// path when there is none.
size_t NetworkVolumeLength(std::string_view path, LeadByteTest lead) {
  const size_t share = FindBackslash(path, kNetworkPrefix.size(), lead);
  if (share == kNone) return path.size();
  const size_t end = FindBackslash(path, share + 1, lead);
  return end == kNone ? path.size() : end;
}

size_t VolumeLength(std::string_view path, LeadByteTest lead) {
  if (IsNetwork(path)) return NetworkVolumeLength(path, lead);
  return path.size() >= 2 && path[1] == ':' ? 2 : 0;
}

// The longest start of `text` of at most `max` bytes that does not end inside a character.
size_t WholeCharacters(std::string_view text, size_t max, LeadByteTest lead) {
  size_t pos = 0;
  while (pos < text.size()) {
    const size_t length = CharLength(text, pos, lead);
    if (length > max - pos) break;
    pos += length;
  }
  return pos;
}

}  // namespace

size_t FindCharacter(std::string_view text, char wanted, size_t from, LeadByteTest lead) {
  for (size_t pos = from; pos < text.size(); pos += CharLength(text, pos, lead))
    if (text[pos] == wanted) return pos;
  return kNone;
}

size_t FindBackslash(std::string_view path, size_t from, LeadByteTest lead) {
  return FindCharacter(path, '\\', from, lead);
}

size_t FindLastBackslash(std::string_view path, LeadByteTest lead) {
  size_t last = kNone;
  for (size_t pos = FindBackslash(path, 0, lead); pos != kNone; pos = FindBackslash(path, pos + 1, lead))
    last = pos;
  return last;
}

bool EndsInBackslash(std::string_view path, LeadByteTest lead) {
  return !path.empty() && path.back() == '\\' && FindLastBackslash(path, lead) == path.size() - 1;
}

Parts Split(std::string_view path, LeadByteTest lead) {
  Parts parts;
  const size_t volume = VolumeLength(path, lead);
  parts.volume = path.substr(0, volume);
  const std::string_view rest = path.substr(volume);
  const size_t slash = FindLastBackslash(rest, lead);
  const size_t name = slash == kNone ? 0 : slash + 1;
  parts.dir = rest.substr(0, name);
  const std::string_view file = rest.substr(name);
  const size_t dot = file.rfind('.');
  parts.name = file.substr(0, dot);
  if (dot != kNone) parts.ext = file.substr(dot);
  return parts;
}

std::string Build(std::string_view volume, std::string_view dir, std::string_view file, std::string_view ext,
                  LeadByteTest lead) {
  std::string path(volume);
  if (volume.size() == 1) path += ':';
  if (!dir.empty()) {
    if (EndsInBackslash(path, lead) && dir.front() == '\\') path.pop_back();
    path += dir;
    if (!EndsInBackslash(dir, lead)) path += '\\';
  }
  path += file;
  if (!ext.empty()) {
    if (ext.front() != '.') path += '.';
    path += ext;
  }
  return path;
}

std::string Pick(std::string_view path, uint32_t flags, LeadByteTest lead) {
  const Parts parts = Split(path, lead);
  std::string out;
  if (flags & kVolume) {
    out = parts.volume;
    if (!EndsInBackslash(out, lead)) out += '\\';
  }
  if (flags & kDir) {
    std::string_view dir = parts.dir;
    if (!(flags & (kBaseName | kFileName)) && !dir.empty()) dir.remove_suffix(1);
    if (EndsInBackslash(out, lead) && !dir.empty() && dir.front() == '\\') dir.remove_prefix(1);
    out += dir;
  }
  if (flags & kBaseName) {
    out += parts.name;
  } else if (flags & kFileName) {
    out += parts.name;
    out += parts.ext;
  }
  return out;
}

void Append(std::string& path, std::string_view component, LeadByteTest lead) {
  if (component.empty()) return;
  const bool starts = component.front() == '\\';
  const bool ends = EndsInBackslash(path, lead);
  if (starts && ends) path.pop_back();
  if (!starts && !ends) path += '\\';
  path += component;
}

bool IsFull(std::string_view path) {
  if (IsNetwork(path)) return true;
  return path.size() >= 3 && IsAsciiLetter(path[0]) && path[1] == ':' && path[2] == '\\';
}

size_t FindExtension(std::string_view path, LeadByteTest lead) {
  const size_t dot = path.rfind('.');
  if (dot == kNone || dot == path.size() - 1) return kNone;
  const size_t slash = FindLastBackslash(path, lead);
  return slash == kNone || dot > slash ? dot : kNone;
}

void SetExtension(std::string& path, std::string_view ext, LeadByteTest lead) {
  const size_t dot = FindExtension(path, lead);
  if (dot != kNone) path.resize(dot);
  if (ext.empty()) return;
  if (!path.empty() && path.back() == '.') path.pop_back();
  path += ext;
}

bool CollapseFolder(std::string& path, LeadByteTest lead) {
  size_t from = 0;
  if (IsNetwork(path)) {
    from = FindBackslash(path, kNetworkPrefix.size(), lead);
    if (from == kNone) return false;
  }
  const size_t first = FindBackslash(path, from, lead);
  if (first == kNone) return false;
  if (path.compare(first + 1, kDotsFolder.size(), kDotsFolder) == 0)
    path.erase(first + 1, kDotsFolder.size());
  const size_t next = FindBackslash(path, first + 1, lead);
  if (next == kNone) return false;
  path.replace(first + 1, next - first - 1, kDots);
  return true;
}

std::string Shorten(std::string_view path, std::string_view fileName, size_t max, LeadByteTest lead) {
  std::string out(path);
  while (out.size() > max && CollapseFolder(out, lead)) {
  }
  if (out.size() <= max) return out;
  out = fileName;
  if (out.size() <= max) return out;
  const size_t keep = max > kCutMark.size() ? max - kCutMark.size() : 0;
  out.resize(WholeCharacters(out, keep, lead));
  out += kCutMark;
  return out;
}

}  // namespace PathText
