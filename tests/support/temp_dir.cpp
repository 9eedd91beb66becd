#include "support/temp_dir.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "support/files.h"
#include "support/wait.h"

namespace {

std::string TempRoot() {
  char path[MAX_PATH + 1] = "";
  GetTempPathA(sizeof path, path);
  std::string root = path;
  while (!root.empty() && root.back() == '\\') root.pop_back();
  return root;
}

}  // namespace

TempDir::TempDir() : TempDir(TempRoot()) {}

TempDir::TempDir(const std::string& parent) {
  static unsigned counter = 0;
  for (int tries = 0; tries < 1000; ++tries) {
    mPath = parent + "\\vt" + std::to_string(GetCurrentProcessId()) + "_" + std::to_string(++counter);
    if (CreateDirectoryA(mPath.c_str(), nullptr)) return;
    if (GetLastError() != ERROR_ALREADY_EXISTS) break;
  }
  ADD_FAILURE() << "cannot create a temporary folder below " << parent;
}

TempDir::~TempDir() {
  // Programs that are just ending may hold their files for a moment.
  if (!WaitUntil([this] { return DeleteTree(mPath); }))
    ADD_FAILURE() << "something keeps " << mPath << " from being removed";
}

std::string TempDir::MakeFolder(const std::string& name) const {
  for (size_t pos = name.find('\\'); pos != std::string::npos; pos = name.find('\\', pos + 1))
    CreateDirectoryA(Join(name.substr(0, pos)).c_str(), nullptr);
  CreateDirectoryA(Join(name).c_str(), nullptr);
  if (!IsFolder(Join(name))) ADD_FAILURE() << "cannot create the folder " << Join(name);
  return Join(name);
}

std::string TempDir::Write(const std::string& name, std::string_view bytes) const {
  const size_t slash = name.rfind('\\');
  if (slash != std::string::npos) MakeFolder(name.substr(0, slash));
  WriteWholeFile(Join(name), bytes);
  return Join(name);
}

std::string TempDir::Read(const std::string& name) const { return ReadWholeFile(Join(name)); }

bool TempDir::Has(const std::string& name) const { return PathExists(Join(name)); }
