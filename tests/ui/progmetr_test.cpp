#include "ui/progmetr.h"

#include <optional>
#include <set>

#include "resources/ids.h"
#include "support/registry_guard.h"
#include "ui/answerer.h"
#include "ui/ui_fixture.h"

namespace {

const char kKey[] = "Software\\VeltraneUiTest";
const char kCaption[] = "Installation de Veltrane ...";

class ProgressTest : public UiTest {
 protected:
  void SetUp() override {
    UiTest::SetUp();
    AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneUiTest");
  }
  void TearDown() override {
    CloseProgressWindow();
    UiTest::TearDown();
  }
  static HWND Window() { return FindDialog(kCaption); }
  static std::optional<std::string> Message() { return RegistryString(HKEY_CURRENT_USER, kKey, "SetupMsg"); }
  static std::optional<std::string> Percent() {
    return RegistryString(HKEY_CURRENT_USER, kKey, "SetupPercent");
  }
  static DWORD TypeOf(const char* name) {
    KeyHandle key;
    DWORD type = 0;
    RegOpenKeyExA(HKEY_CURRENT_USER, kKey, 0, KEY_READ, key.Put());
    RegQueryValueExA(key.Get(), name, nullptr, &type, nullptr, nullptr);
    return type;
  }

  RegistryGuard mGuard{HKEY_CURRENT_USER, kKey};
};

// ---- the window ----

TEST_F(ProgressTest, WindowIsShownWithItsTexts) {
  EXPECT_FALSE(IsProgressWindowShown());
  ShowProgressWindow();
  EXPECT_TRUE(IsProgressWindowShown());
  const HWND window = Window();
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(TextOf(GetDlgItem(window, 2)), "&Quitter");
  EXPECT_EQ(TextOf(GetDlgItem(window, IDC_PROGRESS_LABEL)), "Fichiers copi\xe9s :");
  EXPECT_NE(GetDlgItem(window, 22), nullptr);
  EXPECT_NE(GetDlgItem(window, 24), nullptr);
  CloseProgressWindow();
  EXPECT_FALSE(IsProgressWindowShown());
  EXPECT_FALSE(IsWindow(window));
}

TEST_F(ProgressTest, WindowBelongsToTheMainWindow) {
  TestWindow main("Fond");
  SetMainWindow(main.Get());
  ShowProgressWindow();
  EXPECT_EQ(GetWindow(Window(), GW_OWNER), main.Get());
  CloseProgressWindow();
}

TEST_F(ProgressTest, ShowingTwiceKeepsTheOneWindow) {
  ShowProgressWindow();
  const HWND window = Window();
  ShowProgressWindow();
  EXPECT_EQ(Window(), window);
  EXPECT_EQ(VisibleDialogs(), 1);
}

TEST_F(ProgressTest, WindowCanBeShownAgainAfterClosing) {
  ShowProgressWindow();
  CloseProgressWindow();
  ShowProgressWindow();
  EXPECT_NE(Window(), nullptr);
}

TEST_F(ProgressTest, ClosingNoWindowDoesNothing) {
  CloseProgressWindow();
  EXPECT_FALSE(IsProgressWindowShown());
}

TEST_F(ProgressTest, WindowGoesWithTheMainWindow) {
  {
    TestWindow main("Fond");
    SetMainWindow(main.Get());
    ShowProgressWindow();
    ASSERT_TRUE(IsProgressWindowShown());
  }
  EXPECT_FALSE(IsProgressWindowShown());
  SetProgressText("plus tard");  // nothing to draw into, still logged
  EXPECT_EQ(Log(), "plus tard\n");
}

TEST_F(ProgressTest, NoProgressSuppressesTheWindowOnly) {
  AppSetVariable("no_progress", "1");
  ShowProgressWindow();
  EXPECT_FALSE(IsProgressWindowShown());
  EXPECT_EQ(VisibleDialogs(), 0);
  SetProgressText("Installation : C:\\x.dll");
  SetPercentage(40);
  EXPECT_EQ(Log(), "Installation : C:\\x.dll\n");
  EXPECT_EQ(Message(), "Installation : C:\\x.dll");
  EXPECT_EQ(Percent(), "40");
}

TEST_F(ProgressTest, NoProgressZeroShowsTheWindow) {
  AppSetVariable("no_progress", "0");
  ShowProgressWindow();
  EXPECT_TRUE(IsProgressWindowShown());
}

TEST_F(ProgressTest, SilentRunLogsAndReportsWithoutAWindow) {
  BeSilent();
  ShowProgressWindow();
  EXPECT_FALSE(IsProgressWindowShown());
  EXPECT_EQ(VisibleDialogs(), 0);
  SetProgressText("Texte");
  SetPercentage(3);
  EXPECT_EQ(Log(), "Texte\n");
  EXPECT_EQ(Message(), "Texte");
  EXPECT_EQ(Percent(), "3");
}

TEST_F(ProgressTest, TextGoesIntoTheFieldAndTheLog) {
  ShowProgressWindow();
  SetProgressText("Installation : C:\\a & b\\<x>.dll");
  EXPECT_EQ(TextOf(GetDlgItem(Window(), IDC_PROGRESS_TEXT)), "Installation : C:\\a & b\\<x>.dll");
  EXPECT_EQ(Log(), "Installation : C:\\a & b\\<x>.dll\n");
}

TEST_F(ProgressTest, QuitButtonSetsTheAbortFlag) {
  ShowProgressWindow();
  Press(Window(), 2);
  PumpMessages();
  EXPECT_TRUE(::Run().abort);
  EXPECT_TRUE(IsProgressWindowShown());
}

TEST_F(ProgressTest, Control24SetsTheAbortFlag) {
  ShowProgressWindow();
  Press(Window(), 24);
  PumpMessages();
  EXPECT_TRUE(::Run().abort);
  EXPECT_TRUE(IsProgressWindowShown());
}

TEST_F(ProgressTest, SystemMenuSetsTheAbortFlag) {
  ShowProgressWindow();
  PostMessageA(Window(), WM_SYSCOMMAND, SC_CLOSE, 0);
  PumpMessages();
  EXPECT_TRUE(::Run().abort);
  EXPECT_TRUE(IsProgressWindowShown());
}

TEST_F(ProgressTest, EscapeSetsTheAbortFlag) {
  ShowProgressWindow();
  PostMessageA(Window(), WM_KEYDOWN, VK_ESCAPE, 0);
  PumpMessages();
  EXPECT_TRUE(::Run().abort);
}

TEST_F(ProgressTest, OtherCommandsDoNotAbort) {
  ShowProgressWindow();
  for (const int id : {IDOK, 20, 21, 22, 23, 25}) SendMessageA(Window(), WM_COMMAND, id, 0);
  EXPECT_FALSE(::Run().abort);
}

TEST_F(ProgressTest, DrawRequestOfAnotherControlAsserts) {
  ShowProgressWindow();
  AssertRecorder recorder;
  DRAWITEMSTRUCT request = {};
  SendMessageA(Window(), WM_DRAWITEM, 99, reinterpret_cast<LPARAM>(&request));
  EXPECT_EQ(recorder.Only(), "wParam == IDD_PROGMETER_GRAPH");
}

// ---- the registry ----

TEST_F(ProgressTest, MessageAndPercentAreTexts) {
  SetProgressText("Texte");
  SetPercentage(100);
  EXPECT_EQ(TypeOf("SetupMsg"), static_cast<DWORD>(REG_SZ));
  EXPECT_EQ(TypeOf("SetupPercent"), static_cast<DWORD>(REG_SZ));
  EXPECT_EQ(Percent(), "100");
}

TEST_F(ProgressTest, EachTextReplacesTheFormerOne) {
  SetProgressText("eins");
  SetProgressText("z");
  EXPECT_EQ(Message(), "z");
}

TEST_F(ProgressTest, ZeroPercentIsReported) {
  SetPercentage(0);
  EXPECT_EQ(Percent(), "0");
}

TEST_F(ProgressTest, NegativePercentIsNotReported) {
  SetPercentage(30);
  SetPercentage(-1);
  EXPECT_EQ(Percent(), "30");
  ClearMeter();
  EXPECT_EQ(Percent(), "30");
}

TEST_F(ProgressTest, RemovalReportsNothing) {
  ::Run().install = false;
  SetProgressText("Suppression");
  SetPercentage(50);
  EXPECT_EQ(Log(), "Suppression\n");
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, kKey));
}

