// install_loop LIST     installs the files of a list, one VerInstallFileA after the other: what the system's
// own version-checked copy costs by itself.
#include "file_loop.h"

namespace {

bool Install(const FilePair& file) {
  const size_t sourceSlash = file.source.rfind('\\');
  const size_t destSlash = file.dest.rfind('\\');
  // The function takes texts that it could change.
  std::string sourceDir = file.source.substr(0, sourceSlash);
  std::string sourceName = file.source.substr(sourceSlash + 1);
  std::string destDir = file.dest.substr(0, destSlash);
  std::string destName = file.dest.substr(destSlash + 1);
  char none[] = "";
  char temporary[MAX_PATH] = "";
  UINT length = MAX_PATH;
  return VerInstallFileA(VIFF_DONTDELETEOLD, sourceName.data(), destName.data(), sourceDir.data(),
                         destDir.data(), none, temporary, &length) == 0;
}

}  // namespace

int main(int argc, char** argv) { return RunFileLoop(argc, argv, Install); }
