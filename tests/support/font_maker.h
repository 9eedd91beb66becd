#pragma once
// Makes small valid TrueType fonts (about 1,100 bytes: .notdef, a box, and a space), so that no font file
// lies in the tree.
#include <string>

struct FontSpec {
  std::string family = "Veltrane Test";
  std::string style = "Regular";  // "Bold", "Italic" and "Bold Italic" set the style bits as well
  std::string fullName;           // "": family, and the style unless it is Regular
  std::string macFamily;          // "": the same as the Windows names
  std::string macFullName;
  unsigned revision = 0x00010000;  // fontRevision of the head table, 16.16
  bool macNames = true;            // name records of the Macintosh platform
  bool windowsNames = true;        // name records of the Windows platform
};

// All names are ISO 8859-1 (Macintosh names: ASCII).
std::string MakeFont(const FontSpec& spec);
