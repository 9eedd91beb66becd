#pragma once
// The run from start-up to the exit code.
#include <windows.h>

namespace App {

// Comes up, makes all checks, runs the sequence, and does what is left to do after it. `commandLine` is the
// process's whole command line. The result is the process's exit code.
int Main(HINSTANCE instance, const char* commandLine);

// The end of every run, also of one that was broken off: releases what is held, moves
// the log to its final name.
void CleanUp();

}  // namespace App
