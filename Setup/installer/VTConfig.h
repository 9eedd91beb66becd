#pragma once
// Built-in variables, the settings merged into them, and the installation's configuration file.
#include <cstdint>

#include "base/str.h"
#include "messages/varlist.h"

// The variables that go into the configuration file, apart from the application variables.
VarList& ConfigList();

// CurrDir, InstallFromDir and SetupHelpDir from the full path of the program file.
void SetProgramFolders(const Str& modulePath);
// The variables whose texts are resource strings, raw; those already set keep their value.
// Needs the language library.
void SetResourceVariables();
// ProgName, CopyrightYear, BuildNum and Version.
void SetProductVariables(const Str& modulePath);
// SetupHelpDir, HelpFile, WinDir and, where the conversion manager runs alone, its
// name for the whole program.
void SetNameVariables();

// Merges the "Config" section of the built-in settings / of the stores named by MachRegKey and UserRegKey.
void MergeBuiltInSettings();
void MergeStoredSettings();

// Searches the configuration file of an existing installation in ProgDir, CurrDir and InstallFromDir and
// merges the first that matches MajVersion into ConfigList(). False when the run cannot go on: the file's
// name cannot be formed, or (workstation mode) none was found.
[[nodiscard]] bool FindConfiguration();
// Reads "<ProgDir>\<ShortAppKey>6.QLC" into the application variables: kLoadSectionOK, kCfgOpenFailed when it
// cannot be read, 0x80000000 when it belongs to another version.
uint32_t ReadConfigurationAtProgDir();
// Path of the configuration file to be written, expanded.
Str ConfigurationPath();
// Puts what identifies this installation into ConfigList().
void CollectConfiguration();
// Replaces the file at `path`. A new file becomes read-only and hidden, an old one keeps its attributes.
[[nodiscard]] bool WriteConfiguration(const char* path, const VarList& list);
