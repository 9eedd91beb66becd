#pragma once
// Message templates: text with <Name> and <Name:fmtSpec> placeholders, filled from the application variables and
// then from the caller's items.
#include <cstdint>

#include "base/str.h"

struct FormatSpec {
  char format = 'd';  // d, x, X, o, c, u or 0 for none
  char pad = ' ';
  int32_t width = 0;
};

// Appends an item's text to `out`; false makes the placeholder disappear.
using FmtFunc = bool (*)(const char* fmtSpec, const void* item, Str& out);

enum TemplateFlags : uint32_t { kTemplateLiteral = 0, kTemplateExpand = 1 };

Str MakeTemplate(const char* text, uint32_t flags);
Str MakeTemplate(unsigned strID, uint32_t flags);
// Fills every placeholder of that name; true when at least one got text.
bool ReplaceItem(Str& text, const char* name, const void* item, FmtFunc fmtFunc);
bool ReplaceItem(Str& text, const char* name, const char* item);
bool ReplaceItem(Str& text, const char* name, int32_t item);
bool FormatInt(const char* fmtSpec, const void* item, Str& out);   // item: int32_t
bool FormatText(const char* fmtSpec, const void* item, Str& out);  // item: NUL-terminated text
bool DecodeFormatSpec(const char* fmtSpecStr, FormatSpec& fmtSpec);

// A template being filled, in one expression:
//   LogLine(Message("Copying <Source> to <Dest>").With("Source", a).With("Dest", b));
class Message {
 public:
  explicit Message(const char* text, uint32_t flags = kTemplateExpand) : mText(MakeTemplate(text, flags)) {}
  explicit Message(unsigned strID, uint32_t flags = kTemplateExpand) : mText(MakeTemplate(strID, flags)) {}
  Message& With(const char* name, const char* item) {
    ReplaceItem(mText, name, item);
    return *this;
  }
  Message& With(const char* name, int32_t item) {
    ReplaceItem(mText, name, item);
    return *this;
  }
  const Str& Text() const { return mText; }
  operator const char*() const { return mText.Chars(); }

 private:
  Str mText;
};
