#include "messages/restext.h"

#include "messages/res.h"

bool GetRunText(unsigned firstId, int32_t index, Str& text) {
  return GetResStr(firstId, index, text, 0) && text != "!END!";
}

Str JoinResStrings(unsigned firstId) {
  Str text;
  Str piece;
  for (int32_t i = 0; i < kMaxRunLength && GetRunText(firstId, i, piece); ++i) text.Append(piece);
  return text;
}

StrList ListResStrings(unsigned firstId, int32_t count, uint32_t flags) {
  StrList list(count);
  for (int32_t i = 0; i < count; ++i) {
    Str text;
    if (GetResStr(firstId, i, text, flags)) list.Replace(i, text);
  }
  return list;
}
