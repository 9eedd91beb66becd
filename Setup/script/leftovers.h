#pragma once
// Text of the list of temporary files that a run notes before it makes them (pure), so that the run
// after one that was killed can delete them. A line per note, each ended by a line feed; an unfinished
// last line does not count.
#include <string>
#include <string_view>
#include <vector>

#include "base/leadbyte.h"

struct LeftoverNotes {
  // A folder in which the system's install function makes temporary files of its own naming.
  struct Folder {
    std::string dir;
    std::vector<std::string> keep;  // names of that form that lay there before
  };
  std::vector<Folder> folders;
  std::vector<std::string> files;  // full paths
};

std::string FolderNote(std::string_view dir, const std::vector<std::string>& keep);
std::string FileNote(std::string_view path);
// Takes an earlier FileNote back.
std::string ForgetNote(std::string_view path);
// Notes of relative paths and unknown lines are skipped.
LeftoverNotes ParseLeftoverNotes(std::string_view text);
// "ver", one to four hexadecimal digits, ".tmp", in any case: the names that the install function gives.
bool IsInstallTempName(std::string_view name);
// Whether a file note may be acted on: only names that begin with "~", as the ones made here do.
bool IsOwnTempPath(std::string_view path, LeadByteTest lead);
