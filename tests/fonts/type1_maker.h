#pragma once
// Small Type 1 font files for the tests: the first segment of an outline file, and a metrics file.
#include <string>

#include "support/bytes.h"

// An outline file that begins with the line given (without its end).
inline std::string MakePfbOfLine(const std::string& line, const std::string& lineEnd = "\r") {
  const std::string text = line + lineEnd + "12 dict begin\rcurrentfile eexec\r";
  ByteWriter w(ByteWriter::Order::kLittle);
  w.U8(0x80);
  w.U8(1);
  w.U32(static_cast<unsigned>(text.size()));
  w.Text(text);
  w.U8(0x80);
  w.U8(3);
  return w.Bytes();
}

inline std::string MakePfb(const char* name, const char* version) {
  return MakePfbOfLine(std::string("%!PS-AdobeFont-1.0: ") + name + " " + version);
}

struct PfmSpec {
  std::string faceName = "Veltrane PS";
  std::string psName = "VeltranePS";
  unsigned italic = 0;
  unsigned weight = 400;
};

constexpr size_t kPfmHeader = 117;
constexpr size_t kPfmFaceAt = 105;
constexpr size_t kPfmDriverInfoAt = 139;

inline std::string MakePfm(const PfmSpec& spec) {
  ByteWriter w(ByteWriter::Order::kLittle);
  w.U16(0x0100);
  w.U32(0);  // size, set at the end
  w.Text("(c)");
  w.PadTo(66);
  for (const unsigned value : {0x81u, 10u, 300u, 300u, 800u, 0u, 0u}) w.U16(value);
  w.U8(spec.italic);
  w.U8(0);
  w.U8(0);
  w.U16(spec.weight);
  w.PadTo(kPfmHeader);
  w.U16(30);  // size of the extension
  w.PadTo(147);
  w.PatchU32(kPfmFaceAt, static_cast<unsigned>(w.Size()));
  w.Text(spec.faceName);
  w.U8(0);
  w.PatchU32(kPfmDriverInfoAt, static_cast<unsigned>(w.Size()));
  w.Text(spec.psName);
  w.U8(0);
  w.PatchU32(2, static_cast<unsigned>(w.Size()));
  return w.Bytes();
}
