#include "ui/help.h"

#include <memory>

#include "base/dynlib.h"
#include "base/runstate.h"
#include "messages/varlist.h"
#include "platform/fs.h"
#include "platform/fspath.h"

namespace {

constexpr char kControlFile[] = "hhctrl.ocx";
const char* const kControlFunctions[] = {"HtmlHelpA"};
constexpr UINT kHelpContext = 0x000F;   // HH_HELP_CONTEXT: show the topic of that number
constexpr UINT kHelpCloseAll = 0x0012;  // HH_CLOSE_ALL

using HtmlHelpFunc = HWND(WINAPI*)(HWND caller, LPCSTR file, UINT command, DWORD_PTR data);

// Kept while a help window may be open: the window's code lives in it.
std::unique_ptr<DynLib>& Control() {
  static std::unique_ptr<DynLib> control;
  return control;
}

HtmlHelpFunc LoadedFunction() {
  std::unique_ptr<DynLib>& control = Control();
  return control && control->IsLoaded() ? control->FuncAs<HtmlHelpFunc>(0) : nullptr;
}

// A Windows without the control shows no help.
HtmlHelpFunc HelpFunction() {
  if (!Control() && FS::IsFile(SystemLibraryPath(kControlFile)))
    Control() = std::make_unique<DynLib>(kControlFile, kControlFunctions, 1, 0);
  return LoadedFunction();
}

}  // namespace

Str HelpFilePath() {
  const Str file = AppGetExpanded("HelpFile");
  if (file.IsEmpty() || FSPath(file).IsFullPath()) return file;
  return JoinPath(AppGetExpanded("SetupHelpDir"), file);
}

void ShowHelp(HWND owner, unsigned topic) {
  if (Run().IsQuiet()) return;
  const Str path = HelpFilePath();
  if (path.IsEmpty() || !FS::IsFile(path)) return;
  const HtmlHelpFunc htmlHelp = HelpFunction();
  if (htmlHelp) htmlHelp(owner, path, kHelpContext, topic);
}

void CloseHelp() {
  const HtmlHelpFunc htmlHelp = LoadedFunction();
  if (htmlHelp) htmlHelp(nullptr, nullptr, kHelpCloseAll, 0);
  Control().reset();
}