TEST_F(ProgressTest, NothingIsReportedWithoutMachRegKey) {
  AppVars().Clear();
  SetProgressText("Texte");
  SetPercentage(50);
  EXPECT_EQ(Log(), "Texte\n");
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, kKey));
}

TEST_F(ProgressTest, StoreInAFileTakesNoReport) {
  AppSetVariable("MachRegKey", mDir.Join("machine.ini").c_str());
  SetProgressText("Texte");
  SetPercentage(50);
  EXPECT_EQ(Log(), "Texte\n");
  EXPECT_FALSE(mDir.Has("machine.ini"));
}

TEST_F(ProgressTest, BareRootAndUnknownRootTakeNoReport) {
  AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER");
  SetPercentage(50);
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "", "SetupPercent"), std::nullopt);
  AppSetVariable("MachRegKey", "REG*HKEY_NOWHERE\\Software");
  SetPercentage(51);
}

TEST_F(ProgressTest, UnwritableKeyFailsSilently) {
  AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneUiTest\\a\x01\\b");
  // A key that cannot be created: a volatile parent takes no lasting children.
  KeyHandle parent;
  RegCreateKeyExA(HKEY_CURRENT_USER, kKey, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr,
                  parent.Put(), nullptr);
  SetProgressText("Texte");
  SetPercentage(5);
  EXPECT_EQ(Log(), "Texte\n");
}

