#pragma once
// What a ProgID tells about an equation server, and which program a registered command line names. Pure text.
#include <cstdint>
#include <string>
#include <string_view>

struct ServerDescription {
  bool own = false;           // one of this maker's products
  int32_t version = 0;        // major version
  std::string maker;          // two characters, "MS" for Microsoft
  bool convertsToUs = false;  // its objects are converted to the product's class already
};

// `serverBaseName`: the server program's name without folder and extension, for ProgIDs without a ".".
ServerDescription DescribeServer(std::string_view progId, std::string_view serverBaseName);

// The program path of a registered command: quoted up to the closing quote, else up to the first ".exe" that
// ends the text or is followed by a blank or a "/", else up to the first blank.
std::string ServerProgram(std::string_view command);
