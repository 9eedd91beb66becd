#pragma once
// What the process's exit code says about where a run stopped. (9 is "No" in an assertion box.)

enum ExitCode : int {
  kExitOK = 0,
  kExitNoScript = 1,    // setup.inf could not be opened, or its startup section stopped
  kExitNoConfig = 2,    // the configuration-file step failed
  kExitNoLanguage = 3,  // no language library and no usable built-in language
  kExitBadCommandLine = 4,
  kExitProductRunning = 5,     // a running copy of the product would not quit
  kExitOfficeRunning = 6,      // Word or PowerPoint is open and the user quit (silent: at once)
  kExitNewerVersion = 7,       // a newer major version is installed
  kExitCannotStart = 8,        // Windows too old, first pass failed, or memory exhausted
  kExitAbandoned = 10,         // an earlier version stayed, or a dialog was left by "Quit"
  kExitConfigNotWritten = 11,  // the configuration file could not be written
  kExitCopyFailed = 12,        // copying or deleting the files failed or was cancelled
  kExitNoSpace = 13,           // the question about missing disk space was cancelled
  kExitNoRights = 14,          // no right to write under the maker's machine key
  kExitNoLog = 15,             // the log could not be created and the user chose to stop
};
