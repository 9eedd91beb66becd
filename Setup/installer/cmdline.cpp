#include "installer/cmdline.h"

#include "base/ascii.h"
#include "base/runstate.h"

namespace {

enum class Takes : uint8_t { kNothing, kProgDir, kInstallFromDir };

struct SwitchRow {
  std::string_view name;  // in any case
  Takes takes;
  uint8_t setupFlags;
  bool lockProgDir;
  bool CommandLine::*mark;  // null: none
};

constexpr SwitchRow kSwitches[] = {
    {"D", Takes::kProgDir, 0, false, nullptr},
    {"DL", Takes::kProgDir, 0, true, nullptr},
    {"S", Takes::kInstallFromDir, 0, false, nullptr},
    {"W", Takes::kNothing, kWorkstation, false, nullptr},
    {"Q", Takes::kNothing, kQuiet, false, nullptr},
    {"R", Takes::kNothing, kRemove, true, nullptr},
    {"RS", Takes::kNothing, kRemove | kKeepSelf, true, nullptr},
    {"OLEMGR", Takes::kNothing, kOleMgrOnly, false, nullptr},
    {"I", Takes::kNothing, 0, false, &CommandLine::installNoDlg},
    {"C", Takes::kNothing, 0, false, &CommandLine::noROMacroErrs},
    {"ASSERT", Takes::kNothing, 0, false, &CommandLine::raiseAssertion},
};

const SwitchRow* FindSwitch(std::string_view argument) {
  if (argument.empty() || (argument.front() != '/' && argument.front() != '-')) return nullptr;
  argument.remove_prefix(1);
  for (const SwitchRow& row : kSwitches)
    if (EqualNoCase(argument, row.name)) return &row;
  return nullptr;
}

// Walks the text character by character, a double-byte character as a whole.
class Splitter {
 public:
  Splitter(std::string_view text, LeadByteTest isLeadByte) : mText(text), mIsLeadByte(isLeadByte) {}

  std::vector<std::string> Run() {
    std::vector<std::string> args;
    args.push_back(ProgramName());
    for (SkipBlanks(); !AtEnd(); SkipBlanks()) args.push_back(Argument());
    return args;
  }

 private:
  bool AtEnd() const { return mPos >= mText.size(); }
  void SkipBlanks() {
    while (!AtEnd() && IsBlank(mText[mPos])) ++mPos;
  }

  void TakeCharacter(std::string& out) {
    const bool isPair = mIsLeadByte != nullptr && mIsLeadByte(static_cast<unsigned char>(mText[mPos]));
    out += mText[mPos++];
    if (isPair && !AtEnd()) out += mText[mPos++];
  }

  std::string ProgramName() {
    std::string name;
    bool quoted = false;
    while (!AtEnd() && (quoted || !IsBlank(mText[mPos]))) {
      if (mText[mPos] == '"') {
        quoted = !quoted;
        ++mPos;
      } else {
        TakeCharacter(name);
      }
    }
    return name;
  }

  std::string Argument() {
    std::string argument;
    bool quoted = false;
    while (!AtEnd() && (quoted || !IsBlank(mText[mPos]))) {
      if (mText[mPos] == '\\') {
        TakeBackslashes(argument);
      } else if (mText[mPos] != '"') {
        TakeCharacter(argument);
      } else if (quoted && mText.substr(mPos + 1).starts_with('"')) {
        argument += '"';
        mPos += 2;
      } else {
        quoted = !quoted;
        ++mPos;
      }
    }
    return argument;
  }

  void TakeBackslashes(std::string& out) {
    size_t count = 0;
    while (!AtEnd() && mText[mPos] == '\\') {
      ++count;
      ++mPos;
    }
    if (AtEnd() || mText[mPos] != '"') {
      out.append(count, '\\');
      return;
    }
    out.append(count / 2, '\\');
    if (count % 2 != 0) {
      out += '"';
      ++mPos;
    }
  }

  std::string_view mText;
  LeadByteTest mIsLeadByte;
  size_t mPos = 0;
};

bool EndsWithCharacter(std::string_view text, char wanted, LeadByteTest isLeadByte) {
  if (text.empty() || text.back() != wanted) return false;
  if (isLeadByte == nullptr) return true;
  for (size_t i = 0; i < text.size(); ++i)
    if (isLeadByte(static_cast<unsigned char>(text[i])) && ++i == text.size() - 1) return false;
  return true;
}

// A folder as the user gave it. A closing quote left over by "C:\Folder\" (where the backslash guards the
// quote) is dropped, then one trailing backslash. A bare drive would mean that drive's current folder: it
// stays a root.
std::string FolderText(std::string folder, LeadByteTest isLeadByte) {
  if (EndsWithCharacter(folder, '"', isLeadByte)) folder.pop_back();
  if (EndsWithCharacter(folder, '\\', isLeadByte)) folder.pop_back();
  if (folder.size() == 2 && IsAsciiLetter(folder[0]) && folder[1] == ':') folder += '\\';
  return folder;
}

std::optional<std::string>* FolderOf(CommandLine& line, Takes takes) {
  if (takes == Takes::kProgDir) return &line.progDir;
  if (takes == Takes::kInstallFromDir) return &line.installFromDir;
  return nullptr;
}

// A silent install must name its destination; a silent workstation run does not exist.
bool SilentRulesHold(const CommandLine& line) {
  if ((line.setupFlags & kQuiet) == 0) return true;
  if ((line.setupFlags & kWorkstation) != 0) return false;
  return (line.setupFlags & kRemove) != 0 || line.progDir.has_value();
}

}  // namespace

std::vector<std::string> SplitCommandLine(std::string_view text, LeadByteTest isLeadByte) {
  return Splitter(text, isLeadByte).Run();
}

CommandLine ParseCommandLine(std::span<const std::string> args, LeadByteTest isLeadByte) {
  CommandLine line;
  for (size_t i = 0; i < args.size(); ++i) {
    const SwitchRow* row = FindSwitch(args[i]);
    if (row == nullptr) {
      line.valid = false;
      return line;
    }
    if (std::optional<std::string>* folder = FolderOf(line, row->takes)) {
      if (i + 1 == args.size() || folder->has_value()) {
        line.valid = false;
        return line;
      }
      *folder = FolderText(args[++i], isLeadByte);
    }
    line.setupFlags = static_cast<uint8_t>(line.setupFlags | row->setupFlags);
    line.lockProgDir = line.lockProgDir || row->lockProgDir;
    if (row->mark != nullptr) line.*row->mark = true;
  }
  line.valid = SilentRulesHold(line);
  return line;
}
