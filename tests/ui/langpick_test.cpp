#include "ui/langpick.h"

#include "resources/ids.h"
#include "ui/answerer.h"
#include "ui/ui_fixture.h"

namespace {

const char kCaption[] = "Choix de la langue";

class LangPickTest : public UiTest {
 protected:
  static std::vector<std::string> Rows(HWND dialog) {
    const HWND list = GetDlgItem(dialog, IDC_LANGUAGE_LIST);
    std::vector<std::string> rows;
    for (LRESULT i = 0; i < SendMessageA(list, LB_GETCOUNT, 0, 0); ++i) {
      char text[128] = "";
      SendMessageA(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
      rows.push_back(text);
    }
    return rows;
  }
  static void Mark(HWND dialog, int row) {
    SendMessageA(GetDlgItem(dialog, IDC_LANGUAGE_LIST), LB_SETCURSEL, static_cast<WPARAM>(row), 0);
  }
};

TEST_F(LangPickTest, ListShowsTheLanguagesInOrderWithTheFirstMarked) {
  std::vector<std::string> rows;
  LRESULT marked = -1;
  {
    Answerer answerer(kCaption, [&](HWND dialog) {
      rows = Rows(dialog);
      marked = SendMessageA(GetDlgItem(dialog, IDC_LANGUAGE_LIST), LB_GETCURSEL, 0, 0);
      Press(dialog, IDOK);
    });
    EXPECT_EQ(PickLanguage({0x040c, 0x0409, 0x0407}), 0);
  }
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].substr(0, 6), "French");
  EXPECT_EQ(rows[1].substr(0, 7), "English");
  EXPECT_EQ(rows[2].substr(0, 6), "German");
  EXPECT_EQ(marked, 0);
}

TEST_F(LangPickTest, TextNamesTheProduct) {
  bool found = false;
  {
    Answerer answerer(kCaption, [&](HWND dialog) {
      for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        if (TextOf(child) == "Choisissez la langue de l'interface utilisateur de Veltrane :") found = true;
      Press(dialog, IDOK);
    });
    PickLanguage({0x040c, 0x0409});
  }
  EXPECT_TRUE(found);
}

TEST_F(LangPickTest, MarkedLanguageIsTaken) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Mark(dialog, 1);
    Press(dialog, IDOK);
  });
  EXPECT_EQ(PickLanguage({0x040c, 0x0409, 0x0407}), 1);
}

TEST_F(LangPickTest, DoubleClickTakesTheLanguage) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Mark(dialog, 2);
    Press(dialog, IDC_LANGUAGE_LIST, LBN_DBLCLK);
  });
  EXPECT_EQ(PickLanguage({0x040c, 0x0409, 0x0407}), 2);
}

TEST_F(LangPickTest, CancelTakesTheFirst) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Mark(dialog, 1);
    PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
  });
  EXPECT_EQ(PickLanguage({0x040c, 0x0409}), 0);
}

TEST_F(LangPickTest, ClosingTheWindowTakesTheFirst) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Mark(dialog, 1);
    PostMessageA(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
  });
  EXPECT_EQ(PickLanguage({0x040c, 0x0409}), 0);
}

TEST_F(LangPickTest, NoMarkTakesTheFirst) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Mark(dialog, -1);
    Press(dialog, IDOK);
  });
  EXPECT_EQ(PickLanguage({0x040c, 0x0409}), 0);
}

TEST_F(LangPickTest, LanguageUnknownToWindowsIsShownAsItsId) {
  std::vector<std::string> rows;
  {
    Answerer answerer(kCaption, [&](HWND dialog) {
      rows = Rows(dialog);
      Press(dialog, IDOK);
    });
    PickLanguage({0x040c, 0x03ff});
  }
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[1].substr(0, 6), "0x03ff");
}

TEST_F(LangPickTest, OneLanguageIsTakenWithoutAsking) {
  EXPECT_EQ(PickLanguage({0x0409}), 0);
  EXPECT_EQ(VisibleDialogs(), 0);
}

TEST_F(LangPickTest, SilentRunTakesTheFirstWithoutAsking) {
  BeSilent();
  EXPECT_EQ(PickLanguage({0x040c, 0x0409}), 0);
  EXPECT_EQ(VisibleDialogs(), 0);
}

TEST_F(LangPickTest, EmptyListHasNoEntry) { EXPECT_EQ(PickLanguage({}), -1); }

}  // namespace
