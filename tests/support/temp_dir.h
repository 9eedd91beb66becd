#pragma once
// A folder of the test's own below the temporary folder; removed at the end with all it holds.
#include <string>
#include <string_view>

class TempDir {
 public:
  TempDir();
  // Below `parent` (no backslash at its end), for tests that need the folder on a certain drive.
  explicit TempDir(const std::string& parent);
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  // Full path without a backslash at the end.
  const std::string& Path() const { return mPath; }
  // Full path of something in it.
  std::string Join(const std::string& name) const { return mPath + "\\" + name; }
  // Creates the folder `name` with the folders above it, and returns its full path.
  std::string MakeFolder(const std::string& name) const;
  // Creates or replaces the file `name` with the folders above it, and returns its full path.
  std::string Write(const std::string& name, std::string_view bytes) const;
  std::string Read(const std::string& name) const;
  bool Has(const std::string& name) const;

 private:
  std::string mPath;
};
