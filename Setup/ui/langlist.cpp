#include "ui/langlist.h"

#include <windows.h>

#include "base/assert.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "platform/fileversion.h"
#include "platform/folders.h"
#include "platform/fs.h"
#include "platform/fsdirit.h"
#include "platform/fspath.h"
#include "ui/language.h"

namespace {

constexpr char kLibraryExt[] = ".dll";

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

// Calls visitor(path) for each library of the prefix in the folder until it returns false. An
// unusable prefix has none.
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

// The languages of the libraries, each once, and the program's own.
std::vector<int32_t> ListLibraries(const char* folder, const Str& prefix, const char* pattern) {
  std::vector<int32_t> list;
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

}  // namespace

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

bool IsLibraryOf(const char* path, int32_t language) {
  bool several = false;
  return GetFileLanguage(path, several) == language;
}

std::vector<int32_t> ListLanguages(const char* folder) {
  return ListLibraries(folder, LibraryPrefix(false), "*");
}

std::vector<int32_t> ListProductLanguages(const char* folder, const char* pattern) {
  const LibraryNames names = NamesOf(pattern);
  return ListLibraries(folder, names.prefix, names.pattern);
}

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
