#pragma once
// Registry values that a program writes when it is registered: a table of (key below HKEY_CLASSES_ROOT,
// text); the text is the default value of its key.
#include <windows.h>

struct ClassValue {
  const char* key;
  const char* text;  // null: the path given to WriteClassValues
};

// False when a value could not be written; the rest is still tried.
bool WriteClassValues(const ClassValue* values, size_t count, const char* ownPath);
// Deletes a key of HKEY_CLASSES_ROOT with all below it. A missing key is no failure.
bool DeleteClassKey(const char* key);
