#include "stores/initext.h"

#include <algorithm>

#include "base/ascii.h"

namespace {

std::string_view CutValue(std::string_view text) { return text.substr(0, kIniMaxLine); }

std::string KeyLine(std::string_view key, std::string_view value) {
  std::string line(key);
  line += '=';
  line += value;
  return line;
}

std::string HeaderLine(std::string_view name) {
  std::string line("[");
  line += UpToLineEnd(name);
  line += ']';
  return line;
}

void WriteLines(const std::deque<IniSection>& sections, std::string& out) {
  for (const IniSection& section : sections) {
    if (section.deleted) continue;
    for (int32_t i = 0; i < section.LineCount(); ++i) {
      out += section.Line(i);
      out += "\r\n";
    }
  }
}

}  // namespace

void IniText::AddLine(std::string_view line, bool continues) {
  if (!continues) mInLine = false;
  if (line.empty()) return;
  // The rest of a line whose beginning was dropped stands for itself, not for a part of the line before it.
  continues = continues && mInLine;
  mInLine = true;
  if (line.front() == '[' && !continues) EndLines();
  if (!mOpenBlock) mSections.emplace_back();
  mOpenBlock = true;
  mSections.back().Append(line, continues);
}

void IniText::EndLines() {
  if (mOpenBlock) mSections.back().Append({}, false);
  mOpenBlock = false;
  mNamesValid = false;
}

void IniText::LoadFile(std::string_view bytes) {
  IniFilePieces pieces(bytes);
  IniPiece piece;
  bool first = true;
  while (pieces.Next(piece)) {
    if (!(first && piece.text == kIniFileHeader)) AddLine(piece.text, piece.continues);
    first = false;
  }
  EndLines();
}

bool IniText::LoadMemory(std::string_view bytes) {
  IniMemoryLines lines(bytes);
  std::string_view line;
  IniMemoryLines::Result result;
  while ((result = lines.Next(line)) == IniMemoryLines::kLine) AddLine(line);
  EndLines();
  return result == IniMemoryLines::kEnd;
}

std::string IniText::ToFile() const {
  std::string out(kIniFileHeader);
  out += "\r\n\r\n";
  WriteLines(mSections, out);
  return out;
}

std::string IniText::ToMemory() const {
  std::string out;
  WriteLines(mSections, out);
  return out;
}

void IniText::BuildNames() {
  mNames.clear();
  for (int32_t i = 0; i < SectionCount(); ++i) {
    std::string_view name;
    if (Section(i).Name(mRules, name)) mNames.push_back({FoldName(name, mRules), i});
  }
  std::sort(mNames.begin(), mNames.end());
  mNamesValid = true;
}

// First section of that name that is not deleted, or -1.
int32_t IniText::LookUp(std::string_view name) {
  if (!mNamesValid) BuildNames();
  const NameRef wanted{FoldName(name, mRules), 0};
  for (auto ref = std::lower_bound(mNames.begin(), mNames.end(), wanted);
       ref != mNames.end() && ref->name == wanted.name; ++ref) {
    if (!Section(ref->section).deleted) return ref->section;
  }
  return -1;
}

void IniText::SetCurrent(int32_t section) {
  mCurrent = section;
  mLine = 0;
  mNextLine = 1;
}

bool IniText::FindSection(std::string_view name) {
  SetCurrent(LookUp(name));
  return HasCurrent();
}

void IniText::CreateSection(std::string_view name) {
  IniSection& section = mSections.emplace_back(HeaderLine(name) + "\n\n");
  section.changed = true;
  SetCurrent(SectionCount() - 1);
  std::string_view held;
  if (mNamesValid && section.Name(mRules, held)) {
    const NameRef ref{FoldName(held, mRules), mCurrent};
    mNames.insert(std::upper_bound(mNames.begin(), mNames.end(), ref), ref);
  }
}

