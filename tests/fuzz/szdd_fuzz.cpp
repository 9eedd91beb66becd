// sources: script/szdd.cpp
// A file that is whole stays so with more bytes behind it, and one that is not stays
// so when it is cut further.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "script/szdd.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (!IsSzdd(bytes)) return 0;
  if (IsSzddWhole(bytes)) {
    Require(IsSzddWhole(std::string(bytes) + '\0'));
  } else {
    for (size_t length = kSzddHeaderSize; length < size && length < kSzddHeaderSize + 64; ++length)
      Require(!IsSzddWhole(bytes.substr(0, length)));
  }
  return 0;
}
