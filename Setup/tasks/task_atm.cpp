// PostScript and printer font tasks: remove_atm_font, remove_old_atm_font, atm_fontchange_notify and
// remove_soft_fonts (pass 1), test_ATM_on (always).
#include "base/runstate.h"
#include "fonts/addfont.h"
#include "fonts/psfont.h"
#include "fonts/softfont.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"
#include "ui/progmetr.h"

namespace {

constexpr unsigned kRemovingAtmFonts = 327;
constexpr unsigned kRemovingOldAtmFonts = 328;

using RemoveFunc = void (*)(const AtmLibrary& atm, const char* pfbPath, const char* pfmPath);

void RemoveByFiles(const char* name, const char* args, RemoveFunc remove) {
  const AtmLibrary atm;
  if (!atm.IsLoaded()) {
    LogLine("    ATM is not properly loaded. PostScript fonts cannot be removed.");
    return;
  }
  std::vector<Str> fields;
  if (!TaskArgs(name, args, 2, fields)) return;
  remove(atm, ExpandedArgAt(fields, 0), ExpandedArgAt(fields, 1));
}

}  // namespace

int32_t Task_remove_atm_font(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  SetProgressText(Message(kRemovingAtmFonts));
  RemoveByFiles(name, args, RemovePSFont);
  return 1;
}

int32_t Task_remove_old_atm_font(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  SetProgressText(Message(kRemovingOldAtmFonts));
  RemoveByFiles(name, args, RemoveOldPSFont);
  return 1;
}

int32_t Task_atm_fontchange_notify(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  const AtmLibrary atm;
  if (atm.IsLoaded()) atm.ForceFontChange();
  NotifyFontChange();
  return 1;
}

int32_t Task_test_ATM_on(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 1, fields)) return 1;
  if (fields[0].IsEmpty()) {
    LogUnknownArgs(name);
    return 1;
  }
  const AtmLibrary atm;
  AppSetBool(fields[0], atm.IsLoaded());
  return 1;
}

int32_t Task_remove_soft_fonts(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  LogTaskEntry(name, args);
  // Soft fonts are never installed any more, only taken away.
  if (!Run().install) RemoveSoftFonts();
  return 1;
}
