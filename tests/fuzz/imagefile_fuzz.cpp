// sources: platform/imagefile.cpp
// Any bytes are read without fault; a file needs at least its headers, and they are enough to tell.
#include <cstdint>
#include <cstdlib>
#include <span>

#include "platform/imagefile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::span<const std::byte> head = std::as_bytes(std::span(data, size));
  const uint64_t needed = ImageFileSize(head);
  if (ImageResourcesLieInFile(head) && needed == 0) std::abort();
  if (needed == 0) return 0;
  if (needed < 24) std::abort();
  // What lies behind the file's end tells nothing.
  if (needed < size && ImageFileSize(head.first(static_cast<size_t>(needed))) != needed) std::abort();
  return 0;
}
