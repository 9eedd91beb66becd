#pragma once
// The pure parts of the assertion report: filling the translated message and the name of a crash dump.
#include <string>
#include <string_view>

// The message of a failed check. `format` holds the conversions %s, %d and %s once each, in this order (file,
// line, expression; "%%" is a percent sign); a format with anything else is replaced by the default one.
std::string AssertMessage(std::string_view format, std::string_view file, int line,
                          std::string_view expression);

// The decimal digits behind the first "(" of a version text such as "6.0 (1234)";
// "NoBuildNum" when there are none.
std::string_view BuildNumber(std::string_view version);
