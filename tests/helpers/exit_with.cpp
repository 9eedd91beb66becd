// exit_with CODE [TEXT]     prints the text and ends with the code (32 bits)
// exit_with hang            never ends
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  if (std::string(argv[1]) == "hang") Sleep(INFINITE);
  if (argc > 2) puts(argv[2]);
  return static_cast<int>(strtoul(argv[1], nullptr, 0));
}
