#include "script/leftovers.h"

#include <algorithm>

#include "base/ascii.h"
#include "platform/pathparts.h"

namespace {

constexpr char kKeep = 'K';
constexpr char kFolder = 'D';
constexpr char kFile = 'F';
constexpr char kForget = 'X';

std::string Note(char kind, std::string_view text) {
  std::string line(1, kind);
  line += ' ';
  line += text;
  line += '\n';
  return line;
}

bool IsHexDigit(char ch) { return IsAsciiDigit(ch) || (AsciiLower(ch) >= 'a' && AsciiLower(ch) <= 'f'); }

}  // namespace

std::string FolderNote(std::string_view dir, const std::vector<std::string>& keep) {
  std::string note;
  for (const std::string& name : keep) note += Note(kKeep, name);
  note += Note(kFolder, dir);
  return note;
}

std::string FileNote(std::string_view path) { return Note(kFile, path); }

std::string ForgetNote(std::string_view path) { return Note(kForget, path); }

LeftoverNotes ParseLeftoverNotes(std::string_view text) {
  LeftoverNotes notes;
  std::vector<std::string> keep;
  for (size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    if (line.size() < 3 || line[1] != ' ') continue;
    const std::string item(line.substr(2));
    if (line[0] == kKeep) {
      keep.push_back(item);
    } else if (line[0] == kFolder) {
      if (PathText::IsFull(item)) notes.folders.push_back({item, std::move(keep)});
      keep.clear();
    } else if (line[0] == kFile) {
      if (PathText::IsFull(item)) notes.files.push_back(item);
    } else if (line[0] == kForget) {
      notes.files.erase(std::remove(notes.files.begin(), notes.files.end(), item), notes.files.end());
    }
  }
  return notes;
}

bool IsInstallTempName(std::string_view name) {
  constexpr std::string_view kStart = "ver";
  constexpr std::string_view kEnd = ".tmp";
  if (name.size() <= kStart.size() + kEnd.size() || !EqualNoCase(name.substr(0, kStart.size()), kStart))
    return false;
  const std::string_view digits = name.substr(kStart.size(), name.size() - kStart.size() - kEnd.size());
  return digits.size() <= 4 && std::all_of(digits.begin(), digits.end(), IsHexDigit) &&
         EqualNoCase(name.substr(name.size() - kEnd.size()), kEnd);
}

bool IsOwnTempPath(std::string_view path, LeadByteTest lead) {
  const size_t slash = PathText::FindLastBackslash(path, lead);
  return slash != PathText::kNone && slash + 1 < path.size() && path[slash + 1] == '~';
}
