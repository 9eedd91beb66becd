#include "ui/langload.h"

#include <memory>
#include <vector>

#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/res.h"
#include "messages/varlist.h"
#include "platform/fileversion.h"
#include "platform/folders.h"
#include "stores/ini.h"
#include "stores/register.h"
#include "ui/langlist.h"
#include "ui/language.h"

namespace {

std::unique_ptr<CLangLib>& LoadedLibrary() {
  static std::unique_ptr<CLangLib> library;
  return library;
}

// Whether the running program itself is of that language.
bool IsProgramLanguage(int32_t language) {
  Str path;
  return Folders::GetModulePath(path) && IsLibraryOf(path, language);
}

void UseLibrary(std::unique_ptr<CLangLib> library) {
  const bool isProgram = library->Module() == GetModuleHandleA(nullptr);
  SetLanguageModule(isProgram ? nullptr : library->Module());
  LoadedLibrary() = std::move(library);
}

// The text of "AppLang" in the Config key of the machine's settings; empty when absent.
Str RegisteredLanguage() {
  Str value;
  Str path = AppGetExpanded("MachRegKey");
  HKEY root = nullptr;
  Str subKey;
  if (path.IsEmpty() || !IniParsePath(path, root, subKey) || !root) return value;
  path += "\\Config";
  if (!RegGetValueStr(path, "AppLang", value)) return Str();
  return value;
}

// What was asked for: by the variable, or by the registry, which goes over it.
int32_t WantedLanguage() {
  Str text;
  AppGetVariable("AppLang", text);
  int32_t wanted = ParseLanguage(text);
  LogLine(Message("AppLang from global string list = <GlobalAppLang>", kTemplateLiteral)
              .With("GlobalAppLang", text));
  const Str registered = RegisteredLanguage();
  const int32_t registeredLanguage = ParseLanguage(registered);
  if (registeredLanguage != kNoLanguage) wanted = registeredLanguage;
  LogLine(Message("AppLang from registry = <RegAppLang>", kTemplateLiteral).With("RegAppLang", registered));
  return wanted;
}

// The available language that comes nearest to the wanted one.
bool LoadBest(int32_t wanted) {
  const std::vector<int32_t> list = ListLanguages(AppGetExpanded("CurrDir"));
  const int32_t best = BestIndex(list, wanted);
  if (best < 0) return false;
  const int32_t language = list[static_cast<size_t>(best)];
  LogLine(Message("Found a bestIndex value = <BestLang>", kTemplateLiteral).With("BestLang", language));
  return LoadLanguage(language);
}

// The user's default locale, called the system's in the log.
bool LoadSystemLanguage() {
  const int32_t language = LOWORD(GetUserDefaultLCID());
  LogLine(Message("System language = <SystemLang>", kTemplateLiteral).With("SystemLang", language));
  return LoadLanguage(language);
}

}  // namespace

CLangLib::~CLangLib() {
  if (!mModule || mModule == GetModuleHandleA(nullptr)) return;
  if (!FreeLibrary(mModule)) LogLine("CLangLib destructor: couldn't free the language library.");
}

bool LoadLanguage(int32_t language) {
  if (language == kNoLanguage) return false;
  const Str abbreviation = LanguageAbbreviation(language);
  const Str path = FindLibrary(AppGetExpanded("CurrDir"), language, abbreviation);
  HMODULE module = nullptr;
  // Opened as data: texts are read from it, code in it never runs.
  if (!path.IsEmpty() && IsWholeImage(path)) module = LoadLibraryExA(path, nullptr, LOAD_LIBRARY_AS_DATAFILE);
  const bool isProgram = !module && IsProgramLanguage(language);
  if (isProgram) module = GetModuleHandleA(nullptr);
  if (!module) return false;
  UseLibrary(std::make_unique<CLangLib>(module, language, isProgram ? Str() : path));
  AppSetVariable("SysLang", abbreviation);
  return true;
}

bool ChooseAndLoadLanguage() {
  const int32_t wanted = WantedLanguage();
  if (wanted != kNoLanguage && LoadLanguage(wanted)) return true;
  LogLine("No current language");
  if (LoadBest(wanted)) return true;
  LogLine("No language found in list");
  if (LoadSystemLanguage()) return true;
  LogLine("System language failed, using built-in!");
  return LoadLanguage(ModuleLanguage(nullptr));
}

Str LoadedLibraryPath() { return LoadedLibrary() ? LoadedLibrary()->Path() : Str(); }

void FreeLanguageLibrary() {
  SetLanguageModule(nullptr);
  LoadedLibrary().reset();
}
