#pragma once
// The record of an open INI store, and what its kinds do at opening and closing. For the
// store's own modules only.
#include <string>
#include <vector>

#include "base/handle.h"
#include "base/mem.h"
#include "platform/fio.h"
#include "stores/ini.h"
#include "stores/initext.h"
#include "stores/regkey.h"

struct IniStore {
  explicit IniStore(IniType kind, bool isReadOnly);
  // Reports `expression` when the name of a section, key or value is not valid; each name only once, so that
  // a store with many odd names does not complain at every line.
  void CheckName(const char* name, const char* expression);

  IniType type;
  bool readOnly;
  FioFile file;               // iniFILE
  RegKey key;                 // iniREG
  MemHandle* hand = nullptr;  // iniMEM; not owned
  uint32_t listNumber = 0;    // iniSTRLIST
  IniText text;
  std::vector<std::string> complaints;  // what was reported: expression and name
};

// Opening: the source is opened as `ini` asks and its lines are loaded; false when one of both fails.
[[nodiscard]] bool OpenIniFile(IniStore& ini, const char* path);
[[nodiscard]] bool OpenIniKey(IniStore& ini, HKEY root, const char* subKey);
[[nodiscard]] bool OpenIniMemory(IniStore& ini);
void LoadIniStringList(IniStore& ini);

// Closing of a writable store: the text goes back to its source; false when not all of it could be written.
bool WriteIniFile(IniStore& ini);
bool WriteIniKey(IniStore& ini);
bool WriteIniMemory(IniStore& ini);
