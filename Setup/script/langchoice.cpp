#include "script/langchoice.h"

#include "base/leadbyte.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "platform/fspath.h"
#include "platform/pathparts.h"
#include "stores/ini.h"
#include "stores/register.h"
#include "ui/langlist.h"
#include "ui/language.h"
#include "ui/langpick.h"

namespace {

constexpr char kSection[] = "Config";
constexpr char kKey[] = "AppLang";

// In a registry store only the one value is written, so that all else in its section stays.
bool RecordLanguage(const Str& text) {
  const Str storePath = AppGetExpanded("MachRegKey");
  HKEY root = nullptr;
  Str subKey;
  if (storePath.IsEmpty() || !IniParsePath(storePath, root, subKey)) return false;
  if (root != nullptr) return RegCreateKeyValue(root, JoinPath(subKey, kSection), kKey, text.Chars());
  IniStorePtr store = IniOpen(storePath, false);
  return store && IniFindSection(store.get(), kSection, true) && IniWriteString(store.get(), kKey, text) &&
         IniClose(store);
}

// The script's argument with its folder, that of the program when it names none.
Str LibraryPattern(const char* given) {
  Str text(given);
  AppVars().Expand(text);
  if (PathText::FindBackslash(text.View(), 0, IsAnsiLeadByte) != PathText::kNone) return text;
  Str path = AppGetExpanded("CurrDir");
  path += '\\';
  path.Append(text);
  return path;
}

}  // namespace

bool ChooseProductLanguage(const char* pattern) {
  FSPath path(LibraryPattern(pattern));
  if (!path.MakeFull()) return false;
  const std::vector<int32_t> languages = ListProductLanguages(path.Parent(), path.FileName());
  const int32_t chosen = PickLanguage(languages);
  if (chosen < 0 || static_cast<size_t>(chosen) >= languages.size()) return false;
  const int32_t language = languages[static_cast<size_t>(chosen)];
  AppSetVariable("CurLangAbbrev", LanguageAbbreviation(language));
  if (!RecordLanguage(LanguageText(language))) LogLine("The chosen language could not be recorded.");
  return true;
}
