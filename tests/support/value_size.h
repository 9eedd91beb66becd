#pragma once
// Notes the sizes that the program gives for registry values. What was stored does not show them: the system
// adds the end of a text that was not counted.
#include <windows.h>

#include <vector>

#include "support/import_double.h"

class ValueSizes {
 public:
  ValueSizes() : mDouble("RegSetValueExA", reinterpret_cast<void*>(&Set)) {
    sSizes.clear();
    sOriginal = reinterpret_cast<decltype(sOriginal)>(mDouble.Original());
  }

  const std::vector<DWORD>& Given() const { return sSizes; }

 private:
  static LSTATUS WINAPI Set(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    sSizes.push_back(size);
    return sOriginal(key, name, reserved, type, data, size);
  }

  inline static decltype(&RegSetValueExA) sOriginal = nullptr;
  inline static std::vector<DWORD> sSizes;
  ImportDouble mDouble;
};
