#include "platform/fileversion.h"

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <vector>

#include "base/dynlib.h"
#include "base/errormode.h"
#include "platform/fio.h"
#include "platform/imagefile.h"

namespace {

enum VersionFunc : int32_t { kInfoSize, kInfo, kQuery, kNumFuncs };
constexpr const char* kFuncNames[kNumFuncs] = {"GetFileVersionInfoSizeA", "GetFileVersionInfoA",
                                               "VerQueryValueA"};

using InfoSizeFunc = DWORD(WINAPI*)(LPCSTR, LPDWORD);
using InfoFunc = BOOL(WINAPI*)(LPCSTR, DWORD, DWORD, LPVOID);
using QueryFunc = BOOL(WINAPI*)(LPCVOID, LPCSTR, LPVOID*, PUINT);

// Languages and code pages under which a FileVersion text is looked for when the file's own list has none.
constexpr const char* kUsualTranslations[] = {"040904b0", "040904e4", "040c04b0",
                                              "040c04e4", "000004b0", "000004e4"};

// A damaged resource gives 16-bit lengths that point past its end. That much zeroed room behind it keeps
// every such place inside the block.
constexpr size_t kSlack = 0x30000;

constexpr DWORD kFixedSignature = 0xFEEF04BD;

constexpr uint32_t kLargestImage = 0x10000000;  // bytes; no language library comes near it

// The version resource of one file, read by the system's version library.
class VersionResource {
 public:
  explicit VersionResource(const char* path) : mLibrary("version.dll", kFuncNames, kNumFuncs, 0) {
    const auto infoSize = mLibrary.FuncAs<InfoSizeFunc>(kInfoSize);
    const auto info = mLibrary.FuncAs<InfoFunc>(kInfo);
    if (!path || !infoSize || !info || !mLibrary.Func(kQuery) || !IsWholeImage(path)) return;
    CriticalErrorGuard guard;
    DWORD ignored = 0;
    const DWORD size = infoSize(path, &ignored);
    if (size == 0 || size > MAXLONG - kSlack) return;
    mBlock.resize(size + kSlack);
    if (!info(path, 0, size, mBlock.data())) mBlock.clear();
  }

  bool IsLoaded() const { return !mBlock.empty(); }

  // The data at `subBlock` and its length as the library tells it (bytes; characters for texts); null when
  // there is none or it does not lie in the resource.
  const std::byte* Query(const char* subBlock, UINT& length) {
    length = 0;
    void* data = nullptr;
    if (!mLibrary.FuncAs<QueryFunc>(kQuery)(mBlock.data(), subBlock, &data, &length)) return nullptr;
    const std::byte* const begin = mBlock.data();
    const std::byte* const found = static_cast<const std::byte*>(data);
    if (!found || found < begin || found > begin + mBlock.size()) return nullptr;
    return length <= static_cast<size_t>(begin + mBlock.size() - found) ? found : nullptr;
  }

 private:
  DynLib mLibrary;
  std::vector<std::byte> mBlock;
};

constexpr char kTranslation[] = "\\VarFileInfo\\Translation";

// The FileVersion text of one translation, given as eight hexadecimal digits.
bool FileVersionOf(VersionResource& resource, const char* translation, Str& text) {
  Str place;
  place.Format("\\StringFileInfo\\%s\\FileVersion", translation);
  UINT length = 0;
  const std::byte* const data = resource.Query(place, length);
  if (!data) return false;
  const Str found(std::string_view(reinterpret_cast<const char*>(data), length));
  text = found;
  text.Trim();
  return !text.IsEmpty();
}

bool FileVersionText(VersionResource& resource, Str& text) {
  UINT length = 0;
  const std::byte* const data = resource.Query(kTranslation, length);
  if (data && length >= 2 * sizeof(WORD)) {
    WORD first[2];
    std::memcpy(first, data, sizeof first);
    Str translation;
    translation.Format("%04x%04x", static_cast<unsigned>(first[0]), static_cast<unsigned>(first[1]));
    if (FileVersionOf(resource, translation, text)) return true;
  }
  for (const char* translation : kUsualTranslations)
    if (FileVersionOf(resource, translation, text)) return true;
  return false;
}

bool FixedVersionText(VersionResource& resource, Str& text) {
  UINT length = 0;
  const std::byte* const data = resource.Query("\\", length);
  VS_FIXEDFILEINFO info = {};
  if (!data || length < sizeof info) return false;
  std::memcpy(&info, data, sizeof info);
  if (info.dwSignature != kFixedSignature) return false;
  text.Format("%u.%u.%u.%u", static_cast<unsigned>(HIWORD(info.dwFileVersionMS)),
              static_cast<unsigned>(LOWORD(info.dwFileVersionMS)),
              static_cast<unsigned>(HIWORD(info.dwFileVersionLS)),
              static_cast<unsigned>(LOWORD(info.dwFileVersionLS)));
  return true;
}

}  // namespace

bool IsWholeImage(const char* path) {
  FioFile file;
  uint32_t size = 0;
  if (FioOpen(path, fioREAD, file) != fioOK || FioGetSize(file, size) != fioOK || size == 0 ||
      size > kLargestImage)
    return false;
  std::vector<std::byte> bytes(size);
  uint32_t got = 0;
  if (FioRead(file, size, bytes.data(), &got) != fioOK || got != size) return false;
  return ImageFileSize(bytes) <= size && ImageResourcesLieInFile(bytes);
}

bool GetFileVersionText(const char* path, Str& text) {
  VersionResource resource(path);
  Str result;
  if (!resource.IsLoaded()) return false;
  if (!FileVersionText(resource, result) && !FixedVersionText(resource, result)) return false;
  text = result;
  return true;
}

int32_t GetFileLanguage(const char* path, bool& several) {
  several = false;
  VersionResource resource(path);
  if (!resource.IsLoaded()) return -1;
  UINT length = 0;
  const std::byte* const data = resource.Query(kTranslation, length);
  constexpr UINT kOneTranslation = 2 * sizeof(WORD);  // language, code page
  if (!data || length < kOneTranslation) return -1;
  several = length > kOneTranslation;
  if (several) return -1;
  WORD language = 0;
  std::memcpy(&language, data, sizeof language);
  return language;
}
