// key_access deny|allow ROOT\PATH [-hold MS]     makes a registry key read-only for everybody, or open again
// ROOT: HKLM, HKCU, HKCR. Prints "ready". The change is forgotten when the last program of the prefix ends:
// -hold keeps this one running. Not inherited: a subkey can still be created in the key.
#include <windows.h>

#include <sddl.h>

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  const std::string path = argv[2];
  const std::string name = path.substr(0, path.find('\\'));
  HKEY root = nullptr;
  if (name == "HKLM") root = HKEY_LOCAL_MACHINE;
  if (name == "HKCU") root = HKEY_CURRENT_USER;
  if (name == "HKCR") root = HKEY_CLASSES_ROOT;
  if (!root || path.size() <= name.size()) return 2;
  const bool deny = std::string(argv[1]) == "deny";
  HKEY key = nullptr;
  LONG error = RegOpenKeyExA(root, path.c_str() + name.size() + 1, 0, WRITE_DAC | READ_CONTROL, &key);
  if (error == ERROR_SUCCESS) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (ConvertStringSecurityDescriptorToSecurityDescriptorA(deny ? "D:P(A;;KR;;;WD)" : "D:P(A;;KA;;;WD)",
                                                             SDDL_REVISION_1, &descriptor, nullptr))
      error = RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor);
    else
      error = static_cast<LONG>(GetLastError());
  }
  if (error != ERROR_SUCCESS) {
    printf("error %ld\n", error);
    return 1;
  }
  RegCloseKey(key);
  puts("ready");
  fflush(stdout);
  if (argc > 4) Sleep(strtoul(argv[4], nullptr, 0));
  return 0;
}
