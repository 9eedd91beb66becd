#include "ui/langlist.h"

#include <memory>

#include "base/assert.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/res.h"
#include "messages/varlist.h"
#include "platform/fileversion.h"
#include "platform/folders.h"
#include "platform/fs.h"
#include "platform/fsdirit.h"
#include "platform/fspath.h"
#include "stores/ini.h"
#include "stores/register.h"

namespace {

constexpr char kLibraryExt[] = ".dll";
constexpr int32_t kPrimaryLanguageMask = 0x3FF;
constexpr size_t kListGrowth = 20;

std::unique_ptr<CLangLib>& LoadedLibrary() {
  static std::unique_ptr<CLangLib> library;
  return library;
}

int32_t HexDigit(char ch) {
  if (ch >= '0' && ch <= '9') return ch - '0';
  if (ch >= 'a' && ch <= 'f') return ch - 'a' + 10;
  if (ch >= 'A' && ch <= 'F') return ch - 'A' + 10;
  return -1;
}

// "*" stands for any run of characters, "?" for one; letters without regard to case. Goes back to the last
// "*" only, so that no pattern takes long.
bool MatchesPattern(Str name, Str pattern) {
  CharUpperA(name.Lock(name.Length() + 1));
  name.Unlock();
  CharUpperA(pattern.Lock(pattern.Length() + 1));
  pattern.Unlock();
  const char* n = name.Chars();
  const char* p = pattern.Chars();
  const char* star = nullptr;
  const char* starName = nullptr;
  while (*n) {
    if (*p == '*') {
      star = ++p;
      starName = n;
    } else if (*p == '?' || *p == *n) {
      ++p;
      ++n;
    } else if (star) {
      p = star;
      n = ++starName;
    } else {
      return false;
    }
  }
  while (*p == '*') ++p;
  return *p == '\0';
}

// "<prefix>...<.dll>" without regard to case.
bool IsLibraryName(const Str& name, const Str& prefix) {
  if (!name.IBeginsWith(prefix)) return false;
  FSPath path(name);
  Str ext;
  return path.GetExtension(ext) && ext.ICompare(kLibraryExt) == 0;
}

// Which files count as the product's libraries.
struct LibraryNames {
  Str prefix;
  Str pattern;
};

// The script may name the libraries otherwise than the product does: what stands before the pattern's first
// wildcard takes the place of the product's prefix, and a bare beginning such as "VT6" stands for all names
// that begin so.
LibraryNames NamesOf(const char* given) {
  LibraryNames names = {Str(), Str(given)};
  if (names.pattern.View().find_first_of("*?.") == std::string_view::npos) names.pattern += '*';
  const size_t head = names.pattern.View().find_first_of("*?");
  names.prefix = names.pattern.View().substr(0, head);
  if (names.prefix.IsEmpty()) names.prefix = LibraryPrefix(true);
  return names;
}

// Calls visitor(path) for each library of the prefix in the folder until it returns false. An unusable prefix
// has none.
template <class Visitor>
void ForEachLibrary(const char* folder, const Str& prefix, Visitor visitor) {
  if (prefix.IsEmpty() || !*folder) return;
  FS::DirIterator files(folder, FS::DirIterator::modeFiles, false);
  Str path;
  bool isDir = false;
  while (files.Next(path, isDir)) {
    const FSPath langLibPath(path);
    if (!IsLibraryName(langLibPath.FileName(), prefix)) continue;
    if (!VT_ASSERT(langLibPath.IsFullPath(), "langLibPath.IsFullPath()")) continue;
    if (!visitor(path)) return;
  }
}

// Whether the file is a library of exactly that language. Quiet about others: they are listed, and complained
// about, elsewhere.
bool IsLibraryOf(const Str& path, int32_t language) {
  bool several = false;
  return GetFileLanguage(path, several) == language;
}

// Whether the running program itself is of that language.
bool IsProgramLanguage(int32_t language) {
  Str path;
  return Folders::GetModulePath(path) && IsLibraryOf(path, language);
}

// The path that the name of the language gives its library; empty when there is no such file.
Str NamedLibrary(const Str& folder, const Str& prefix, const Str& abbreviation) {
  if (abbreviation.IsEmpty()) return Str();
  Str name = prefix;
  name += abbreviation;
  name += kLibraryExt;
  const Str path = JoinPath(folder, name);
  return FSPath(path).IsFullPath() && FS::IsFile(path) ? path : Str();
}

// A file without a version says nothing against its name.
bool SaysNoLanguage(const Str& path) {
  bool several = false;
  return GetFileLanguage(path, several) == kNoLanguage && !several;
}

// The file named after the language, else the first of the prefix whose own language it is, else the named
// one if it tells no language; empty when there is none.
Str FindLibrary(const Str& folder, int32_t language, const Str& abbreviation) {
  const Str prefix = LibraryPrefix(false);
  if (prefix.IsEmpty() || folder.IsEmpty()) return Str();
  const Str named = NamedLibrary(folder, prefix, abbreviation);
  if (!named.IsEmpty() && IsLibraryOf(named, language)) return named;
  Str found;
  ForEachLibrary(folder, prefix, [&](const Str& path) {
    if (!IsLibraryOf(path, language)) return true;
    found = path;
    return false;
  });
  if (found.IsEmpty() && !named.IsEmpty() && SaysNoLanguage(named)) found = named;
  return found;
}

// The languages of the libraries, each once, and the program's own.
std::vector<int32_t> ListLibraries(const char* folder, const Str& prefix, const char* pattern) {
  std::vector<int32_t> list;
  list.reserve(kListGrowth);
  const auto add = [&list](int32_t language) {
    if (language == kNoLanguage) return;
    for (const int32_t known : list)
      if (known == language) return;
    list.push_back(language);
  };
  ForEachLibrary(folder, prefix, [&](const Str& path) {
    if (MatchesPattern(FSPath(path).FileName(), pattern)) add(ModuleLanguage(path));
    return true;
  });
  add(ModuleLanguage(nullptr));
  return list;
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

// Steps 1 and 2 of the choice: what was asked for.
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

int32_t ParseLanguage(const char* text) {
  if (!text) return kNoLanguage;
  if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) text += 2;
  int32_t language = 0;
  for (int32_t digit; (digit = HexDigit(*text)) >= 0; ++text) {
    language = language * 16 + digit;
    if (language > 0xFFFF) return kNoLanguage;  // ids have 16 bits
  }
  return language == 0 ? kNoLanguage : language;
}

Str LanguageText(int32_t language) {
  return Message("0x<id:04x>,<ISOAbbrev>", kTemplateLiteral)
      .With("id", language)
      .With("ISOAbbrev", LanguageAbbreviation(language))
      .Text();
}

Str LanguageAbbreviation(int32_t language) {
  const LCID locale = MAKELCID(static_cast<WORD>(language), SORT_DEFAULT);
  char abbreviation[16] = "";
  if (GetLocaleInfoA(locale, LOCALE_SISO639LANGNAME, abbreviation, sizeof abbreviation) > 0) {
    CharLowerA(abbreviation);
    return abbreviation;
  }
  const DWORD error = GetLastError();
  LogLine(Message("App::GetLocaleInfoW(): <APIFunc> failed. GetLastError = <ErrCode:d>, locale = <Locale>",
                  kTemplateLiteral)
              .With("APIFunc", "GetLocaleInfoA")
              .With("ErrCode", static_cast<int32_t>(error))
              .With("Locale", static_cast<int32_t>(locale)));
  return Str();
}

int32_t BestIndex(const std::vector<int32_t>& list, int32_t wanted) {
  if (wanted == kNoLanguage) return -1;
  for (size_t i = 0; i < list.size(); ++i)
    if (list[i] == wanted) return static_cast<int32_t>(i);
  for (size_t i = 0; i < list.size(); ++i)
    if ((list[i] & kPrimaryLanguageMask) == (wanted & kPrimaryLanguageMask)) return static_cast<int32_t>(i);
  return -1;
}

Str LibraryPrefix(bool product) {
  Str prefix = product ? "<ShortAppKey><MajVersion>" : "<ShortAppKey>su<MajVersion>";
  AppVars().Expand(prefix);
  const bool longEnough = VT_ASSERT(prefix.Length() > 2, "prefix.Length() > 2");
  const bool startsWell = VT_ASSERT(prefix.Chars()[0] != '<', "prefix[0] != '<'");
  const char last = prefix.IsEmpty() ? '\0' : prefix.Chars()[prefix.Length() - 1];
  const bool endsWell = VT_ASSERT(last != '>', "prefix[prefix.Length() - 1] != '>'");
  return longEnough && startsWell && endsWell ? prefix : Str();
}

int32_t ModuleLanguage(const char* path) {
  Str own;
  if (!path) {
    if (!Folders::GetModulePath(own)) return kNoLanguage;
    path = own;
  }
  bool several = false;
  if (!IsWholeImage(path))
    LogError(Message("<LibPath> is damaged; no language is read from it.", kTemplateLiteral)
                 .With("LibPath", path));
  const int32_t language = GetFileLanguage(path, several);
  VT_ASSERT(language != kNoLanguage, "Version resource contains more than one language.");
  return language;
}

std::vector<int32_t> ListLanguages(const char* folder) {
  return ListLibraries(folder, LibraryPrefix(false), "*");
}

std::vector<int32_t> ListProductLanguages(const char* folder, const char* pattern) {
  const LibraryNames names = NamesOf(pattern);
  return ListLibraries(folder, names.prefix, names.pattern);
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
