#include "stores/varlist2.h"

#include <cstring>
#include <span>
#include <string>

#include "base/assert.h"
#include "platform/fio.h"
#include "stores/configcodec.h"
#include "stores/readfile.h"

namespace {

uint32_t ReadEntries(VarList& list, const char* path) {
  FioFile file;
  if (FioOpen(path, fioREAD, file) != fioOK) return kCfgOpenFailed;
  uint32_t size = 0;
  std::string bytes;
  // The bytes, and the entries cut out of them.
  if (FioGetSize(file, size) != fioOK || !MemoryAvailable(size_t{2} * size)) return kCfgTransferFailed;
  if (!ReadWholeFile(file, bytes)) return kCfgTransferFailed;
  ConfigContents contents;
  DecodeConfig(std::as_bytes(std::span(bytes)), contents);
  for (const auto& [name, value] : contents.entries) {
    // Each text is followed by its NUL, so the views end where C texts do.
    list.Set(name.data(), value.data(), true);
  }
  return contents.valid ? kCfgOK : kCfgBadFile;
}

// False when memory is short.
bool Encode(const VarList& list, std::string& bytes) {
  ConfigEncoder encoder;
  size_t size = 0;
  list.ForEach([&](const char* name, const char* value, bool) {
    size += std::strlen(name) + std::strlen(value) + 3;
    return true;
  });
  if (!MemoryAvailable(2 * size)) return false;
  encoder.Reserve(size);
  list.ForEach([&](const char* name, const char* value, bool isMutable) {
    encoder.Add(name, value, !isMutable);
    return true;
  });
  bytes = encoder.Finish();
  return true;
}

FioResult CreateOrTruncate(const char* path, FioFile& file) {
  const FioResult result = FioOpen(path, fioWRITE_TRUNC, file);
  return result == fioNOT_FOUND ? FioCreate(path, fioWRITE, file) : result;
}

}  // namespace

uint32_t LoadSection(IniStore* store, const char* section) {
  if (!IniFindSection(store, section)) return kCfgOpenFailed;
  Str key;
  Str value;
  for (bool first = true; IniNextKey(store, first, nullptr, key, &value); first = false) {
    if (!value.IsEmpty()) AppVars().Set(key, value, true);
  }
  return kLoadSectionOK;
}

uint32_t ReadConfigFile(VarList& list, const char* path) {
  if (!VT_ASSERT(path != nullptr, "path")) return kCfgOpenFailed;
  return ReadEntries(list, path);
}

uint32_t WriteConfigFile(const VarList& list, const char* path) {
  if (!VT_ASSERT(path != nullptr, "path")) return kCfgOpenFailed;
  std::string bytes;
  if (!Encode(list, bytes)) return kCfgNoMemory;
  FioFile file;
  if (CreateOrTruncate(path, file) != fioOK) return kCfgOpenFailed;
  const FioResult written = FioWrite(file, static_cast<uint32_t>(bytes.size()), bytes.data());
  const FioResult closed = FioClose(file);
  return written == fioOK && closed == fioOK ? kCfgOK : kCfgTransferFailed;
}
