// TrueType tasks: install_tt_font, remove_font_name, remove_tt_font and tt_fontchange_notify. All act in
// pass 1.
#include "fonts/addfont.h"
#include "fonts/font.h"
#include "messages/format.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"
#include "ui/err.h"
#include "ui/progmetr.h"

namespace {

constexpr unsigned kInstallingFonts = 359;
constexpr unsigned kRemovingFonts = 360;
constexpr unsigned kNoFolderToInstall = 786;
constexpr unsigned kNoFolderToRemove = 787;

bool IsBitmapKind(const Str& kind) { return kind.ICompare("raster") == 0 || kind.ICompare("bitmap") == 0; }

}  // namespace

int32_t Task_install_tt_font(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  LogTaskEntry(name, args);
  SetProgressText(Message(kInstallingFonts));
  if (!DefineTTSysDir()) {
    ShowError(Message(kNoFolderToInstall));
    return 1;
  }
  const std::vector<Str> fields = TaskArgs(name, args);
  // TTSysDir was not known when the line was expanded. What goes wrong is logged and
  // shown; the script goes on.
  static_cast<void>(InstallTTFont(ExpandedArgAt(fields, 0), ExpandedArgAt(fields, 1), false));
  return 1;
}

int32_t Task_remove_font_name(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  SetProgressText(Message(kRemovingFonts));
  std::vector<Str> fields;
  if (!TaskArgs(name, args, 1, fields)) return 1;
  if (!DefineTTSysDir()) {
    ShowError(Message(kNoFolderToRemove));
    return 1;
  }
  static_cast<void>(UninstallFontByName(fields[0], fields.size() < 2 || !IsBitmapKind(fields[1])));
  return 1;
}

int32_t Task_remove_tt_font(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  SetProgressText(Message(kRemovingFonts));
  if (!DefineTTSysDir()) {
    ShowError(Message(kNoFolderToRemove));
    return 1;
  }
  const std::vector<Str> fields = TaskArgs(name, args);
  static_cast<void>(UninstallTTFont(ExpandedArgAt(fields, 0)));
  return 1;
}

int32_t Task_tt_fontchange_notify(const char* name, const char* args, void* data) {
  if (TaskActsNow(name, args, data)) NotifyFontChange();
  return 1;
}
