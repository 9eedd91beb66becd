#pragma once
// Placeholders with a format specification, <Name> and <Name:fmtSpec>, and what a specification does. Pure.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "messages/rewrite.h"

constexpr size_t kMaxFmtSpec = 10;  // characters of a specification

struct FormatSpec {
  char format = 'd';  // d, x, X, o, c, u or 0 for none
  char pad = ' ';
  int32_t width = 0;
};

// Optional "0" (the pad), optional width, optional format character; what follows is not looked at.
// False when the format character is none of the known ones: `spec` then has the pad and width and
// keeps its former format.
[[nodiscard]] bool ParseFormatSpec(std::string_view text, FormatSpec& spec);

// A placeholder of a text: text[pos, pos + size).
struct Placeholder {
  size_t pos = std::string_view::npos;
  size_t size = 0;
  std::string_view fmtSpec;
  bool IsFound() const { return pos != std::string_view::npos; }
};

// The first placeholder of that name at or after `start`.
Placeholder FindPlaceholder(std::string_view text, std::string_view name, size_t start = 0);

// Digits of a number as `spec` asks. A format other than d, x, X, o and c counts as unsigned decimal and
// clears `known`.
std::string NumberText(int32_t value, const FormatSpec& spec, bool& known);

// Puts pad characters in front of the text up to the width; a width beyond the size of any template is
// limited to that.
void PadText(std::string& text, const FormatSpec& spec);

// Fills every placeholder of that name: make(fmtSpec, std::string& piece) gives its text, or false for none.
// The search goes on at the place of the replacement.
struct ReplaceResult {
  bool filled = false;   // at least one got a text
  bool stopped = false;  // ended at a limit
};
template <class Make>
ReplaceResult ReplacePlaceholders(std::string& text, std::string_view name, Make make,
                                  const ExpandLimits& limits = {}) {
  ReplaceResult result;
  TextRewriter rewriter(std::move(text));
  for (int32_t count = 0;; ++count) {
    const Placeholder found = FindPlaceholder(rewriter.Rest(), name);
    if (!found.IsFound()) break;
    result.stopped = count >= limits.replacements || rewriter.Size() > limits.size;
    if (result.stopped) break;
    std::string piece;
    if (make(found.fmtSpec, piece))
      result.filled = true;
    else
      piece.clear();
    rewriter.Pass(found.pos);
    rewriter.Replace(found.size, piece);
  }
  text = rewriter.Take();
  return result;
}
