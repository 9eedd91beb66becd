// make_library FILE VERSION [OPTION...]     writes a small library that holds resources only
//   VERSION     four numbers, for example 1.2.3.4, or "none" for no version resource
//   -product VERSION   the product version (the file version by default)
//   -type N            the file type (2, a library, by default)
//   -language HEX HEX  language and code page, for example 040c 04e4; may be given several times
//   -text NAME TEXT    a text of the version resource
//   -string ID TEXT    a text of the string table
#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/library_maker.h"

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  LibrarySpec spec;
  const std::string version = argv[2];
  spec.hasVersion = version != "none";
  if (spec.hasVersion) spec.fileVersion = spec.productVersion = VersionNumber(version);
  for (int i = 3; i < argc; ++i) {
    const std::string option = argv[i];
    if (option == "-product" && i + 1 < argc) {
      spec.productVersion = VersionNumber(argv[++i]);
    } else if (option == "-type" && i + 1 < argc) {
      spec.fileType = static_cast<unsigned>(strtoul(argv[++i], nullptr, 0));
    } else if (option == "-language" && i + 2 < argc) {
      spec.translations.push_back({static_cast<unsigned>(strtoul(argv[i + 1], nullptr, 16)),
                                   static_cast<unsigned>(strtoul(argv[i + 2], nullptr, 16))});
      i += 2;
    } else if (option == "-text" && i + 2 < argc) {
      spec.texts.push_back({argv[i + 1], argv[i + 2]});
      i += 2;
    } else if (option == "-string" && i + 2 < argc) {
      spec.strings[static_cast<unsigned>(strtoul(argv[i + 1], nullptr, 0))] = argv[i + 2];
      i += 2;
    } else {
      return 2;
    }
  }
  const std::string bytes = MakeLibrary(spec);
  FILE* file = fopen(argv[1], "wb");
  if (!file) return 1;
  const bool written = fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return fclose(file) == 0 && written ? 0 : 1;
}