bool IniText::NextSection(bool first, std::string_view prefix, std::string_view& name) {
  for (int32_t i = first ? 0 : mCurrent + 1; i < SectionCount(); ++i) {
    if (Section(i).deleted || !Section(i).Name(mRules, name) || !NameBeginsWith(name, prefix, mRules))
      continue;
    SetCurrent(i);
    return true;
  }
  SetCurrent(-1);
  return false;
}

void IniText::DeleteSection(std::string_view name) {
  for (int32_t i = LookUp(name); i >= 0; i = LookUp(name)) {
    mSections[static_cast<size_t>(i)].deleted = true;
    if (i == mCurrent) SetCurrent(-1);
  }
}

void IniText::RenameSection(std::string_view newName) {
  if (!HasCurrent()) return;
  Here().Replace(0, HeaderLine(newName), mRules);
  mNamesValid = false;
}

void IniText::SetSectionText(std::string text) {
  if (!HasCurrent()) return;
  Here() = IniSection(std::move(text));
  Here().changed = true;
  SetCurrent(mCurrent);
  mNamesValid = false;
}

// Key and value of a line, each cut to what a reader holds; a line without "=" is all key.
void IniText::ReadLine(int32_t line, std::string& key, std::string& value) {
  std::string joined;
  const std::string_view text = Here().WholeLine(line, joined);
  std::string_view keyPart = TrimBlanks(text);
  std::string_view valuePart;
  if (!SplitIniLine(text, keyPart, valuePart)) valuePart = {};
  key = CutValue(keyPart);
  value = CutValue(valuePart);
  mLine = line;
  mNextLine = line + 1;
}

bool IniText::NextKey(bool first, std::string_view prefix, std::string& key, std::string& value) {
  if (!HasCurrent()) return false;
  std::string joined;
  std::string_view name;
  std::string_view content;
  for (int32_t i = first ? 1 : mNextLine; i < Here().LineCount(); ++i) {
    if (Here().Continues(i) || !ParseIniKeyLine(Here().WholeLine(i, joined), name, content) ||
        !NameBeginsWith(name, prefix, mRules))
      continue;
    ReadLine(i, key, value);
    return true;
  }
  mNextLine = Here().LineCount();
  return false;
}

bool IniText::NextLine(bool first, std::string& key, std::string& value) {
  if (!HasCurrent()) return false;
  for (int32_t i = first ? 1 : mNextLine; i < Here().LineCount(); ++i) {
    if (!Here().IsScriptLine(i)) continue;
    ReadLine(i, key, value);
    return true;
  }
  mNextLine = Here().LineCount();
  return false;
}

bool IniText::SeekLine(int32_t count) {
  return HasCurrent() && Here().FindScriptLine(std::max(count, 0), mNextLine);
}

// Makes the first line of that key current; without one the cursor stands at the end.
bool IniText::FindKey(std::string_view key) {
  if (!HasCurrent()) return false;
  const int32_t line = Here().FindKey(key, mRules);
  if (line < 0) {
    mNextLine = Here().LineCount();
    return false;
  }
  mLine = line;
  mNextLine = line + 1;
  return true;
}

bool IniText::ReadKey(std::string_view key, std::string& value) {
  if (!FindKey(key)) return false;
  std::string found;
  ReadLine(mLine, found, value);
  return true;
}

bool IniText::DeleteKey(std::string_view key) {
  if (!FindKey(key)) return false;
  Here().Remove(mLine);
  mNextLine = mLine;
  return true;
}

bool IniText::WriteKey(std::string_view key, std::string_view value) {
  if (!HasCurrent()) return false;
  if (FindKey(key)) {
    Here().Replace(mLine, KeyLine(key, value), mRules);
  } else {
    mLine = Here().Insert(KeyLine(key, value), mRules);
  }
  mNextLine = mLine + 1;
  return true;
}

bool IniText::AddKey(std::string_view key, std::string_view value) {
  if (!HasCurrent()) return false;
  Here().Insert(KeyLine(key, value), mRules);
  return true;
}
