// Reading and writing the values of an INI store as texts and numbers.
#include <limits>
#include <string>

#include "base/assert.h"
#include "stores/ini.h"
#include "stores/inistore.h"

namespace {

// The raw value of a key of the current section.
bool Find(IniStore* ini, const char* key, std::string& value) {
  if (!VT_ASSERT(ini != nullptr, "ini") || !VT_ASSERT(key != nullptr, "key")) return false;
  return ini->text.ReadKey(key, value);
}

}  // namespace

bool IniReadString(IniStore* ini, const char* key, char* buffer, int32_t size) {
  std::string value;
  if (!Find(ini, key, value)) return false;
  if (buffer != nullptr && size > 0) lstrcpynA(buffer, value.c_str(), size);
  return true;
}

bool IniReadStr(IniStore* ini, const char* key, Str& value) {
  std::string found;
  if (!Find(ini, key, found)) return false;
  value = found.c_str();
  return true;
}

void IniGetString(IniStore* ini, const char* key, const char* def, char* buffer, int32_t size) {
  if (buffer == nullptr || size <= 0) return;
  lstrcpynA(buffer, def != nullptr ? def : "", size);
  IniReadString(ini, key, buffer, size);
}

void IniGetStr(IniStore* ini, const char* key, const char* def, Str& value) {
  value = Str(def != nullptr ? def : "");  // `def` may be the text of `value` itself
  IniReadStr(ini, key, value);
}

bool IniReadLong(IniStore* ini, const char* key, int32_t& value) {
  std::string found;
  if (!Find(ini, key, found)) return false;
  value = ParseIniNumber(found);
  return true;
}

void IniGetLong(IniStore* ini, const char* key, int32_t def, int32_t& value) {
  value = def;
  IniReadLong(ini, key, value);
}

bool IniReadShort(IniStore* ini, const char* key, int16_t& value) {
  int32_t temp = 0;
  if (!IniReadLong(ini, key, temp)) return false;
  VT_ASSERT(temp >= std::numeric_limits<int16_t>::min() && temp <= std::numeric_limits<int16_t>::max(),
            "(temp >= SHRT_MIN) && (temp <= SHRT_MAX)");
  value = static_cast<int16_t>(temp);
  return true;
}

void IniGetShort(IniStore* ini, const char* key, int16_t def, int16_t& value) {
  value = def;
  IniReadShort(ini, key, value);
}

bool IniReadByte(IniStore* ini, const char* key, uint8_t& value) {
  int16_t temp = 0;
  if (!IniReadShort(ini, key, temp)) return false;
  value = static_cast<uint8_t>(temp & 0xFF);
  return true;
}

bool IniWriteLong(IniStore* ini, const char* key, int32_t value) {
  return IniWriteString(ini, key, std::to_string(value).c_str());
}

bool IniWriteShort(IniStore* ini, const char* key, int16_t value) { return IniWriteLong(ini, key, value); }
