#include "installer/sysfacts.h"

#include <windows.h>

#include "base/handle.h"
#include "base/runstate.h"
#include "fonts/atm.h"

namespace {

constexpr int32_t kEnhancedMode = 3;  // the only mode that 32-bit Windows has

void AddScreen(SystemFacts& facts) {
  const ScreenHandle screen(GetDC(nullptr));
  if (!screen) return;
  facts.horizRes = GetDeviceCaps(screen.Get(), HORZRES);
  facts.vertRes = GetDeviceCaps(screen.Get(), VERTRES);
  facts.horizPPI = GetDeviceCaps(screen.Get(), LOGPIXELSX);
  facts.vertPPI = GetDeviceCaps(screen.Get(), LOGPIXELSY);
}

void AddTrueType(SystemFacts& facts) {
  RASTERIZER_STATUS status = {};
  if (!GetRasterizerCaps(&status, sizeof status)) return;
  facts.trueTypeAvailable = (status.wFlags & TT_AVAILABLE) != 0;
  facts.trueTypeEnabled = (status.wFlags & TT_ENABLED) != 0;
}

void AddAtm(SystemFacts& facts) {
  const AtmLibrary atm;
  facts.atmInstalled = atm.IsInstalled();
  facts.atmRunning = atm.IsLoaded();
  if (facts.atmRunning) atm.GetVersion(facts.atmMajor, facts.atmMinor);
}

}  // namespace

SystemFacts GatherSystemFacts() {
  SystemFacts facts;
  facts.versionMajor = Run().windowsMajor;
  facts.versionMinor = Run().windowsMinor;
  facts.mode = kEnhancedMode;
  AddScreen(facts);
  AddTrueType(facts);
  AddAtm(facts);
  return facts;
}
