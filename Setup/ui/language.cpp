#include "ui/language.h"

#include <windows.h>

#include "messages/format.h"
#include "messages/logfile.h"

namespace {

constexpr int32_t kPrimaryLanguageMask = 0x3FF;

int32_t HexDigit(char ch) {
  if (ch >= '0' && ch <= '9') return ch - '0';
  if (ch >= 'a' && ch <= 'f') return ch - 'a' + 10;
  if (ch >= 'A' && ch <= 'F') return ch - 'A' + 10;
  return -1;
}

}  // namespace

int32_t ParseLanguage(const char* text) {
  if (!text) return kNoLanguage;
  if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) text += 2;
  int32_t language = 0;
  for (int32_t digit; (digit = HexDigit(*text)) >= 0; ++text) {
    language = language * 16 + digit;
    if (language > 0xFFFF) return kNoLanguage;  // ids have 16 bits
  }
  return language == 0 ? kNoLanguage : language;
}

Str LanguageText(int32_t language) {
  return Message("0x<id:04x>,<ISOAbbrev>", kTemplateLiteral)
      .With("id", language)
      .With("ISOAbbrev", LanguageAbbreviation(language))
      .Text();
}

Str LanguageAbbreviation(int32_t language) {
  const LCID locale = MAKELCID(static_cast<WORD>(language), SORT_DEFAULT);
  char abbreviation[16] = "";
  if (GetLocaleInfoA(locale, LOCALE_SISO639LANGNAME, abbreviation, sizeof abbreviation) > 0) {
    CharLowerA(abbreviation);
    return abbreviation;
  }
  const DWORD error = GetLastError();
  LogLine(Message("App::GetLocaleInfoW(): <APIFunc> failed. GetLastError = <ErrCode:d>, locale = <Locale>",
                  kTemplateLiteral)
              .With("APIFunc", "GetLocaleInfoA")
              .With("ErrCode", static_cast<int32_t>(error))
              .With("Locale", static_cast<int32_t>(locale)));
  return Str();
}

int32_t BestIndex(const std::vector<int32_t>& list, int32_t wanted) {
  if (wanted == kNoLanguage) return -1;
  for (size_t i = 0; i < list.size(); ++i)
    if (list[i] == wanted) return static_cast<int32_t>(i);
  for (size_t i = 0; i < list.size(); ++i)
    if ((list[i] & kPrimaryLanguageMask) == (wanted & kPrimaryLanguageMask)) return static_cast<int32_t>(i);
  return -1;
}
