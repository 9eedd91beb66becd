#pragma once
// What the loops share: a list of files to copy, and a clock.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

struct FilePair {
  std::string source;
  std::string dest;
};

// A line per file, "source<tab>destination". Empty when the list cannot be read.
inline std::vector<FilePair> ReadFileList(const char* path) {
  std::vector<FilePair> files;
  std::FILE* list = std::fopen(path, "r");
  if (list == nullptr) return files;
  char line[2 * MAX_PATH + 8];
  while (std::fgets(line, sizeof line, list) != nullptr) {
    std::string text(line);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    const size_t tab = text.find('\t');
    if (tab != std::string::npos) files.push_back({text.substr(0, tab), text.substr(tab + 1)});
  }
  std::fclose(list);
  return files;
}

// Makes the folder of each file; the ones that are there already cost one comparison.
class FolderMaker {
 public:
  void MakeFor(const std::string& path) {
    const std::string folder = path.substr(0, path.rfind('\\'));
    if (folder == mLast) return;
    mLast = folder;
    for (size_t end = folder.find('\\', 3); end != std::string::npos; end = folder.find('\\', end + 1))
      CreateDirectoryA(folder.substr(0, end).c_str(), nullptr);
    CreateDirectoryA(folder.c_str(), nullptr);
  }

 private:
  std::string mLast;
};

class Clock {
 public:
  Clock() { QueryPerformanceCounter(&mStart); }
  double Microseconds() const {
    LARGE_INTEGER now;
    LARGE_INTEGER perSecond;
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&perSecond);
    return static_cast<double>(now.QuadPart - mStart.QuadPart) * 1e6 /
           static_cast<double>(perSecond.QuadPart);
  }

 private:
  LARGE_INTEGER mStart;
};

// Copies the whole list; prints "microseconds N". The exit code of the program.
template <typename CopyOne>
int RunFileLoop(int argc, char** argv, CopyOne copyOne) {
  if (argc != 2) return 2;
  const std::vector<FilePair> files = ReadFileList(argv[1]);
  FolderMaker folders;
  const Clock clock;
  for (const FilePair& file : files) {
    folders.MakeFor(file.dest);
    if (copyOne(file)) continue;
    std::printf("cannot copy %s to %s\n", file.source.c_str(), file.dest.c_str());
    return 1;
  }
  std::printf("microseconds %.0f\n", clock.Microseconds());
  return 0;
}
