#pragma once
// Shell links and the program groups that hold them.
#include <cstdint>
#include <vector>

#include "base/str.h"

// One shortcut. Texts of up to 259 characters: a longer description or longer arguments are
// cut, a longer path fails.
struct LinkRecord {
  Str name;  // file name without ".lnk"
  Str desc;
  Str pathname;  // target
  Str args;      // empty: none
  Str iconPath;  // empty: the target's own icon
  int32_t iconIndex = 0;
};

// Writes one link file; false when any step fails.
[[nodiscard]] bool CreateLinkFile(const LinkRecord& link, const char* linkPath);

// Gathers links for the group that is created next.
void AddGroupLink(const LinkRecord& link);
// Creates the group folder and the gathered links; the gathering starts anew in any case.
void CreateProgramGroup(const Str& group);
// Deletes every link file of the group.
void EmptyProgramGroup(const Str& group);
void RemoveProgramGroup(const Str& group);
// Writes a single link: `link.name` is a full path, or a name in the Programs folder.
void CreateSingleLink(const LinkRecord& link);

// The Programs folder that groups lie in.
[[nodiscard]] bool GetShortcutFolder(Str& folder);
