#include "stores/readfile.h"

bool ReadWholeFile(FioFile& file, std::string& bytes) {
  uint32_t size = 0;
  if (FioGetSize(file, size) != fioOK) return false;
  bytes.resize(size);
  uint32_t got = 0;
  if (size > 0 && FioRead(file, size, bytes.data(), &got) != fioOK) return false;
  bytes.resize(got);
  return true;
}
