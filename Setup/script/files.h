#pragma once
// The file list gathered from the script, the space check, and the loops that copy or delete it.
#include <cstdint>
#include <vector>

#include "base/str.h"

// One file of the list; texts in the ANSI code page, terminated.
struct FileRecord {
  char destName[256];
  char destDir[260];  // without trailing backslash, except a drive's root; empty for none
  char srcPath[260];
  int32_t disk;
  uint32_t size;   // bytes, as the script says
  int32_t hidden;  // 1: gets the hidden attribute
};

// Empties the list and its totals, and deletes what a killed run left; false when memory is short.
[[nodiscard]] bool PrepareFileList();
// False when the same destination is listed already, or when a path is too long for a record (logged).
bool AddFile(const char* destName, const char* destDir, const char* srcPath, int32_t disk, uint32_t size,
             bool hidden);
int32_t GetNumFiles();
FileRecord GetFileRec(int32_t recNum);
// Index of the first record of that destination name (any case), or -1.
int32_t FindFile(const char* fileName);
// Highest disk number listed.
int32_t NDisks();
// Sum of all sizes in bytes.
uint64_t TotalFileSize();
// False when the user cancelled (the abort flag is set).
[[nodiscard]] bool CheckSpace();
[[nodiscard]] bool CopyAll();
// Deletes the listed files. `held`, the path of one that this program itself still has
// open, is left to the caller.
bool DeleteAll(const Str& held = Str());
// `waiting` receives the path of the copy that waits for the restart, when there is one.
[[nodiscard]] bool CopyOneFile(const char* infile, const char* outfile, Str* waiting = nullptr);
// Version-checked copy with questions, restart arrangement and messages; the copy status (0 = done).
uint32_t CopyFileByName(const char* infile, const char* outfile, Str* waiting = nullptr);
[[nodiscard]] bool ReplaceFileOnReboot(const char* src, const char* dest);
// Numbers `path` until it is free; true when the first path existed.
bool GetUniqueName(Str& path);
// Asks for a disk; false when cancelled.
[[nodiscard]] bool PromptForDisk(int32_t disk);
