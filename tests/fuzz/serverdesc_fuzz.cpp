// sources: oleserver/serverdesc.cpp
// Any ProgID is described and any registered command gives a piece of itself. The input's lines are the
// ProgID, the server program's base name and the command.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "oleserver/serverdesc.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string_view TakeLine(std::string_view& text) {
  const size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

void CheckDescription(std::string_view progId, std::string_view baseName) {
  const ServerDescription server = DescribeServer(progId, baseName);
  Require(server.maker.size() == 2);
  Require(server.version >= 0);
  Require(!server.convertsToUs);
  const size_t dot = progId.find('.');
  if (dot == std::string_view::npos) {
    Require(server.own ? server.version == 3 : server.maker == "MS" && server.version == 1);
    return;
  }
  const std::string_view code = progId.substr(dot + 1);
  if (code.size() < 5) Require(!server.own && server.maker == "MS");
  if (code.size() >= 5) Require(code.substr(0, 2) == server.maker);
  // The program's name matters without a dot only.
  const ServerDescription again = DescribeServer(progId, "");
  Require(again.own == server.own && again.version == server.version && again.maker == server.maker);
}

void CheckCommand(std::string_view command) {
  const std::string program = ServerProgram(command);
  const size_t pos = command.find(program);
  Require(pos != std::string_view::npos);
  Require(program.find('"') == std::string::npos || command.find_first_not_of(" \t") != command.find('"'));
  // What is in front of the program is blanks, and at most one quote.
  Require(program.empty() || command.find_first_not_of(" \t\"") >= pos || program.front() == ' ' ||
          program.front() == '\t');
  // In quotes the program is found again.
  if (program.find('"') == std::string::npos) Require(ServerProgram('"' + program + "\" /x") == program);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string_view progId = TakeLine(text);
  const std::string_view baseName = TakeLine(text);
  CheckDescription(progId, baseName);
  CheckCommand(text);
  return 0;
}
