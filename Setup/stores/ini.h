#pragma once
// INI stores: sectioned key=value text over a file, a registry key, a memory block or a resource string list,
// loaded whole and written back at close. Results are true for success/found.
#include <windows.h>

#include <cstdint>
#include <memory>

#include "base/mem.h"
#include "base/str.h"

enum IniType : int32_t { iniFILE = 0, iniREG = 1, iniMEM = 2, iniSTRLIST = 3 };

constexpr int32_t kIniLineSize = 512;     // bytes of one line, terminator included
constexpr int32_t kIniMaxSections = 100;  // creating refuses beyond this

struct IniStore;
struct IniCloser {
  void operator()(IniStore* ini) const;  // IniClose
};
// Owns an open store; going out of scope closes it (and writes back when writable).
using IniStorePtr = std::unique_ptr<IniStore, IniCloser>;

// "REG*<root>\<subkey>": root key and subkey, false for an unknown root. Any other path: root null, subkey
// the path.
[[nodiscard]] bool IniParsePath(const char* path, HKEY& root, Str& subKey);
// Null when the store cannot be opened or loaded. A memory block must outlive its store.
[[nodiscard]] IniStorePtr IniOpen(const char* path, bool readOnly);
[[nodiscard]] IniStorePtr IniOpenMem(MemHandle& hand, bool readOnly);
[[nodiscard]] IniStorePtr IniOpenStrList(uint32_t number);
// Writes back (if writable) and releases; false when the write back failed.
bool IniClose(IniStorePtr& ini);
// Makes an empty store where there is none; false when it cannot be opened or written.
bool IniCreate(const char* path);

// Each makes a section the current one, which all functions below work on; names in any case, `prefix` null
// for every section. Without one there is no current section.
bool IniFindSection(IniStore* ini, const char* section, bool create = false);
bool IniNextSection(IniStore* ini, bool first, const char* prefix, Str& name);
void IniDeleteSection(IniStore* ini, const char* section);
void IniRenameSection(IniStore* ini, const char* newName);
// A copy of the current section's text, header included; an invalid handle without one.
MemHandle IniCopySection(IniStore* ini);
// Replaces the section's text, header included; a section that is missing is made.
bool IniSetSection(IniStore* ini, const char* section, MemHandle block);

// The first or next key whose name begins with `prefix` (null: any); `value` may be null.
bool IniNextKey(IniStore* ini, bool first, const char* prefix, Str& key, Str* value);
// As IniNextKey without prefix, but also yields every other non-empty, non-comment line (the trimmed line as
// key, the value empty), cuts a key that is too long, and joins a long line's pieces. For scripts.
bool IniNextLine(IniStore* ini, bool first, Str& key, Str& value);
// Steps over the section's first `count` lines (those that IniNextLine gives), so that the next one it gives
// is line `count`, counted from 0; false when the section has fewer. Costs the same for any count.
bool IniSeekLine(IniStore* ini, int32_t count);
bool IniDeleteKey(IniStore* ini, const char* key);
// Read: false when the key is missing, the result then stays. Get: the default for a missing key. A buffer
// holds `size` bytes; what is longer is cut.
bool IniReadString(IniStore* ini, const char* key, char* buffer, int32_t size);
bool IniReadStr(IniStore* ini, const char* key, Str& value);
void IniGetString(IniStore* ini, const char* key, const char* def, char* buffer, int32_t size);
void IniGetStr(IniStore* ini, const char* key, const char* def, Str& value);
bool IniReadLong(IniStore* ini, const char* key, int32_t& value);
void IniGetLong(IniStore* ini, const char* key, int32_t def, int32_t& value);
bool IniReadShort(IniStore* ini, const char* key, int16_t& value);
void IniGetShort(IniStore* ini, const char* key, int16_t def, int16_t& value);
bool IniReadByte(IniStore* ini, const char* key, uint8_t& value);
// Replaces the key's value, or adds the key.
bool IniWriteString(IniStore* ini, const char* key, const char* value);
// Adds a key line even where the key exists.
bool IniAddString(IniStore* ini, const char* key, const char* value);
bool IniWriteLong(IniStore* ini, const char* key, int32_t value);
bool IniWriteShort(IniStore* ini, const char* key, int16_t value);
// Empty, or only letters and digits of the system's language and "_".
bool KeyIsValid(const char* key);
