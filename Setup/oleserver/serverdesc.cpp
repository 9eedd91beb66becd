#include "oleserver/serverdesc.h"

#include "base/ascii.h"

namespace {

constexpr std::string_view kMakerCode = "KV";
constexpr std::string_view kProductCode = "RX";
constexpr std::string_view kProductProgram = "Veltrane";
constexpr std::string_view kMicrosoft = "MS";

// The product's releases 1 to 3 share this ProgID text.
constexpr std::string_view kThirdRelease = "KVRX36";
constexpr int32_t kThirdReleaseVersion = 3;

int32_t LeadingNumber(std::string_view text) {
  constexpr int32_t kLimit = 100000000;
  int32_t number = 0;
  for (const char ch : text) {
    if (!IsAsciiDigit(ch) || number >= kLimit) break;
    number = number * 10 + (ch - '0');
  }
  return number;
}

// The program's name ends here: at a blank or at a switch that follows without one.
bool EndsProgram(std::string_view rest) {
  return rest.empty() || IsBlank(rest.front()) || rest.front() == '/';
}

}  // namespace

ServerDescription DescribeServer(std::string_view progId, std::string_view serverBaseName) {
  ServerDescription server;
  const size_t dot = progId.find('.');
  if (dot == std::string_view::npos) {
    server.own = EqualNoCase(serverBaseName, kProductProgram);
    server.maker = server.own ? kMakerCode : kMicrosoft;
    server.version = server.own ? kThirdReleaseVersion : 1;
    return server;
  }
  const std::string_view code = progId.substr(dot + 1);
  if (code.size() < 5) {
    server.maker = kMicrosoft;
    server.version = LeadingNumber(code);
    return server;
  }
  server.maker = code.substr(0, 2);
  server.own = EqualNoCase(code.substr(2, 2), kProductCode);
  server.version = code == kThirdRelease ? kThirdReleaseVersion : LeadingNumber(code.substr(4));
  return server;
}

std::string ServerProgram(std::string_view command) {
  constexpr std::string_view kExe = ".exe";
  command = SkipBlanks(command);
  if (!command.empty() && command.front() == '"') {
    command.remove_prefix(1);
    return std::string(command.substr(0, command.find('"')));
  }
  for (size_t i = 0; i + kExe.size() <= command.size(); ++i) {
    const size_t end = i + kExe.size();
    if (EqualNoCase(command.substr(i, kExe.size()), kExe) && EndsProgram(command.substr(end)))
      return std::string(command.substr(0, end));
  }
  return std::string(command.substr(0, command.find_first_of(kBlanks)));
}
