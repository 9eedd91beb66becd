#pragma once
// The lines of INI text: how bytes are divided into them and what each one says. Pure.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/leadbyte.h"

constexpr size_t kIniMaxLine = 511;  // characters of a line, a key or a value as read; terminator not counted

// What depends on the system's code page.
struct IniRules {
  // Makes letters lower-case in place; the size stays.
  void (*lower)(char* text, size_t size);
  LeadByteTest isLead;  // never null
};
// Letters A to Z, single bytes only.
IniRules AsciiIniRules();

// Section and key names are the same when they are equal in this form.
std::string FoldName(std::string_view name, const IniRules& rules);
bool SameName(std::string_view a, std::string_view b, const IniRules& rules);
bool NameBeginsWith(std::string_view name, std::string_view prefix, const IniRules& rules);

// The text up to its first line end.
std::string_view UpToLineEnd(std::string_view text);
// The first non-blank character is ";".
bool IsIniComment(std::string_view line);
// "[name]", blanks around the brackets and around the name left out. False for any other line.
[[nodiscard]] bool ParseIniHeader(std::string_view line, const IniRules& rules, std::string_view& name);
// key=value, not a comment; blanks around both left out. Neither is cut.
[[nodiscard]] bool SplitIniLine(std::string_view line, std::string_view& key, std::string_view& value);
// The same; a key of more than kIniMaxLine characters makes the line none.
[[nodiscard]] bool ParseIniKeyLine(std::string_view line, std::string_view& key, std::string_view& value);

// A decimal number as far as it goes: blanks and a sign may stand before it, anything
// behind it; limited to 32 bits.
int32_t ParseIniNumber(std::string_view text);

// One line of a file: at most kIniMaxLine bytes; longer ones come in several pieces.
struct IniPiece {
  std::string_view text;
  bool continues = false;  // goes on with the line of the piece before
};

// Divides the bytes of a file. CR, LF, CR LF and LF CR each end a line; a NUL hides
// what follows it in its line.
class IniFilePieces {
 public:
  explicit IniFilePieces(std::string_view bytes) : mRest(bytes) {}
  bool Next(IniPiece& piece);

 private:
  std::string_view mRest;
  bool mInside = false;  // the rest goes on with the line of the last piece
};

// Divides a text in memory. LF, CR and CR LF each end a line, a NUL the whole text.
class IniMemoryLines {
 public:
  enum Result { kLine, kEnd, kTooLong };
  explicit IniMemoryLines(std::string_view text) : mRest(text.substr(0, text.find('\0'))) {}
  Result Next(std::string_view& line);

 private:
  std::string_view mRest;
};
