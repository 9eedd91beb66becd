#include "ui/browse.h"

#include <dlgs.h>

#include "platform/fs.h"
#include "resources/ids.h"
#include "ui/answerer.h"
#include "ui/help_control.h"
#include "ui/ui_fixture.h"

namespace {

const char kCaption[] = "Choix du dossier";

class BrowseTest : public UiTest {
 protected:
  void SetUp() override {
    UiTest::SetUp();
    ASSERT_TRUE(FS::GetCurDir(mCurrent));
    mStart = mDir.MakeFolder("start");
    mDir.MakeFolder("start\\inner");
    mFolder = mStart.c_str();
  }
  void TearDown() override {
    Str now;
    EXPECT_TRUE(FS::GetCurDir(now));
    EXPECT_EQ(now, mCurrent);
    UiTest::TearDown();
  }
  static std::string Rows(HWND list) {
    std::string rows;
    for (LRESULT i = 0; i < SendMessageA(list, LB_GETCOUNT, 0, 0); ++i) {
      char text[MAX_PATH] = "";
      SendMessageA(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
      rows += std::string("\"") + text + "\" ";
    }
    return rows;
  }
  // Opens a folder of the list as a double click does.
  static void Open(HWND dialog, const char* name) {
    const HWND list = GetDlgItem(dialog, lst2);
    LRESULT row = LB_ERR;
    ASSERT_TRUE(WaitUntil([&] {
      // Windows shows the bare name, Wine shows it in brackets.
      for (const std::string& shown : {std::string(name), "[" + std::string(name) + "]"})
        if (row == LB_ERR)
          row = SendMessageA(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                             reinterpret_cast<LPARAM>(shown.c_str()));
      return row != LB_ERR;
    })) << name
        << " is not among " << Rows(list);
    SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(row), 0);
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(lst2, LBN_DBLCLK), reinterpret_cast<LPARAM>(list));
  }

  Str mCurrent;
  std::string mStart;
  Str mFolder;
};

TEST_F(BrowseTest, OkTakesTheStartFolder) {
  Answerer answerer(kCaption, [](HWND dialog) { Press(dialog, IDOK); });
  EXPECT_TRUE(BrowseForFolder(nullptr, mFolder));
  EXPECT_EQ(mFolder.ICompare(mStart.c_str()), 0) << mFolder.Chars();
}

TEST_F(BrowseTest, OkTakesTheFolderEntered) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Open(dialog, "inner");
    Press(dialog, IDOK);
  });
  EXPECT_TRUE(BrowseForFolder(nullptr, mFolder));
  EXPECT_EQ(mFolder.ICompare((mStart + "\\inner").c_str()), 0) << mFolder.Chars();
}

TEST_F(BrowseTest, CancelLeavesTheFolder) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Open(dialog, "inner");
    Press(dialog, IDCANCEL);
  });
  EXPECT_FALSE(BrowseForFolder(nullptr, mFolder));
  EXPECT_EQ(mFolder, mStart.c_str());
  EXPECT_EQ(Log(), "");
}

TEST_F(BrowseTest, FolderThatDoesNotExistYetStartsAboveIt) {
  mFolder = (mStart + "\\not\\yet").c_str();
  Answerer answerer(kCaption, [](HWND dialog) { Press(dialog, IDOK); });
  EXPECT_TRUE(BrowseForFolder(nullptr, mFolder));
  EXPECT_EQ(mFolder.ICompare(mStart.c_str()), 0) << mFolder.Chars();
}

TEST_F(BrowseTest, FolderNamedLikeThePlaceholderIsNotEntered) {
  mDir.MakeFolder("start\\Junk");
  Answerer answerer(kCaption, [](HWND dialog) { Press(dialog, IDOK); });
  EXPECT_TRUE(BrowseForFolder(nullptr, mFolder));
  EXPECT_EQ(mFolder.ICompare(mStart.c_str()), 0) << mFolder.Chars();
}

TEST_F(BrowseTest, DriveRootKeepsItsBackslash) {
  mFolder = "C:\\";
  Answerer answerer(kCaption, [](HWND dialog) { Press(dialog, IDOK); });
  EXPECT_TRUE(BrowseForFolder(nullptr, mFolder));
  EXPECT_EQ(mFolder.ICompare("C:\\"), 0) << mFolder.Chars();
}

