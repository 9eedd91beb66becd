// copy_loop LIST     copies the files of a list, one CopyFileA after the other: the yardstick of the speed
// measurements.
#include "file_loop.h"

int main(int argc, char** argv) {
  return RunFileLoop(argc, argv, [](const FilePair& file) {
    return CopyFileA(file.source.c_str(), file.dest.c_str(), FALSE) != FALSE;
  });
}
