#include "messages/format.h"

#include <string>

#include "base/assert.h"
#include "messages/endless.h"
#include "messages/res.h"
#include "messages/varlist.h"

namespace {

// Decodes `text` when there is one; a faulty specification keeps its pad and width and counts as "d".
FormatSpec SpecOf(const char* text) {
  FormatSpec spec;
  if (text == nullptr || text[0] == '\0') return spec;
  VT_ASSERT(DecodeFormatSpec(text, spec), "DecodeFormatSpec(fmtSpecStr,fmtSpec)");
  return spec;
}

}  // namespace

Str MakeTemplate(const char* text, uint32_t flags) {
  if (!VT_ASSERT(text != nullptr, "format")) return Str();
  Str result(text);
  if ((flags & kTemplateExpand) != 0) AppVars().Expand(result);
  return result;
}

Str MakeTemplate(unsigned strID, uint32_t flags) {
  Str text;
  if (!GetResStr(strID, 0, text, 0)) ReportMissingString();
  return MakeTemplate(text, flags);
}

bool ReplaceItem(Str& text, const char* name, const void* item, FmtFunc fmtFunc) {
  const bool hasName = VT_ASSERT(name != nullptr && name[0] != '\0', "var && (Str::Length(var) > 0)");
  const bool hasItem = VT_ASSERT(item != nullptr, "item");
  const bool hasFunc = VT_ASSERT(fmtFunc != nullptr, "fmtFunc");
  if (!hasName || !hasItem || !hasFunc || text.Find('<') < 0) return false;

  std::string filled(text.View());
  const ReplaceResult result =
      ReplacePlaceholders(filled, name, [&](std::string_view fmtSpec, std::string& piece) {
        Str out;
        const bool produced = fmtFunc(std::string(fmtSpec).c_str(), item, out);
        piece = out.View();
        return produced;
      });
  text = filled.c_str();
  if (result.stopped) LogEndless("item", name);
  return result.filled;
}

bool ReplaceItem(Str& text, const char* name, const char* item) {
  return ReplaceItem(text, name, item, FormatText);
}

bool ReplaceItem(Str& text, const char* name, int32_t item) {
  return ReplaceItem(text, name, &item, FormatInt);
}

bool FormatInt(const char* fmtSpec, const void* item, Str& out) {
  const FormatSpec spec = SpecOf(fmtSpec);
  bool known = true;
  std::string text = NumberText(*static_cast<const int32_t*>(item), spec, known);
  VT_ASSERT(known, "bad format character");
  PadText(text, spec);
  out.Append(text);
  return true;
}

bool FormatText(const char* fmtSpec, const void* item, Str& out) {
  std::string text(static_cast<const char*>(item));
  PadText(text, SpecOf(fmtSpec));
  out.Append(text);
  return true;
}

bool DecodeFormatSpec(const char* fmtSpecStr, FormatSpec& fmtSpec) {
  if (!VT_ASSERT(fmtSpecStr != nullptr, "fmtSpecStr")) return false;
  return ParseFormatSpec(fmtSpecStr, fmtSpec);
}

int32_t TakePlaceholder(Str& text, const char* name, int32_t index, Str* fmtSpec) {
  if (!VT_ASSERT(index >= 0, "index >= 0")) index = 0;
  VT_ASSERT(fmtSpec != nullptr, "fmtSpec");
  if (index > text.Length() || name == nullptr) return -1;
  const Placeholder found = FindPlaceholder(text.View(), name, static_cast<size_t>(index));
  if (!found.IsFound()) return -1;
  if (fmtSpec != nullptr) *fmtSpec = found.fmtSpec;
  text.Delete(static_cast<int32_t>(found.pos), static_cast<int32_t>(found.size));
  return static_cast<int32_t>(found.pos);
}
