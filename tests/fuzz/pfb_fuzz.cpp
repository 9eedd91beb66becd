// sources: fonts/psreader.cpp
// The first line of an outline file is the bytes up to its line end, its words are kept in order, and a
// version survives being written and read again.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include "fonts/psreader.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

void CheckVersion(std::string_view text) {
  uint32_t version = 0;
  if (!ParsePsVersion(text, version)) return;
  Require(text.find('.') != std::string_view::npos);
  const std::string plain = std::to_string(version >> 16) + "." + std::to_string(version & 0xFFFF);
  uint32_t again = 0;
  Require(ParsePsVersion(plain, again) && again == version);
}

void CheckComment(std::string_view line) {
  PfbComment comment;
  if (!ParsePfbComment(line, comment)) return;
  const size_t mark = line.find("%!");
  Require(mark != std::string_view::npos);
  const size_t name = line.find(comment.psName, mark + 2);
  Require(name != std::string_view::npos && line.find(comment.version, name) != std::string_view::npos);
  Require(!comment.psName.empty() && comment.psName.size() <= kPsMaxName && !comment.version.empty());
  Require((comment.psName + comment.version).find_first_of(std::string_view(" \t\0", 3)) ==
          std::string::npos);
  CheckVersion(comment.version);
  PfbComment again;
  Require(ParsePfbComment("%!tag " + comment.psName + " " + comment.version, again));
  Require(again.psName == comment.psName && again.version == comment.version);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view all(reinterpret_cast<const char*>(data), size);
  const auto bytes = std::as_bytes(std::span<const uint8_t>(data, size));
  std::string line = "left from before";
  const PfbResult result = PfbCommentLine(bytes, line);
  Require((result == PfbResult::kNoHeader) == (size < kPfbSegmentHeader));
  const std::string_view text = size < kPfbSegmentHeader ? std::string_view() : all.substr(kPfbSegmentHeader);
  const size_t end = text.substr(0, kPfbMaxLine).find_first_of("\r\n");
  if (result != PfbResult::kNoHeader) {
    Require((result == PfbResult::kOk) == (end != std::string_view::npos));
    Require(result == PfbResult::kOk || (result == PfbResult::kCutLine) == (text.size() < kPfbMaxLine));
    Require(line == text.substr(0, end != std::string_view::npos ? end : kPfbMaxLine));
  }
  // What is behind the longest line is never looked at.
  std::string cutLine;
  Require(PfbCommentLine(bytes.first(std::min(size, kPfbSegmentHeader + kPfbMaxLine)), cutLine) == result);
  Require(cutLine == line);
  CheckComment(line);
  CheckComment(all);
  CheckVersion(all);
  return 0;
}
