// sources: base/utf8.cpp base/asserttext.cpp
// UTF-8 decoding never yields more units than bytes, and no format of an assertion message reads
// anything but its three fields.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/asserttext.h"
#include "base/utf8.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::u16string units = DecodeUtf8(text);
  if (units.size() > size) std::abort();

  const std::string message = AssertMessage(text, "file.cpp", -7, "expression");
  if (message.find("file.cpp") == std::string::npos || message.find("-7") == std::string::npos ||
      message.find("expression") == std::string::npos) {
    std::abort();
  }
  const std::string_view build = BuildNumber(text);
  if (build.empty() ||
      (build != "NoBuildNum" && build.find_first_not_of("0123456789") != std::string_view::npos)) {
    std::abort();
  }
  return 0;
}
