#pragma once
// Self-deleting removal: a batch file that deletes the running program as soon as it has ended, then itself.

// Writes "QLDELSU.BAT" into WinDir and starts it hidden at idle priority; the caller ends the program at
// once. When the batch cannot be written nothing is started and the program stays.
void DeleteProgramOnExit();
