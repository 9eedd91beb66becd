#pragma once
// Message templates: text with <Name> and <Name:fmtSpec> placeholders, filled from the application variables
// and then from the caller's items.
#include <cstdint>

#include "base/str.h"
#include "messages/formatspec.h"

// Appends an item's text to `out`; false makes the placeholder disappear.
using FmtFunc = bool (*)(const char* fmtSpec, const void* item, Str& out);

enum TemplateFlags : uint32_t { kTemplateLiteral = 0, kTemplateExpand = 1 };

Str MakeTemplate(const char* text, uint32_t flags);
Str MakeTemplate(unsigned strID, uint32_t flags);
// Fills every placeholder of that name; true when at least one got text. Ends after 10,000 replacements or at
// 1 MiB with a log line that names the item.
bool ReplaceItem(Str& text, const char* name, const void* item, FmtFunc fmtFunc);
bool ReplaceItem(Str& text, const char* name, const char* item);
bool ReplaceItem(Str& text, const char* name, int32_t item);
bool FormatInt(const char* fmtSpec, const void* item, Str& out);   // item: int32_t
bool FormatText(const char* fmtSpec, const void* item, Str& out);  // item: NUL-terminated text
[[nodiscard]] bool DecodeFormatSpec(const char* fmtSpecStr, FormatSpec& fmtSpec);
// Takes the first placeholder of that name at or after `index` out of the text: its position, or
// -1, and its specification.
int32_t TakePlaceholder(Str& text, const char* name, int32_t index, Str* fmtSpec);

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
