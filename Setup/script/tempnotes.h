#pragma once
// Keeps the list of temporary files in use ("QLSetup.lst" in TempDir) while files are installed.
// A run that ends normally removes the list; a run that was killed leaves it to the next one,
// which deletes what it names.
#include <vector>

#include "base/str.h"

// The list exists at most as long as the outermost scope: the whole run in the program. Nothing is written
// before the first note. Meanwhile the temporary files of the file-system layer are noted too.
class TempNotesScope {
 public:
  TempNotesScope();
  TempNotesScope(const TempNotesScope&) = delete;
  TempNotesScope& operator=(const TempNotesScope&) = delete;
  ~TempNotesScope();
};

// Notes, once per scope, that files are about to be installed into `dir`, where the install
// function makes temporary files of its own. Without a list (no TempDir, or it cannot be written)
// the run goes on without notes.
void NoteInstallFolder(const char* dir);
// Notes a temporary file of ours before it is made; its name begins with "~".
void NoteTempFile(const char* path);
// The file is no longer temporary.
void ForgetTempFile(const char* path);
// Deletes the temporary files that a failed installation left in a noted folder.
void SweepInstallFolder(const char* dir);
// Deletes what a killed run left. Does nothing while another run holds the list.
void DeleteLeftovers();
