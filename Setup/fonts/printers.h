#pragma once
// Printers known to the Windows profile.
#include <vector>

#include "base/str.h"

struct Printer {
  Str name;
  Str driver;
  Str port;  // as the profile has it, usually with a trailing ":"
};

// The printers of section "PrinterPorts" with the driver and port of each.
std::vector<Printer> ListPrinters();
