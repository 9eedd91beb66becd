#include "messages/restext.h"

#include "messages/res.h"

Str JoinResStrings(unsigned firstId) {
  constexpr int32_t kMaxPieces = 100;
  Str text;
  for (int32_t i = 0; i < kMaxPieces; ++i) {
    Str piece;
    if (!ResStringExists(firstId + static_cast<unsigned>(i)) || !GetResStr(firstId, i, piece, 0) ||
        piece == "!END!")
      break;
    text.Append(piece);
  }
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
