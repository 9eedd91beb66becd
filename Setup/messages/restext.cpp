#include "messages/restext.h"

namespace {

constexpr int32_t kMessagePieceRoom = 1024 + 1;  // bytes, terminator included

}  // namespace

bool GetRunText(unsigned firstId, int32_t index, Str& text, int32_t room) {
  return GetResStr(firstId, index, text, 0, room) && text != "!END!";
}

Str JoinResStrings(unsigned firstId) {
  Str text;
  Str piece;
  for (int32_t i = 0; i < kMaxRunLength && GetRunText(firstId, i, piece, kMessagePieceRoom); ++i)
    text.Append(piece);
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
