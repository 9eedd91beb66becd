#include "script/regcheck.h"

#include "messages/format.h"
#include "script/setupinf.h"
#include "stores/register.h"
#include "stores/regkey.h"

namespace {

constexpr char kOwnMark[] = "<ProgID>";

bool HasShellExtension(const RegPlace& place) {
  Str path(place.rootName);
  if (path.Find("REG*") != 0) path.Insert("REG*", 0);
  path.Append('\\');
  path.Append(place.keyPath);
  path.Append("\\ShellEx");
  return RegKeyOrValueExists(path, nullptr);
}

// Numbers and texts too long to be compared: somebody's value all the same.
bool HoldsOtherData(const RegPlace& place) {
  RegKey key;
  DWORD type = REG_NONE;
  DWORD size = 0;
  if (key.Open(place.root, place.keyPath, KEY_READ) != ERROR_SUCCESS ||
      RegQueryValueExA(key.Get(), place.valueName, nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
    return false;
  const bool isText = type == REG_SZ || type == REG_EXPAND_SZ;
  return size > (isText ? 1u : 0u);
}

bool SetText(const RegPlace& place, const char* text) {
  RegKey key;
  if (key.Create(place.root, place.keyPath, KEY_WRITE) != ERROR_SUCCESS) return false;
  const DWORD size = static_cast<DWORD>(Str::Length(text)) + 1;
  return RegSetValueExA(key.Get(), place.valueName, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), size) ==
         ERROR_SUCCESS;
}

bool IsEmptyKey(const RegPlace& place) {
  RegKey key;
  DWORD subKeys = 0;
  DWORD values = 0;
  return key.Open(place.root, place.keyPath, KEY_READ) == ERROR_SUCCESS &&
         RegQueryInfoKeyA(key.Get(), nullptr, nullptr, nullptr, &subKeys, nullptr, nullptr, &values, nullptr,
                          nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
         subKeys == 0 && values == 0;
}

}  // namespace

bool ParseRegPlace(const char* text, RegPlace& place) {
  if (SplitRegistryLine(text, place.rootName, place.keyPath, place.valueName)) {
    place.root = RootKeyFromName(place.rootName);
    if (place.root != nullptr) return true;
  }
  LogScriptError(
      Message("The registry path \"<RegPath>\" names no key.", kTemplateLiteral).With("RegPath", text));
  return false;
}

RegAddResult AddValueUnlessClaimed(const RegPlace& place, const char* text) {
  const int32_t present = RegValueContains(place.root, place.keyPath, place.valueName, text, nullptr);
  if (present == kRegMissing && HoldsOtherData(place)) return RegAddResult::kForeignValue;
  if (present == kRegMissing && HasShellExtension(place)) return RegAddResult::kShellExtension;
  if (present == kRegOther &&
      RegValueContains(place.root, place.keyPath, place.valueName, kOwnMark, nullptr) != kRegContains)
    return RegAddResult::kForeignValue;
  return SetText(place, text) ? RegAddResult::kAdded : RegAddResult::kFailed;
}

bool RemoveValueIfOurs(const RegPlace& place, const char* text) {
  if (RegValueContains(place.root, place.keyPath, place.valueName, text, nullptr) != kRegContains)
    return false;
  RegDeleteSubKeyValue(place.root, place.keyPath, place.valueName);
  if (place.valueName.IsEmpty() && IsEmptyKey(place)) RegDeleteKeyA(place.root, place.keyPath);
  return true;
}
