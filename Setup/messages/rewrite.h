#pragma once
// Rewriting a text from left to right where replaced pieces are searched again. Pure.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Where a call that fills placeholders ends, however its text goes on: a variable that
// contains itself has no end.
struct ExpandLimits {
  int32_t replacements = 10000;
  size_t size = 1024 * 1024;  // bytes; the last replacement may go beyond
};

// A text split into a part that is done and a rest that is still searched. Replacing at the front of the rest
// costs the size of the new piece only, however long the rest is.
class TextRewriter {
 public:
  explicit TextRewriter(std::string text) : mRest(std::move(text)) {}

  // What has not been passed yet.
  std::string_view Rest() const { return std::string_view(mRest).substr(mAt); }
  size_t Size() const { return mDone.size() + mRest.size() - mAt; }

  // Passes the first `count` bytes of the rest.
  void Pass(size_t count) {
    mDone.append(mRest, mAt, count);
    mAt += count;
  }
  // Replaces the first `count` bytes of the rest by `piece`, which then begins the rest.
  void Replace(size_t count, std::string_view piece) {
    size_t room = mAt + count;
    if (piece.size() > room) {
      // Room for more than this piece, so that repeated replacements do not move the rest each time.
      const size_t more = piece.size() - room + mRest.size();
      mRest.insert(0, more, '\0');
      room += more;
    }
    mAt = room - piece.size();
    piece.copy(mRest.data() + mAt, piece.size());
  }
  // Lengthens the rest at its end.
  void Append(std::string_view more) { mRest += more; }
  // The whole text; the rewriter is spent.
  std::string Take() {
    mDone.append(mRest, mAt);
    return std::move(mDone);
  }

 private:
  std::string mDone;
  std::string mRest;
  size_t mAt = 0;  // start of the rest in mRest; what lies before is free room
};
