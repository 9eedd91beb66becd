#pragma once
// The rules for Windows path texts, as pure functions on 8-bit text. The backslash is the only separator; a
// forward slash is an ordinary character. Every function takes the lead-byte test of the text's code page,
// because the second byte of a double-byte character may have the backslash's code.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/leadbyte.h"

namespace PathText {

constexpr size_t kNone = std::string_view::npos;

// The four parts of a path; written one after the other they are the path again.
struct Parts {
  std::string_view volume;  // "C:", or "\\server\share"; no trailing backslash
  std::string_view dir;     // up to and including the last backslash
  std::string_view name;    // without extension
  std::string_view ext;     // with its "."
};

enum ComponentFlags : uint32_t { kVolume = 1, kDir = 2, kBaseName = 4, kFileName = 8 };

// Position of the first such single-byte character at or after `from`; kNone when there is none.
size_t FindCharacter(std::string_view text, char wanted, size_t from, LeadByteTest lead);
// Position of the first backslash at or after `from`, and of the last one; kNone when there is none.
size_t FindBackslash(std::string_view path, size_t from, LeadByteTest lead);
size_t FindLastBackslash(std::string_view path, LeadByteTest lead);
bool EndsInBackslash(std::string_view path, LeadByteTest lead);

Parts Split(std::string_view path, LeadByteTest lead);
// Joins parts, supplying the ":" after a drive letter, the backslash after the folder and the "." before the
// extension where they are missing.
std::string Build(std::string_view volume, std::string_view dir, std::string_view file, std::string_view ext,
                  LeadByteTest lead);
// The components that `flags` names. With kVolume the result always begins with a volume or a backslash.
std::string Pick(std::string_view path, uint32_t flags, LeadByteTest lead);
// Appends `component` so that exactly one backslash stands between.
void Append(std::string& path, std::string_view component, LeadByteTest lead);

// A letter, a colon and a backslash, or two backslashes, at the start.
bool IsFull(std::string_view path);
// Position of the last component's "."; kNone when it has none or ends in it.
size_t FindExtension(std::string_view path, LeadByteTest lead);
// Replaces the extension by `ext` (with its "."); an empty one removes it.
void SetExtension(std::string& path, std::string_view ext, LeadByteTest lead);

// Replaces the first folder that is not yet "..." by "..."; false when nothing more can go.
bool CollapseFolder(std::string& path, LeadByteTest lead);
// Collapses folders of `path` until at most `max` bytes remain; falls back to `fileName`, at last cut and
// followed by " ...".
std::string Shorten(std::string_view path, std::string_view fileName, size_t max, LeadByteTest lead);

}  // namespace PathText
