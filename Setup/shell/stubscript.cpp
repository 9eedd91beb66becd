#include "shell/stubscript.h"

#include "base/assert.h"
#include "stores/register.h"

namespace {

// Paths in the script are written with "/".
Str KeyPath(const char* path) {
  Str text(path);
  for (int32_t i = 0; i < text.Length(); ++i)
    if (text.Chars()[i] == '/') text.SetAt(i, '\\');
  return text;
}

bool OpenOrCreate(HKEY parent, const char* path, RegKey& key) {
  const Str keyPath = KeyPath(path);
  if (keyPath.IsEmpty()) return false;
  constexpr REGSAM kAccess = KEY_READ | KEY_WRITE;
  return key.Open(parent, keyPath, kAccess) == ERROR_SUCCESS ||
         key.Create(parent, keyPath, kAccess) == ERROR_SUCCESS;
}

}  // namespace

bool StubScript::Execute(const char* command) {
  const char* operand = *command ? command + 1 : command;
  switch (*command) {
    case '@':
      return OpenRoot(operand);
    case '/':
      return OpenSub(operand);
    case '=':
      return SetDefault(operand);
    case '-':
      return Delete(operand);
    default:
      VT_FAIL("first char must be @, /, -, or =");
      return false;
  }
}

bool StubScript::OpenRoot(const char* path) {
  mSubKey.Close();
  mRootKey.Close();
  return OpenOrCreate(HKEY_CLASSES_ROOT, path, mRootKey);
}

bool StubScript::OpenSub(const char* path) {
  mSubKey.Close();
  return VT_ASSERT(mRootKey, "rootKey") && OpenOrCreate(mRootKey.Get(), path, mSubKey);
}

bool StubScript::SetDefault(const char* text) {
  const HKEY key = mSubKey ? mSubKey.Get() : mRootKey.Get();
  if (!VT_ASSERT(key != nullptr, "rootKey")) return false;
  const DWORD size = static_cast<DWORD>(Str::Length(text)) + 1;
  return RegSetValueExA(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), size) == ERROR_SUCCESS;
}

bool StubScript::Delete(const char* path) {
  mSubKey.Close();
  const Str keyPath = KeyPath(path);
  // A key that is not there needs no deleting; an empty path would take the whole parent.
  if (!keyPath.IsEmpty()) RegDeleteKeyTree(mRootKey ? mRootKey.Get() : HKEY_CLASSES_ROOT, keyPath);
  return true;
}
