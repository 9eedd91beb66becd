// note_run [ARG...]     plays a program or a document that setup opens: appends a line to "<own path>.ran"
// that says when it ran (milliseconds since Windows started, in decimal) and with which arguments, and ends
// with 0.
#include <windows.h>

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
  char path[MAX_PATH + 1] = "";
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  std::string line = std::to_string(GetTickCount());
  for (int i = 1; i < argc; ++i) line += std::string(" ") + argv[i];
  line += "\r\n";
  FILE* file = fopen((std::string(path) + ".ran").c_str(), "ab");
  if (file == nullptr) return 1;
  fwrite(line.data(), 1, line.size(), file);
  fclose(file);
  return 0;
}