TEST_F(ProgressTest, MachRegKeyMayHoldPlaceholders) {
  AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\<AppName>UiTest");
  SetProgressText("Texte");
  EXPECT_EQ(Message(), "Texte");
}

TEST_F(ProgressTest, EachPercentageIsWritten) {
  SetPercentage(50);
  SetRegistryString(HKEY_CURRENT_USER, kKey, "SetupPercent", "marked");
  SetPercentage(50);
  EXPECT_EQ(Percent(), "50");
}

TEST_F(ProgressTest, KeyThatWasDeletedIsMadeAgain) {
  SetProgressText("a");
  SetPercentage(50);
  ASSERT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, kKey), ERROR_SUCCESS);
  SetProgressText("b");
  EXPECT_EQ(Message(), "b");
  EXPECT_EQ(Percent(), std::nullopt);
  SetPercentage(50);
  EXPECT_EQ(Percent(), "50");
}

TEST_F(ProgressTest, AnotherMachRegKeyTakesWhatFollows) {
  RegistryGuard other(HKEY_CURRENT_USER, "Software\\VeltraneUiTest2");
  SetProgressText("a");
  AppSetVariable("MachRegKey", "REG*HKEY_CURRENT_USER\\Software\\VeltraneUiTest2");
  SetProgressText("b");
  EXPECT_EQ(Message(), "a");
  EXPECT_EQ(RegistryString(HKEY_CURRENT_USER, "Software\\VeltraneUiTest2", "SetupMsg"), "b");
}

TEST_F(ProgressTest, NoProgMeterSuppressesThePercentagesOnly) {
  AppSetVariable("no_prog_meter", "1");
  SetPercentage(50);
  SetProgressText("Texte");
  EXPECT_EQ(Percent(), std::nullopt);
  EXPECT_EQ(Message(), "Texte");
}

TEST_F(ProgressTest, NoProgMeterOtherThanOneDoesNotCount) {
  AppSetVariable("no_prog_meter", "yes");
  SetPercentage(50);
  EXPECT_EQ(Percent(), "50");
}

// ---- the meter ----

// Gives each of the meter's colours a value of its own while the object lives.
class DistinctColours {
 public:
  DistinctColours() {
    for (int i = 0; i < kCount; ++i) mFormer[i] = GetSysColor(kNames[i]);
    SetSysColors(kCount, kNames, kColours);
  }
  ~DistinctColours() { SetSysColors(kCount, kNames, mFormer); }

  static constexpr COLORREF kBar = RGB(10, 20, 200), kBarText = RGB(255, 250, 240), kRest = RGB(220, 210, 90),
                            kRestText = RGB(5, 60, 5), kFrame = RGB(200, 0, 0), kFace = RGB(120, 130, 140);

 private:
  static constexpr int kCount = 6;
  static constexpr INT kNames[kCount] = {COLOR_ACTIVECAPTION, COLOR_CAPTIONTEXT, COLOR_MENU,
                                         COLOR_MENUTEXT,      COLOR_WINDOWFRAME, COLOR_BTNFACE};
  static constexpr COLORREF kColours[kCount] = {kBar, kBarText, kRest, kRestText, kFrame, kFace};
  COLORREF mFormer[kCount] = {};
};

struct MemoryDcPolicy {
  using Type = HDC;
  static Type Invalid() { return nullptr; }
  static void Close(Type dc) { DeleteDC(dc); }
};