TEST_F(BrowseTest, NewFolderIsCreatedAndEntered) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Press(dialog, IDC_BROWSE_CREATE);
    {
      Answerer inner("Nouveau dossier", [](HWND asked) {
        SendMessageA(GetDlgItem(asked, IDC_NEWFOLDER_NAME), WM_SETTEXT, 0, reinterpret_cast<LPARAM>("neu"));
        Press(asked, IDOK);
      });
    }
    EXPECT_TRUE(IsWindow(dialog));
    Press(dialog, IDOK);
  });
  EXPECT_TRUE(BrowseForFolder(nullptr, mFolder));
  EXPECT_EQ(mFolder.ICompare((mStart + "\\neu").c_str()), 0) << mFolder.Chars();
  EXPECT_TRUE(IsFolder(mStart + "\\neu"));
}

TEST_F(BrowseTest, NewFolderIsCreatedInTheFolderEntered) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Open(dialog, "inner");
    Press(dialog, IDC_BROWSE_CREATE);
    {
      Answerer inner("Nouveau dossier", [](HWND asked) {
        SendMessageA(GetDlgItem(asked, IDC_NEWFOLDER_NAME), WM_SETTEXT, 0, reinterpret_cast<LPARAM>("neu"));
        Press(asked, IDOK);
      });
    }
    Press(dialog, IDOK);
  });
  EXPECT_TRUE(BrowseForFolder(nullptr, mFolder));
  EXPECT_EQ(mFolder.ICompare((mStart + "\\inner\\neu").c_str()), 0) << mFolder.Chars();
}

TEST_F(BrowseTest, CancelledNewFolderStaysWhereItWas) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Press(dialog, IDC_BROWSE_CREATE);
    {
      Answerer inner("Nouveau dossier", [](HWND asked) { Press(asked, IDCANCEL); });
    }
    Press(dialog, IDOK);
  });
  EXPECT_TRUE(BrowseForFolder(nullptr, mFolder));
  EXPECT_EQ(mFolder.ICompare(mStart.c_str()), 0) << mFolder.Chars();
}

TEST_F(BrowseTest, DialogBelongsToItsOwner) {
  TestWindow owner("Fond");
  HWND seen = nullptr;
  {
    Answerer answerer(kCaption, [&](HWND dialog) {
      seen = GetWindow(dialog, GW_OWNER);
      Press(dialog, IDCANCEL);
    });
    EXPECT_FALSE(BrowseForFolder(owner.Get(), mFolder));
  }
  EXPECT_EQ(seen, owner.Get());
}

TEST_F(BrowseTest, HelpButtonAsksForTheDialogsTopic) {
  const std::string file = mDir.Write("setup.chm", "help");
  AppSetVariable("HelpFile", file.c_str());
  HelpControl control(mDir.Join("calls.txt"));
  TestWindow owner("Fond");
  {
    Answerer answerer(kCaption, [](HWND dialog) {
      Press(dialog, pshHelp);
      Press(dialog, IDCANCEL);
    });
    EXPECT_FALSE(BrowseForFolder(owner.Get(), mFolder));
  }
  EXPECT_EQ(control.Calls(), file + "|15|1800\n");
}

TEST_F(BrowseTest, FailedDialogIsLoggedWithItsNumber) {
  SetProgramModule(GetModuleHandleA("ntdll.dll"));  // has no template 1800
  EXPECT_FALSE(BrowseForFolder(nullptr, mFolder));
  EXPECT_EQ(mFolder, mStart.c_str());
  const std::string log = Log();
  const std::string start = "/nBrowse dlg failed: CommDlgExtendedError() = ";
  ASSERT_EQ(log.substr(0, start.size()), start);
  const std::string rest = log.substr(start.size());
  const size_t digits = rest.find_first_not_of("0123456789");
  EXPECT_GT(digits, 0u);
  EXPECT_EQ(rest.substr(digits), "/n\n");
}

TEST_F(BrowseTest, CancelAfterAFailureIsNoFailure) {
  SetProgramModule(GetModuleHandleA("ntdll.dll"));
  EXPECT_FALSE(BrowseForFolder(nullptr, mFolder));
  SetProgramModule(nullptr);
  EXPECT_NE(Log(), "");
  Answerer answerer(kCaption, [](HWND dialog) { Press(dialog, IDCANCEL); });
  EXPECT_FALSE(BrowseForFolder(nullptr, mFolder));
  EXPECT_EQ(Log(), "");
}

TEST_F(BrowseTest, SilentRunShowsNothing) {
  BeSilent();
  EXPECT_FALSE(BrowseForFolder(nullptr, mFolder));
  EXPECT_EQ(mFolder, mStart.c_str());
  EXPECT_EQ(VisibleDialogs(), 0);
}

}  // namespace
