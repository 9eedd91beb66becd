#include "fonts/softfont.h"

#include <windows.h>

#include <iterator>

#include "base/assert.h"
#include "base/runstate.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "platform/fs.h"
#include "stores/profile.h"

namespace {

constexpr int32_t kMaxMissing = 100;      // numbers without a line, in a row, before the walk ends
constexpr UINT kBroadcastTimeout = 1000;  // milliseconds granted to each window

constexpr const char* kPostScriptFonts[] = {
    "vtfont1.pfm", "vtfont1.pfb", "vtfont2.pfm", "vtfont2.pfb",
    "vtfont3.pfm", "vtfont3.pfb", "vtfont4.pfm", "vtfont4.pfb",
};
constexpr const char* kPclFonts[] = {
    "vtfont1.pfm", "vtfont1.sfp", "vtfont2.pfm", "vtfont2.sfp", "vtfont3.pfm", "vtfont3.sfp",
};
constexpr const char* kPcl5Fonts[] = {
    "vtfont1.pfm", "vtfont1.sfp", "vtfont1.sfl", "vtfont2.pfm", "vtfont2.sfp",
    "vtfont2.sfl", "vtfont3.pfm", "vtfont3.sfp", "vtfont3.sfl",
};

// One printer driver that could hold the product's fonts.
struct SoftFontDriver {
  const char* name;
  bool postScript;
  const char* const* fonts;
  int32_t numFonts;
};
#define FONTS(list) list, static_cast<int32_t>(std::size(list))
constexpr SoftFontDriver kDrivers[] = {
    {"PSCRIPT", true, FONTS(kPostScriptFonts)}, {"HPPCL", false, FONTS(kPclFonts)},
    {"HPPCL5A", false, FONTS(kPcl5Fonts)},      {"HPPCL5MS", false, FONTS(kPcl5Fonts)},
    {"HPPCL5E", false, FONTS(kPcl5Fonts)},
};
#undef FONTS

void LogEdit(char sign, const char* section, const char* key, const Str& value) {
  Str line;
  line.Append(sign);
  line.Append("WIN.INI [");
  line.Append(section);
  line.Append("] ");
  line.Append(key);
  line.Append('=');
  line.Append(value);
  LogLine(line);
}

void WriteNumber(const char* section, const char* key, int32_t number) {
  const Str text = Message("<num:d>", kTemplateLiteral).With("num", number).Text();
  WriteProfileStringA(section, key, text);
  LogEdit('+', section, key, text);
}

void BroadcastProfileChange(const char* section) {
  DWORD_PTR unused = 0;
  SendMessageTimeoutA(HWND_BROADCAST, WM_WININICHANGE, 0, reinterpret_cast<LPARAM>(section), SMTO_ABORTIFHUNG,
                      kBroadcastTimeout, &unused);
}

// A shared copy's fonts, and fonts that the user keeps, stay on disk.
bool MayDeleteFiles() { return !Run().IsWorkstation() && !AppGetBool("do_remove_keep_fonts"); }

void DeleteFontFiles(const Str& line) {
  const int32_t comma = line.Find(',');
  Str metrics;
  metrics.Left(line, comma < 0 ? line.Length() : comma);
  Str font;
  if (comma >= 0) font.SetSubstring(line, comma + 1, -1);
  for (Str* path : {&metrics, &font}) {
    path->Trim();
    if (!path->IsEmpty()) FS::Delete(*path);
  }
}

bool NamesListedFile(const Str& line, const char* const* fileNames, int32_t numNames) {
  for (int32_t i = 0; i < numNames; ++i)
    if (Str::IFind(line, fileNames[i]) != nullptr) return true;
  return false;
}

struct WalkResult {
  int32_t removed = 0;
  int32_t left = 0;
  int32_t foundInCount = 0;  // lines numbered 1 to the section's count
};

WalkResult RemoveLines(const char* const* fileNames, int32_t numNames, const char* section, int32_t count) {
  WalkResult result;
  int32_t missing = 0;
  for (int32_t number = 1; missing < kMaxMissing; ++number) {
    const Str key = Message("softfont<num:d>", kTemplateLiteral).With("num", number).Text();
    const Str line = ProfileText(section, key);
    if (line.IsEmpty()) {
      ++missing;
      continue;
    }
    missing = 0;
    if (number <= count) ++result.foundInCount;
    if (!NamesListedFile(line, fileNames, numNames)) {
      ++result.left;
      continue;
    }
    WriteProfileStringA(section, key, nullptr);
    LogEdit('-', section, key, line);
    if (MayDeleteFiles()) DeleteFontFiles(line);
    ++result.removed;
  }
  return result;
}

Str WithoutColon(const Str& port) {
  Str text(port);
  if (!text.IsEmpty() && text.Chars()[text.Length() - 1] == ':') text.Delete(text.Length() - 1, 1);
  return text;
}

Str SectionName(const char* driver, const Str& port) {
  return Message("<Driver>,<Port>", kTemplateLiteral).With("Driver", driver).With("Port", port).Text();
}

bool SectionExists(const char* section) {
  char keys[4];
  return GetProfileStringA(section, nullptr, "", keys, sizeof(keys)) != 0;
}

void RemoveFromPclSection(const SoftFontDriver& driver, const Printer& printer) {
  Str section = SectionName(printer.driver, printer.port);
  // Some drivers leave the port's colon out.
  if (!SectionExists(section)) section = SectionName(printer.driver, WithoutColon(printer.port));
  EditSoftFonts(DO_REMOVE, driver.fonts, driver.numFonts, section, printer);
  if (!SectionExists(section)) return;
  // The drivers reload their fonts when this counter changes.
  WriteNumber(section, "fsvers", static_cast<int32_t>(GetProfileIntA(section, "fsvers", 0) + 1));
  BroadcastProfileChange(section);
}

}  // namespace

void EditSoftFonts(SoftFontOperation op, const char* const* fileNames, int32_t numNames, const char* section,
                   const Printer& printer) {
  VT_ASSERT(op == DO_REMOVE, "op == DO_REMOVE");
  if (!VT_ASSERT(numNames <= kMaxSoftFontNames, "numNames <= kMaxSoftFontNames")) return;
  const int32_t count = static_cast<int32_t>(GetProfileIntA(section, "softfonts", 0));
  if (count >= 1) {
    const WalkResult result = RemoveLines(fileNames, numNames, section, count);
    // A count that the lines do not bear out is corrected with the next change.
    int32_t newCount = result.removed < count ? count - result.removed : 0;
    if (result.foundInCount < count) {
      newCount = result.left;
      LogLine(
          Message(
              "The printer <PrinterName> appears to have fewer softfont lines than the softfonts =... line "
              "indicates in win.ini.",
              kTemplateLiteral)
              .With("PrinterName", printer.name));
    }
    if (result.removed > 0) WriteNumber(section, "softfonts", newCount);
  }
  BroadcastProfileChange(section);
}

void RemoveSoftFonts() {
  for (const Printer& printer : ListPrinters()) {
    for (const SoftFontDriver& driver : kDrivers) {
      if (printer.driver.ICompare(driver.name) != 0) continue;
      if (driver.postScript)
        EditSoftFonts(DO_REMOVE, driver.fonts, driver.numFonts,
                      SectionName("PostScript", WithoutColon(printer.port)), printer);
      else
        RemoveFromPclSection(driver, printer);
    }
  }
}
