#include "ui/langpick.h"

#include <windows.h>

#include "base/runstate.h"
#include "resources/ids.h"
#include "ui/dlog.h"
#include "ui/language.h"

namespace {

// The language's name as Windows shows it; its text form when Windows does not know it.
Str LanguageName(int32_t language) {
  const LCID locale = MAKELCID(static_cast<WORD>(language), SORT_DEFAULT);
  char name[128] = "";
  if (GetLocaleInfoA(locale, LOCALE_SLANGUAGE | LOCALE_USE_CP_ACP, name, sizeof name) > 0) return name;
  return LanguageText(language);
}

void FillList(HWND list, const std::vector<int32_t>& languages) {
  for (size_t i = 0; i < languages.size(); ++i) {
    const Str name = LanguageName(languages[i]);
    const LRESULT row = SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.Chars()));
    // A sorted list shows the entries in another order.
    SendMessageA(list, LB_SETITEMDATA, static_cast<WPARAM>(row), static_cast<LPARAM>(i));
  }
}

// Marks the row of the first language: the one taken when nothing is chosen.
void MarkFirst(HWND list) {
  const LRESULT rows = SendMessageA(list, LB_GETCOUNT, 0, 0);
  for (LRESULT row = 0; row < rows; ++row)
    if (SendMessageA(list, LB_GETITEMDATA, static_cast<WPARAM>(row), 0) == 0)
      SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(row), 0);
}

// Index in the list of languages of the marked row; the first without one.
INT_PTR Chosen(HWND list) {
  const LRESULT row = SendMessageA(list, LB_GETCURSEL, 0, 0);
  return row == LB_ERR ? 0 : SendMessageA(list, LB_GETITEMDATA, static_cast<WPARAM>(row), 0);
}

INT_PTR CALLBACK LanguageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      FillWindowTexts(dialog, AppVars(), true);
      FillList(GetDlgItem(dialog, IDC_LANGUAGE_LIST), *reinterpret_cast<const std::vector<int32_t>*>(lParam));
      MarkFirst(GetDlgItem(dialog, IDC_LANGUAGE_LIST));
      CentreWindow(dialog);
      return TRUE;
    case WM_COMMAND: {
      const int id = LOWORD(wParam);
      if (id == IDOK || (id == IDC_LANGUAGE_LIST && HIWORD(wParam) == LBN_DBLCLK)) {
        EndDialog(dialog, Chosen(GetDlgItem(dialog, IDC_LANGUAGE_LIST)));
        return TRUE;
      }
      if (id != IDCANCEL) return FALSE;
      EndDialog(dialog, 0);
      return TRUE;
    }
    default:
      return FALSE;
  }
}

}  // namespace

int32_t PickLanguage(const std::vector<int32_t>& languages) {
  if (languages.empty()) return -1;
  if (languages.size() < 2 || Run().IsQuiet()) return 0;
  const INT_PTR chosen =
      RunDialog(IDD_LANGUAGE, MainWindow(), LanguageProc, reinterpret_cast<LPARAM>(&languages));
  return chosen >= 0 && static_cast<size_t>(chosen) < languages.size() ? static_cast<int32_t>(chosen) : 0;
}
