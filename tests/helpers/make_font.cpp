// make_font FILE FAMILY [STYLE [REVISION [FULLNAME]]]     writes a small valid TrueType font
// make_font FILE FAMILY STYLE REVISION FULLNAME MACFAMILY MACFULLNAME     the Macintosh names differ
#include <cstdio>
#include <cstdlib>

#include "support/font_maker.h"

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  FontSpec spec;
  spec.family = argv[2];
  if (argc > 3) spec.style = argv[3];
  if (argc > 4) spec.revision = static_cast<unsigned>(strtod(argv[4], nullptr) * 65536.0 + 0.5);
  if (argc > 5) spec.fullName = argv[5];
  if (argc > 6) spec.macFamily = argv[6];
  if (argc > 7) spec.macFullName = argv[7];
  const std::string bytes = MakeFont(spec);
  FILE* file = fopen(argv[1], "wb");
  if (!file) return 1;
  const bool written = fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return fclose(file) == 0 && written ? 0 : 1;
}