// A picture of the meter, drawn into memory with one pixel of margin all round.
class Picture {
 public:
  Picture(int width, int height, int percent) : mWidth(width), mHeight(height) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width + 2;
    info.bmiHeader.biHeight = -(height + 2);
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    UniqueHandle<GdiPolicy<HBITMAP>> bitmap(
        CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    UniqueHandle<MemoryDcPolicy> dc(CreateCompatibleDC(nullptr));
    const HGDIOBJ former = SelectObject(dc.Get(), bitmap.Get());
    const RECT all = {0, 0, width + 2, height + 2};
    FillRect(dc.Get(), &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    SelectObject(dc.Get(), GetStockObject(SYSTEM_FONT));
    const RECT rect = {1, 1, width + 1, height + 1};
    DrawMeter(dc.Get(), rect, percent);
    GdiFlush();
    for (int y = 0; y < height + 2; ++y)
      for (int x = 0; x < width + 2; ++x) mPixels.push_back(GetPixel(dc.Get(), x, y));
    SelectObject(dc.Get(), former);
  }
  // Coordinates from the meter's own corner; -1 is the margin.
  COLORREF At(int x, int y) const { return mPixels[static_cast<size_t>((y + 1) * (mWidth + 2) + x + 1)]; }
  int Width() const { return mWidth; }
  int Height() const { return mHeight; }

  bool HasFrameAndMargin() const {
    for (int y = -1; y <= mHeight; ++y)
      for (int x = -1; x <= mWidth; ++x) {
        const bool margin = x < 0 || y < 0 || x == mWidth || y == mHeight;
        const bool frame = !margin && (x == 0 || y == 0 || x == mWidth - 1 || y == mHeight - 1);
        if (margin && At(x, y) != 0) return false;
        if (frame && At(x, y) != DistinctColours::kFrame) return false;
      }
    return true;
  }
  // The colours of the inner columns from `from` up to, not including, `to` (counted
  // from the inner left edge).
  std::set<COLORREF> Columns(int from, int to) const {
    std::set<COLORREF> colours;
    for (int x = from + 1; x < to + 1; ++x)
      for (int y = 1; y < mHeight - 1; ++y) colours.insert(At(x, y));
    return colours;
  }
  // First and last column that holds a text's colour; {-1, -1} without one.
  std::pair<int, int> TextColumns() const {
    std::pair<int, int> found(-1, -1);
    for (int x = 0; x < mWidth; ++x)
      for (int y = 0; y < mHeight; ++y)
        if (At(x, y) == DistinctColours::kBarText || At(x, y) == DistinctColours::kRestText) {
          if (found.first < 0) found.first = x;
          found.second = x;
        }
    return found;
  }

 private:
  int mWidth;
  int mHeight;
  std::vector<COLORREF> mPixels;
};

using Colours = std::set<COLORREF>;

class MeterTest : public testing::Test {
 protected:
  DistinctColours mColours;
  static constexpr COLORREF kBar = DistinctColours::kBar, kBarText = DistinctColours::kBarText,
                            kRest = DistinctColours::kRest, kRestText = DistinctColours::kRestText,
                            kFace = DistinctColours::kFace;
};

TEST_F(MeterTest, ClearedIsAFramedButtonFaceWithoutText) {
  const Picture picture(202, 22, -1);
  EXPECT_TRUE(picture.HasFrameAndMargin());
  EXPECT_EQ(picture.Columns(0, 200), Colours{kFace});
}

TEST_F(MeterTest, AtZeroOnlyTheMenuPartWithMenuText) {
  const Picture picture(202, 22, 0);
  EXPECT_TRUE(picture.HasFrameAndMargin());
  EXPECT_EQ(picture.Columns(0, 200), (Colours{kRest, kRestText}));
}

TEST_F(MeterTest, AtHundredTheCaptionPartFillsTheInnerWidth) {
  const Picture picture(202, 22, 100);
  EXPECT_TRUE(picture.HasFrameAndMargin());
  EXPECT_EQ(picture.Columns(0, 200), (Colours{kBar, kBarText}));
}

TEST_F(MeterTest, AtFiftyTheTextChangesColourAtTheMiddle) {
  const Picture picture(202, 22, 50);
  EXPECT_TRUE(picture.HasFrameAndMargin());
  EXPECT_EQ(picture.Columns(0, 100), (Colours{kBar, kBarText}));
  EXPECT_EQ(picture.Columns(100, 200), (Colours{kRest, kRestText}));
}

TEST_F(MeterTest, FilledWidthIsTruncated) {
  // 99 inner pixels at 50 %: 49.5
  const Picture picture(101, 22, 50);
  EXPECT_EQ(picture.Columns(0, 49).count(kRest), 0u);
  EXPECT_EQ(picture.Columns(49, 99).count(kBar), 0u);
  EXPECT_EQ(picture.Columns(0, 10), Colours{kBar});
  EXPECT_EQ(picture.Columns(89, 99), Colours{kRest});
}

TEST_F(MeterTest, OnePercentOfALittleFillsNothing) {
  const Picture picture(52, 22, 1);
  EXPECT_EQ(picture.Columns(0, 50), (Colours{kRest, kRestText}));
}

TEST_F(MeterTest, TextIsCentredInTheWholeControl) {
  for (const int percent : {0, 30, 50, 77, 100}) {
    const std::pair<int, int> columns = Picture(202, 22, percent).TextColumns();
    EXPECT_NEAR(columns.first + columns.second, 201, 6) << percent;
  }
}

TEST_F(MeterTest, SplitTextIsTheWholeTextInTwoColours) {
  // The same text drawn with the bar elsewhere has its pixels at the same places.
  const Picture split(202, 22, 50);
  HDC screen = GetDC(nullptr);
  SIZE size = {};
  SelectObject(screen, GetStockObject(SYSTEM_FONT));
  GetTextExtentPoint32A(screen, "50%", 3, &size);
  ReleaseDC(nullptr, screen);
  int left = 0, right = 0;
  for (int x = 1; x < 201; ++x)
    for (int y = 1; y < 21; ++y) {
      if (split.At(x, y) == kBarText) ++left;
      if (split.At(x, y) == kRestText) ++right;
    }
  EXPECT_GT(left, 0);
  EXPECT_GT(right, 0);
  const std::pair<int, int> columns = split.TextColumns();
  EXPECT_LE(columns.second - columns.first + 1, size.cx);
  EXPECT_LT(columns.first, 101);
  EXPECT_GE(columns.second, 101);
}

TEST_F(MeterTest, BeyondHundredStaysInsideTheFrame) {
  const Picture picture(202, 22, 250);
  EXPECT_TRUE(picture.HasFrameAndMargin());
  EXPECT_EQ(picture.Columns(0, 200), (Colours{kBar, kBarText}));
}

TEST_F(MeterTest, OtherNegativeValuesHaveNoBar) {
  const Picture picture(202, 22, -2);
  EXPECT_TRUE(picture.HasFrameAndMargin());
  EXPECT_EQ(picture.Columns(0, 200).count(kBar), 0u);
}

TEST_F(MeterTest, TinyMeterIsDrawnInsideItsRectangle) {
  for (const int percent : {-1, 0, 50, 100})
    EXPECT_TRUE(Picture(3, 3, percent).HasFrameAndMargin()) << percent;
}

// The pixel in the middle of the meter's left or right part as it stands on the screen.
COLORREF ShownAt(int perMille) {
  const HWND meter = GetDlgItem(FindDialog(kCaption), 22);
  RECT area = {};
  GetClientRect(meter, &area);
  const HDC dc = GetDC(meter);
  const COLORREF colour = GetPixel(dc, area.right * perMille / 1000, area.bottom / 2);
  ReleaseDC(meter, dc);
  return colour;
}

TEST_F(ProgressTest, ShownMeterFollowsThePercentage) {
  DistinctColours colours;
  ShowProgressWindow();
  EXPECT_EQ(ShownAt(100), DistinctColours::kFace);
  SetPercentage(50);
  EXPECT_EQ(ShownAt(100), DistinctColours::kBar);
  EXPECT_EQ(ShownAt(900), DistinctColours::kRest);
  SetProgressText("Texte");
  EXPECT_EQ(ShownAt(100), DistinctColours::kBar);
  SetPercentage(100);
  EXPECT_EQ(ShownAt(900), DistinctColours::kBar);
  ClearMeter();
  EXPECT_EQ(ShownAt(100), DistinctColours::kFace);
  EXPECT_EQ(ShownAt(900), DistinctColours::kFace);
}

TEST_F(ProgressTest, NoProgMeterIsNotDrawn) {
  DistinctColours colours;
  AppSetVariable("no_prog_meter", "1");
  ShowProgressWindow();
  SetPercentage(50);
  EXPECT_EQ(ShownAt(100), DistinctColours::kFace);
}

}  // namespace
