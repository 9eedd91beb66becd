#pragma once
// SetupScript: the setup script, walked section by section, line by line, each line handed
// to a handler by its kind.
#include <cstdint>
#include <string_view>

#include "base/str.h"
#include "messages/varlist.h"
#include "stores/ini.h"

enum InfResult : uint32_t {
  kInfOK = 0,
  kInfFail = 0x80000000,
  kInfNoSection = 0x80040701,
  kInfNoItem = 0x80040702,
  kInfHandlerFailed = 0x80040703,
};

// Handlers return non-zero for success. An absent one skips its lines with success.
struct InfHandlers {
  int32_t (*fileProc)(const char* key, int32_t disk, const char* source, const char* dest, int64_t& size,
                      void* context) = nullptr;
  int32_t (*taskProc)(const char* key, const char* args, void* context) = nullptr;
  int32_t (*registryProc)(const char* key, const char* value, void* context) = nullptr;
  int32_t (*variableProc)(const char* name, const char* value, void* context) = nullptr;
};

class SetupScript {
 public:
  explicit SetupScript(VarList& variables, void (*log)(const char* text))
      : mVariables(variables), mLog(log) {}
  [[nodiscard]] InfResult Open(const char* path, bool readOnly);
  void Close();
  bool IsOpen() const { return mIsOpen; }
  InfResult SectionExists(const char* section);
  InfResult DoItem(const char* section, const char* key, const InfHandlers& handlers, void* context);
  InfResult DoSection(const char* section, const InfHandlers& handlers, void* context);
  InfResult ProcessLine(const char* key, const char* value, const InfHandlers& handlers, void* context);
  // The line in work, for log lines: section "<name>", line "<key>". Empty outside a section.
  Str Place() const;

 private:
  InfResult WalkSection(const char* section, const InfHandlers& handlers, void* context);
  InfResult DoNested(Str name, const InfHandlers& handlers, void* context);
  InfResult DoFileLine(const char* key, const InfHandlers& handlers, void* context);
  InfResult NoSection(const char* section);
  void Log(const char* text) const;

  bool mIsOpen = false;
  bool mReadOnly = true;
  int32_t mDepth = 0;  // of nested sections
  Str mSection;        // the section and the line in work
  Str mKey;
  IniStorePtr mStore;
  VarList& mVariables;
  void (*mLog)(const char* text);
};

// The run's script, working on the application variable list and the log.
SetupScript& Script();

// The standard handlers; each returns 1. The file handler adds to the file list of files.h.
int32_t StandardFileHandler(const char* key, int32_t disk, const char* source, const char* dest,
                            int64_t& size, void* context);
int32_t RegistryLineHandler(const char* key, const char* value, void* context);
int32_t VariableHandler(const char* name, const char* value, void* context);

// Logs an error followed by the place in the script that caused it.
void LogScriptError(const char* text);

// Whether a key path may be worked on: not empty and without empty components. One typo (or one unset
// variable) must never reach a key further up.
bool IsSafeKeyPath(std::string_view keyPath);
// "HKEY_X\Key\path\Value" split at the first and the last backslash. False without two backslashes and for an
// unsafe key path.
[[nodiscard]] bool SplitRegistryLine(const char* text, Str& root, Str& keyPath, Str& valueName);
