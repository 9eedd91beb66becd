#include "fonts/atm.h"

#include <iterator>
#include <utility>

#include "base/dynlib.h"
#include "base/errormode.h"
#include "fonts/psreader.h"

namespace {

constexpr const char* kModuleNames[] = {"ATM", "ATM32", "ATM16"};

// The entry points that this program calls, in the order of AtmLibrary::Entry.
constexpr const char* kEntryNames[] = {
    "ATMProperlyLoaded", "ATMFinish",        "ATMBeginFontChange", "ATMForceFontChange", "ATMEndFontChange",
    "ATMFontStatusA",    "ATMGetFontPathsA", "ATMRemoveFontA",     "ATMGetVersion",
};

// Style bits of the interface, which numbers them the other way round.
constexpr WORD kAtmItalic = 1;
constexpr WORD kAtmBold = 2;

constexpr int kMaxPath = 261;  // bytes, terminator included

// Structures of the interface.
struct AtmFontSpec {
  char faceName[LF_FACESIZE];
  WORD styles;
};
struct AtmFontPathInfo {
  char pfbPath[kMaxPath];
  char pfmPath[kMaxPath];
  char mmmPath[kMaxPath];
  char pssPath[kMaxPath];
};

using NoArgsFunc = int(__stdcall*)();
using VersionFunc = WORD(__stdcall*)();
using FontStatusFunc = int(__stdcall*)(char*, WORD, char*, char*);
using FontPathsFunc = int(__stdcall*)(AtmFontSpec*, AtmFontPathInfo*);
using RemoveFontFunc = int(__stdcall*)(char*, WORD);

WORD AtmStyle(uint32_t style) {
  return static_cast<WORD>(((style & kPsItalic) != 0 ? kAtmItalic : 0) |
                           ((style & kPsBold) != 0 ? kAtmBold : 0));
}

// The interface takes texts it does not write to through plain pointers.
class PlainText {
 public:
  explicit PlainText(const char* text) : mText(text), mPtr(mText.Lock(mText.Length() + 1)) {}
  PlainText(const PlainText&) = delete;
  PlainText& operator=(const PlainText&) = delete;
  ~PlainText() { mText.Unlock(); }
  char* Ptr() const { return mPtr; }

 private:
  Str mText;
  char* mPtr;
};

Str BoundedText(const char* text, size_t room) {
  size_t length = 0;
  while (length < room && text[length] != '\0') ++length;
  return Str(std::string_view(text, length));
}

}  // namespace

AtmLibrary::AtmLibrary() {
  static_assert(std::size(kEntryNames) == kNumEntries);
  for (const char* name : kModuleNames)
    if (Bind(name)) break;
  mLoaded = IsInstalled() && Func<NoArgsFunc>(kProperlyLoaded)() != 0;
}

AtmLibrary::~AtmLibrary() {
  if (mLoaded) Func<NoArgsFunc>(kFinish)();
}

bool AtmLibrary::Bind(const char* moduleName) {
  Str fileName(moduleName);
  fileName.Append(".dll");
  ModuleHandle module;
  {
    const CriticalErrorGuard noBoxes;
    module.Reset(LoadLibraryA(SystemLibraryPath(fileName)));
  }
  if (!module) return false;
  for (int32_t i = 0; i < kNumEntries; ++i) {
    mFuncs[i] = GetProcAddress(module.Get(), kEntryNames[i]);
    if (!mFuncs[i] && i < kNumNeeded) return false;
  }
  mModule = std::move(module);
  return true;
}

void AtmLibrary::GetVersion(uint16_t& major, uint16_t& minor) const {
  const WORD version = mFuncs[kGetVersion] ? Func<VersionFunc>(kGetVersion)() : WORD{0};
  major = LOBYTE(version);
  minor = HIBYTE(version);
}

int AtmLibrary::FontStatus(const char* windowsName, uint32_t style) const {
  const PlainText name(windowsName);
  const PlainText none("");
  return Func<FontStatusFunc>(kFontStatus)(name.Ptr(), AtmStyle(style), none.Ptr(), none.Ptr());
}

int AtmLibrary::GetFontPaths(const char* windowsName, uint32_t style, Str& pfbPath, Str& pfmPath) const {
  AtmFontSpec spec = {};
  AtmFontPathInfo paths = {};
  lstrcpynA(spec.faceName, windowsName, LF_FACESIZE);
  spec.styles = AtmStyle(style);
  const int result = Func<FontPathsFunc>(kGetFontPaths)(&spec, &paths);
  pfbPath = result == 0 ? BoundedText(paths.pfbPath, kMaxPath) : Str();
  pfmPath = result == 0 ? BoundedText(paths.pfmPath, kMaxPath) : Str();
  return result;
}

int AtmLibrary::RemoveFont(const char* windowsName, uint32_t style) const {
  const PlainText name(windowsName);
  Func<NoArgsFunc>(kBeginFontChange)();
  const int result = Func<RemoveFontFunc>(kRemoveFont)(name.Ptr(), AtmStyle(style));
  Func<NoArgsFunc>(kEndFontChange)();
  return result;
}

void AtmLibrary::ForceFontChange() const {
  Func<NoArgsFunc>(kBeginFontChange)();
  Func<NoArgsFunc>(kForceFontChange)();
  Func<NoArgsFunc>(kEndFontChange)();
}
