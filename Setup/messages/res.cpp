#include "messages/res.h"

#include <string>
#include <string_view>
#include <vector>

#include "base/assert.h"
#include "messages/restextrules.h"
#include "messages/varlist.h"

namespace {

constexpr unsigned kBlockStrings = 16;      // in one resource, each with its length before it
constexpr int32_t kMaxPieces = 100;         // of one text; a chain that leads back into itself ends here
constexpr int32_t kSharedStringLen = 1024;  // buffer of a piece for the shared text, terminator included
constexpr int32_t kTagStringLen = 256;      // the same where only the tag is wanted

HMODULE gLanguageModule = nullptr;
HMODULE gProgramModule = nullptr;

// Whether the string lies in its block: the lengths in a damaged library may lead out of it.
bool LiesInBlock(HMODULE module, unsigned id) {
  const HRSRC found =
      FindResourceA(module, MAKEINTRESOURCEA(id / kBlockStrings + 1), reinterpret_cast<LPCSTR>(RT_STRING));
  const HGLOBAL loaded = found != nullptr ? LoadResource(module, found) : nullptr;
  if (loaded == nullptr) return false;
  const auto* block = static_cast<const WCHAR*>(LockResource(loaded));
  const DWORD room = SizeofResource(module, found) / sizeof(WCHAR);
  DWORD at = 0;
  for (unsigned i = 0; i < id % kBlockStrings && at < room; ++i) at += 1U + block[at];
  return at < room && block[at] <= room - at - 1;
}

int32_t LoadFrom(HMODULE module, unsigned id, char* buffer, int32_t size) {
  if (!LiesInBlock(module, id)) return 0;
  const int length = LoadStringA(module, id, buffer, size);
  return length > 0 ? length : 0;
}

// The joined pieces of string strID + index, each loaded into a buffer of `size` bytes, without the tag.
bool LoadText(unsigned strID, int32_t index, int32_t size, Str& result) {
  result = "";
  std::vector<char> buffer(static_cast<size_t>(size));
  unsigned id = strID + static_cast<unsigned>(index);
  for (int32_t count = 0; count < kMaxPieces; ++count) {
    const int32_t length = LoadResString(id, buffer.data(), size);
    if (length == 0 && count == 0) return false;
    if (size == MAX_RES_STRING_LEN)
      VT_ASSERT(length != MAX_RES_STRING_LEN - 1, "Str::Length(buf) != (MAX_RES_STRING_LEN - 1)");
    const ResPiece piece = SplitPiece({buffer.data(), static_cast<size_t>(length)}, id, strID);
    result.Append(piece.text);
    if (piece.nextId == 0) break;
    id = piece.nextId;
  }

  bool tagOpen = false;
  const std::string text(WithoutTag(result.View(), tagOpen));
  VT_ASSERT(!tagOpen, "pos >= 1");
  result = text.c_str();
  return true;
}

// String strID + index as it stands, in the caller's buffer.
template <size_t size>
std::string_view LoadRaw(unsigned strID, int32_t index, char (&buffer)[size]) {
  LoadResString(strID + static_cast<unsigned>(index), buffer, size);
  return buffer;
}

}  // namespace

void SetLanguageModule(HMODULE module) { gLanguageModule = module; }

HMODULE GetLanguageModule() { return gLanguageModule; }

void SetProgramModule(HMODULE module) { gProgramModule = module; }

HMODULE GetProgramModule() { return gProgramModule != nullptr ? gProgramModule : GetModuleHandleA(nullptr); }

HMODULE ModuleForResource(unsigned id) {
  return id < kFirstProgramId && gLanguageModule != nullptr ? gLanguageModule : GetProgramModule();
}

int32_t LoadResString(unsigned id, char* buffer, int32_t size) {
  if (buffer == nullptr || size <= 0) return 0;
  buffer[0] = '\0';
  if (!VT_ASSERT(id != 0, "id != 0")) return 0;
  const HMODULE chosen = ModuleForResource(id);
  int32_t length = LoadFrom(chosen, id, buffer, size);
  if (length == 0 && chosen != GetProgramModule()) length = LoadFrom(GetProgramModule(), id, buffer, size);
  if (length == 0) buffer[0] = '\0';
  return length;
}

bool GetResStr(unsigned strID, int32_t index, Str& result, uint32_t flags, int32_t room) {
  if (!LoadText(strID, index, room, result)) return false;
  if ((flags & kResExpand) != 0) AppVars().Expand(result);
  return true;
}

void GetResStr(unsigned strID, int32_t index, char* buffer, int32_t strMax, uint32_t flags) {
  if (buffer == nullptr || strMax <= 0) return;
  Str temp;
  GetResStr(strID, index, temp, flags);
  VT_ASSERT(temp.Length() < strMax, "temp.Length() < strMax");
  lstrcpynA(buffer, temp, strMax);
}

const char* GetResStr(unsigned strID) {
  static Str shared;
  if (!LoadText(strID, 0, kSharedStringLen, shared))
    ReportMissingString();
  else
    AppVars().Expand(shared);
  return shared;
}

void ReportMissingString() { VT_FAIL("Bad param to GetResStr: no string for strID = 0x<StrID,x>."); }

void GetResStrAfterTag(unsigned strID, int32_t index, Str& result) {
  char buffer[MAX_RES_STRING_LEN];
  const std::string_view text = LoadRaw(strID, index, buffer);
  result = text.substr(text.find('!') + 1);  // without a mark: the whole text
}

void GetResStrBeforeTag(unsigned strID, int32_t index, Str& result) {
  char buffer[MAX_RES_STRING_LEN];
  const std::string_view text = LoadRaw(strID, index, buffer);
  result = text.substr(0, text.find('!'));
}

void GetResStrTag(unsigned strID, int32_t index, Str& result) {
  char buffer[kTagStringLen];
  result = TagOf(LoadRaw(strID, index, buffer));
}
