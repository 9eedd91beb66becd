#pragma once
// The little language of the document-class script, run below HKEY_CLASSES_ROOT.
#include "base/str.h"
#include "stores/regkey.h"

// Runs one command after the other; each keeps the keys that the next works on.
class StubScript {
 public:
  // `command` is expanded; false ends the script.
  [[nodiscard]] bool Execute(const char* command);

 private:
  bool OpenRoot(const char* path);
  bool OpenSub(const char* path);
  bool SetDefault(const char* text);
  bool Delete(const char* path);

  RegKey mRootKey;
  RegKey mSubKey;
};
