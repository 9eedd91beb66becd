#include "ui/cnewfold.h"

#include "platform/fs.h"
#include "resources/ids.h"
#include "ui/answerer.h"
#include "ui/ui_fixture.h"

namespace {

const char kCaption[] = "Nouveau dossier";

void Type(HWND dialog, const std::string& name) {
  SendMessageA(GetDlgItem(dialog, IDC_NEWFOLDER_NAME), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
}

class NewFolderTest : public UiTest {
 protected:
  void SetUp() override {
    UiTest::SetUp();
    ASSERT_TRUE(FS::GetCurDir(mFormer));
    ASSERT_TRUE(FS::SetCurDir(mDir.Path().c_str()));
  }
  void TearDown() override {
    EXPECT_TRUE(FS::SetCurDir(mFormer));
    UiTest::TearDown();
  }
  Str mFormer;
  Str mCreated;
};

TEST_F(NewFolderTest, RelativeNameIsCreatedBelowTheCurrentFolder) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Type(dialog, "neu");
    Press(dialog, IDOK);
  });
  EXPECT_TRUE(AskNewFolder(nullptr, mCreated));
  EXPECT_EQ(mCreated, mDir.Join("neu").c_str());
  EXPECT_TRUE(IsFolder(mDir.Join("neu")));
}

TEST_F(NewFolderTest, FullPathIsTakenAsItIs) {
  const std::string path = mDir.Join("a\\b\\c");
  Answerer answerer(kCaption, [&](HWND dialog) {
    Type(dialog, path);
    Press(dialog, IDOK);
  });
  EXPECT_TRUE(AskNewFolder(nullptr, mCreated));
  EXPECT_EQ(mCreated, path.c_str());
  EXPECT_TRUE(IsFolder(path));
}

TEST_F(NewFolderTest, BlanksAroundTheNameAreDropped) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Type(dialog, "  neu ");
    Press(dialog, IDOK);
  });
  EXPECT_TRUE(AskNewFolder(nullptr, mCreated));
  EXPECT_EQ(mCreated, mDir.Join("neu").c_str());
}

TEST_F(NewFolderTest, CancelCreatesNothing) {
  Answerer answerer(kCaption, [](HWND dialog) {
    Type(dialog, "neu");
    Press(dialog, IDCANCEL);
  });
  EXPECT_FALSE(AskNewFolder(nullptr, mCreated));
  EXPECT_TRUE(mCreated.IsEmpty());
  EXPECT_FALSE(mDir.Has("neu"));
}

TEST_F(NewFolderTest, EmptyNameKeepsTheDialog) {
  Answerer answerer(kCaption, [](HWND dialog) {
    SendMessageA(dialog, WM_COMMAND, IDOK, 0);
    EXPECT_TRUE(IsWindow(dialog));
    Press(dialog, IDCANCEL);
  });
  EXPECT_FALSE(AskNewFolder(nullptr, mCreated));
}

TEST_F(NewFolderTest, FailureIsShownAndTheDialogStays) {
  mDir.Write("file", "x");
  const std::string path = mDir.Join("file\\sub");
  const std::string message =
      "Installation de Veltrane 6.0c ne peut pas cr\xe9"
      "er le dossier " +
      path + ".";
  {
    Answerer answerer(kCaption, [&](HWND dialog) {
      Type(dialog, path);
      Press(dialog, IDOK);
      {
        Answerer box("Setup", [](HWND shown) { Press(shown, IDOK); });
      }
      EXPECT_TRUE(IsWindow(dialog));
      Type(dialog, "besser");
      Press(dialog, IDOK);
    });
    EXPECT_TRUE(AskNewFolder(nullptr, mCreated));
  }
  EXPECT_EQ(mCreated, mDir.Join("besser").c_str());
  EXPECT_EQ(Log(), message + "\n\n");
}

TEST_F(NewFolderTest, SilentRunAsksNothing) {
  BeSilent();
  EXPECT_FALSE(AskNewFolder(nullptr, mCreated));
  EXPECT_EQ(VisibleDialogs(), 0);
}

}  // namespace
