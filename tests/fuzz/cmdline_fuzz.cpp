// sources: installer/cmdline.cpp
// Any command line splits and parses without fault, keeps to the grammar's rules, and no argument grows.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/runstate.h"
#include "installer/cmdline.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

bool IsShiftJisLead(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9f) || (byte >= 0xe0 && byte <= 0xfc);
}

void CheckFolder(const std::optional<std::string>& folder, size_t inputSize) {
  if (folder) Require(folder->size() <= inputSize + 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const LeadByteTest isLead : {LeadByteTest{nullptr}, LeadByteTest{IsShiftJisLead}}) {
    const std::vector<std::string> args = SplitCommandLine(text, isLead);
    Require(!args.empty());
    size_t total = 0;
    for (const std::string& argument : args) total += argument.size();
    Require(total <= size);

    const CommandLine line = ParseCommandLine(std::span(args).subspan(1), isLead);
    CheckFolder(line.progDir, size);
    CheckFolder(line.installFromDir, size);
    if (line.valid && (line.setupFlags & kQuiet) != 0) {
      Require((line.setupFlags & kWorkstation) == 0);
      Require((line.setupFlags & kRemove) != 0 || line.progDir.has_value());
    }
    // Reading what was split once more by hand must not depend on anything but the arguments.
    Require(ParseCommandLine(std::span(args).subspan(1), isLead).valid == line.valid);
  }
  return 0;
}
