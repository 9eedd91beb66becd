#include "support/files.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>

#include "base/handle.h"

std::string ReadWholeFile(const std::string& path) {
  FileHandle file(CreateFileA(path.c_str(), GENERIC_READ,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              0, nullptr));
  if (!file) {
    ADD_FAILURE() << "cannot open " << path << ", error " << GetLastError();
    return {};
  }
  std::string bytes(GetFileSize(file.Get(), nullptr), '\0');
  DWORD done = 0;
  if (!ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr) ||
      done != bytes.size())
    ADD_FAILURE() << "cannot read " << path << ", error " << GetLastError();
  return bytes;
}

void WriteWholeFile(const std::string& path, std::string_view bytes) {
  FileHandle file(
      CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) {
    ADD_FAILURE() << "cannot create " << path << ", error " << GetLastError();
    return;
  }
  DWORD done = 0;
  if (!WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr) ||
      done != bytes.size())
    ADD_FAILURE() << "cannot write " << path << ", error " << GetLastError();
}

bool PathExists(const std::string& path) {
  return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool IsFolder(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::vector<std::string> NamesIn(const std::string& folder, const std::string& pattern) {
  std::vector<std::string> names;
  WIN32_FIND_DATAA data;
  FindHandle find(FindFirstFileA((folder + "\\" + pattern).c_str(), &data));
  if (!find) return names;
  do {
    const std::string name = data.cFileName;
    if (name != "." && name != "..") names.push_back(name);
  } while (FindNextFileA(find.Get(), &data));
  std::sort(names.begin(), names.end());
  return names;
}

bool DeleteTree(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return true;
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) return DeleteFileA(path.c_str()) && !PathExists(path);
  for (const std::string& name : NamesIn(path)) DeleteTree(path + "\\" + name);
  return RemoveDirectoryA(path.c_str()) && !PathExists(path);
}
