#pragma once
// Variable lists on disk: the configuration file, and INI sections copied into the application list.
#include <cstdint>

#include "messages/varlist.h"
#include "stores/ini.h"

constexpr uint32_t kCfgOK = 0;
constexpr uint32_t kCfgOpenFailed = 0x80040202;
constexpr uint32_t kCfgTransferFailed = 0x80040209;
constexpr uint32_t kCfgBadFile = 0x8004020d;
constexpr uint32_t kCfgNoMemory = 0x80000000;
constexpr uint32_t kLoadSectionOK = 0x40200;

// Copies every non-empty key of a section into the application list.
uint32_t LoadSection(IniStore* store, const char* section);
// Entries read before a fault stay in the list; the result code is the only verdict.
[[nodiscard]] uint32_t ReadConfigFile(VarList& list, const char* path);
[[nodiscard]] uint32_t WriteConfigFile(const VarList& list, const char* path);
