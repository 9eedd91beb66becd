#pragma once
// Start-up routines that publish Windows folders as variables and read and write the machine store.

// Sets WinDir, SystemDir, TempDir and UserAppDataDir.
void SetFolderVariables();
// Machine store (MachRegKey): "Windows"/Help into SetupHelpDir, "Directories"/ProgDir into
// ini_ProgDir and ProgDir.
void ReadMachineStore();
// Writes ProgDir and InstallFromDir into the machine store's "Directories".
void WriteMachineStore();
