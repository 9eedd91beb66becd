// Str: comparing and searching without regard to case.
#include <windows.h>

#include "base/leadbyte.h"
#include "base/str.h"

namespace {

// Reads text character by character, each as a lower-case number. Letters are folded one by one: a linguistic
// comparison would also take texts such as "ss" and a sharp s for equal, which no file or key name allows.
class FoldedReader {
 public:
  explicit FoldedReader(std::string_view text) : mText(text) {}

  // The next character, two bytes for a double-byte one; 0 at the end.
  unsigned Next() {
    if (mText.empty()) return 0;
    const size_t size = IsAnsiLeadByte(static_cast<unsigned char>(mText[0])) && mText.size() > 1 ? 2 : 1;
    char folded[2] = {mText[0], size == 2 ? mText[1] : '\0'};
    mText.remove_prefix(size);
    if (size == 2 || !IsPlain(folded[0])) {
      CharLowerBuffA(folded, static_cast<DWORD>(size));
    } else if (folded[0] >= 'A' && folded[0] <= 'Z') {
      folded[0] = static_cast<char>(folded[0] + ('a' - 'A'));
    }
    const unsigned first = static_cast<unsigned char>(folded[0]);
    return size == 2 ? first << 8 | static_cast<unsigned char>(folded[1]) : first;
  }

 private:
  static bool IsPlain(char ch) { return static_cast<unsigned char>(ch) < 0x80; }

  std::string_view mText;
};

int32_t FoldedCompare(std::string_view a, std::string_view b) {
  FoldedReader readA(a);
  FoldedReader readB(b);
  for (;;) {
    const unsigned charA = readA.Next();
    const unsigned charB = readB.Next();
    if (charA != charB) return charA < charB ? -1 : 1;
    if (charA == 0) return 0;
  }
}

}  // namespace

int32_t Str::ICompare(const char* a, const char* b) { return FoldedCompare(ViewOf(a), ViewOf(b)); }

bool Str::IBeginsWith(const char* start) const {
  CheckUnlocked();
  const std::string_view wanted = ViewOf(start);
  return FoldedCompare(View().substr(0, wanted.size()), wanted) == 0;
}

const char* Str::IFind(const char* text, const char* pattern) {
  const std::string_view searched = ViewOf(text);
  const std::string_view wanted = ViewOf(pattern);
  if (wanted.size() > searched.size()) return nullptr;
  for (size_t start = 0; start <= searched.size() - wanted.size(); ++start) {
    if (FoldedCompare(searched.substr(start, wanted.size()), wanted) == 0) return searched.data() + start;
  }
  return nullptr;
}
