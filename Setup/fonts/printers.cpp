#include "fonts/printers.h"

#include <windows.h>

#include "stores/profile.h"

namespace {

constexpr DWORD kMaxList = 32767;  // characters of a section's key list

// The `index`-th field between commas, trimmed.
Str Field(const Str& text, int index) {
  int32_t start = 0;
  for (; index > 0; --index) {
    const int32_t comma = text.Find(',', start);
    if (comma < 0) return Str();
    start = comma + 1;
  }
  const int32_t end = text.Find(',', start);
  Str field;
  field.SetSubstring(text, start, end < 0 ? -1 : end - start);
  field.Trim();
  return field;
}

}  // namespace

std::vector<Printer> ListPrinters() {
  std::vector<char> names(kMaxList);
  GetProfileStringA("PrinterPorts", nullptr, "", names.data(), kMaxList);
  std::vector<Printer> printers;
  for (const char* name = names.data(); *name; name += Str::Length(name) + 1) {
    Str device = ProfileText("Devices", name);
    if (device.IsEmpty()) device = ProfileText("PrinterPorts", name);
    printers.push_back({name, Field(device, 0), Field(device, 1)});
  }
  return printers;
}
