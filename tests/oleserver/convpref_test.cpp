// Preferences of another equation editor, carried over into the product's store.
#include "oleserver/convpref.h"

#include "fonts/font.h"
#include "oleserver/ole_fixture.h"

namespace {

constexpr char kSource[] = "Software\\VeltraneTest\\Source";
constexpr char kSourceStore[] = "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest\\Source";
constexpr char kTarget[] = "Software\\VeltraneTest\\KVRX6\\Preferences";
constexpr char kTargetStore[] = "REG*HKEY_CURRENT_USER\\Software\\VeltraneTest\\KVRX6\\Preferences";
constexpr char kSubstitutes[] = "Software\\Microsoft\\Windows NT\\CurrentVersion\\FontSubstitutes";
constexpr char kMissing[] = "VT Font That Is Nowhere";

struct FamilySearch {
  std::string but;
  std::string found;
};

int CALLBACK TakeFamily(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM param) {
  auto* search = reinterpret_cast<FamilySearch*>(param);
  const std::string name = font->lfFaceName;
  const bool plain = !name.empty() && name[0] != '@' && name.find_first_of(",=") == std::string::npos;
  if (!plain || lstrcmpiA(name.c_str(), search->but.c_str()) == 0 || name.rfind("Courier", 0) == 0) return 1;
  search->found = name;
  return 0;
}

// A family that this machine has, other than `but` and than those that are treated on their own.
std::string InstalledFamily(const std::string& but = "") {
  FamilySearch search = {but, ""};
  LOGFONTA any = {};
  any.lfCharSet = DEFAULT_CHARSET;
  const HDC screen = GetDC(nullptr);
  EnumFontFamiliesExA(screen, &any, TakeFamily, reinterpret_cast<LPARAM>(&search), 0);
  ReleaseDC(nullptr, screen);
  EXPECT_FALSE(search.found.empty()) << "this machine has no fonts";
  return search.found;
}

class Preferences : public OleTest {
 protected:
  void SetUp() override {
    OleTest::SetUp();
    mFont = InstalledFamily();
    mOtherFont = InstalledFamily(mFont);
    // The screen's font list is opened by the system at the first look and kept.
    static_cast<void>(IsFontFamilyInstalled(mFont.c_str()));
  }
  static void SetSource(const std::string& section, const std::string& key, const std::string& value) {
    SetRegistryString(HKEY_CURRENT_USER, std::string(kSource) + "\\" + section, key, value);
  }
  static void SetTarget(const std::string& section, const std::string& key, const std::string& value) {
    SetRegistryString(HKEY_CURRENT_USER, std::string(kTarget) + "\\" + section, key, value);
  }
  static std::string Target(const std::string& section, const std::string& key) {
    return RegistryString(HKEY_CURRENT_USER, std::string(kTarget) + "\\" + section, key).value_or("(none)");
  }
  static bool HasTarget(const std::string& section) {
    return RegistryKeyExists(HKEY_CURRENT_USER, std::string(kTarget) + "\\" + section);
  }
  static void MakeSource() { SetRegistryString(HKEY_CURRENT_USER, kSource, "", "store"); }
  static bool Run(bool own = false) { return ConvertPreferences(kSourceStore, kTargetStore, own); }
  // Converts one style of a foreign editor and returns what became of it.
  static std::string Style(const std::string& value, bool own = false) {
    SetSource("Fonts", "Text", value);
    EXPECT_TRUE(Run(own));
    return Target("Styles", "Text");
  }
  std::string WithFont(const std::string& rest) { return mFont + rest; }

  std::string mFont;
  std::string mOtherFont;
};

class Substitution {
 public:
  Substitution(const std::string& font, const std::string& other)
      : mGuard(HKEY_LOCAL_MACHINE, kSubstitutes, font) {
    SetRegistryString(HKEY_LOCAL_MACHINE, kSubstitutes, font, other);
  }

 private:
  RegistryValueGuard mGuard;
};

TEST_F(Preferences, SpacingAndSizesAreCopiedWhole) {
  SetSource("Spacing", "LineSpacing", "150%");
  SetSource("Spacing", "MatrixRow", "100%");
  SetSource("Sizes", "Full", "12 pt");
  ASSERT_TRUE(Run());
  EXPECT_EQ(Target("Spacing", "LineSpacing"), "150%");
  EXPECT_EQ(Target("Spacing", "MatrixRow"), "100%");
  EXPECT_EQ(Target("Sizes", "Full"), "12 pt");
}

TEST_F(Preferences, SectionsOfTheTargetStay) {
  SetSource("Spacing", "LineSpacing", "150%");
  SetSource("Spacing", "MatrixRow", "100%");
  SetSource("Sizes", "Full", "12 pt");
  SetTarget("Spacing", "LineSpacing", "200%");
  ASSERT_TRUE(Run());
  EXPECT_EQ(Target("Spacing", "LineSpacing"), "200%");
  EXPECT_EQ(Target("Spacing", "MatrixRow"), "(none)");
  EXPECT_EQ(Target("Sizes", "Full"), "12 pt");
}

TEST_F(Preferences, OtherSectionsAreNotCopied) {
  SetSource("Zoom", "Normal", "200");
  SetSource("Sizes", "Full", "12 pt");
  ASSERT_TRUE(Run());
  EXPECT_FALSE(HasTarget("Zoom"));
  EXPECT_FALSE(HasTarget("Spacing"));
  EXPECT_FALSE(HasTarget("Styles"));
}

TEST_F(Preferences, FontsBecomeStyles) {
  EXPECT_EQ(Style(WithFont(",I,B")), WithFont(",I,B"));
  EXPECT_FALSE(HasTarget("Fonts"));
}

TEST_F(Preferences, StylesOfTheDefaultPrinter) {
  const ProfileGuard guard("windows", "device");
  WriteProfileStringA("windows", "device", "My Printer,PSCRIPT,LPT1:");
  SetSource("Printer,PSCRIPT,LPT1:", "Text", WithFont(",N"));
  SetSource("Printer,PSCRIPT,LPT2:", "Text", WithFont(",B"));
  ASSERT_TRUE(Run());
  EXPECT_EQ(Target("Styles", "Text"), WithFont(",N"));
  EXPECT_FALSE(HasTarget("Printer,PSCRIPT,LPT1:"));
}

TEST_F(Preferences, FontsComeBeforeThePrinter) {
  const ProfileGuard guard("windows", "device");
  WriteProfileStringA("windows", "device", "My Printer,PSCRIPT,LPT1:");
  SetSource("Printer,PSCRIPT,LPT1:", "Text", WithFont(",N"));
  EXPECT_EQ(Style(WithFont(",B")), WithFont(",B"));
}

TEST_F(Preferences, NoMatchingPrinterGivesNoStyles) {
  const ProfileGuard guard("windows", "device");
  SetSource("Printer,PSCRIPT,LPT1:", "Text", WithFont(",N"));
  for (const char* device : {"My Printer,PSCRIPT,LPT2:", "My Printer,PSCRIPT", "My Printer", ""}) {
    WriteProfileStringA("windows", "device", device);
    ASSERT_TRUE(Run());
    EXPECT_FALSE(HasTarget("Styles")) << device;
  }
}

TEST_F(Preferences, NoPrinterGivesNoStyles) {
  const ProfileGuard guard("windows", "device");
  WriteProfileStringA("windows", "device", nullptr);
  SetSource("Printer,,", "Text", WithFont(",N"));
  ASSERT_TRUE(Run());
  EXPECT_FALSE(HasTarget("Styles"));
}

TEST_F(Preferences, StylesOfTheTargetStayAndAreAdapted) {
  SetSource("Fonts", "Text", WithFont(",B"));
  SetTarget("Styles", "Text", WithFont(",N"));
  SetTarget("Styles", "Greek", std::string(kMissing) + ",N");
  SetTarget("Styles", "User1", WithFont(",N"));
  ASSERT_TRUE(Run());
  EXPECT_EQ(Target("Styles", "Text"), WithFont(",N"));
  EXPECT_EQ(Target("Styles", "Greek"), "");
  EXPECT_EQ(Target("Styles", "User1"), "");
}

TEST_F(Preferences, ForeignUserStylesAreEmptied) {
  SetSource("Fonts", "User1", WithFont(",N"));
  SetSource("Fonts", "User2", WithFont(",B"));
  SetSource("Fonts", "Text", WithFont(",B"));
  ASSERT_TRUE(Run(false));
  EXPECT_EQ(Target("Styles", "User1"), "");
  EXPECT_EQ(Target("Styles", "User2"), "");
  EXPECT_EQ(Target("Styles", "Text"), WithFont(",B"));
}

TEST_F(Preferences, MissingUserStylesAreNotMade) {
  SetSource("Fonts", "Text", WithFont(",B"));
  ASSERT_TRUE(Run(false));
  EXPECT_EQ(Target("Styles", "User1"), "(none)");
  EXPECT_EQ(Target("Styles", "User2"), "(none)");
}

TEST_F(Preferences, OwnUserStylesStay) {
  SetSource("Fonts", "User1", WithFont(",N"));
  SetSource("Fonts", "User2", WithFont(",B"));
  ASSERT_TRUE(Run(true));
  EXPECT_EQ(Target("Styles", "User1"), WithFont(",N"));
  EXPECT_EQ(Target("Styles", "User2"), WithFont(",B"));
}

TEST_F(Preferences, OwnCourierBecomesCourierNew) {
  // Seen through the substitution list, for "Courier New" itself need not be on this machine.
  const Substitution substitution("Courier New", mFont);
  SetSource("Fonts", "User1", "COURIER,I,B");
  ASSERT_TRUE(Run(true));
  EXPECT_EQ(Target("Styles", "User1"), WithFont(",I,B"));
}

TEST_F(Preferences, OnlyUser1AndOnlyCourierAreRenamed) {
  const Substitution courier("Courier", mOtherFont);
  const Substitution courierNew("Courier New", mFont);
  const Substitution courierTen("Courier 10", mOtherFont);
  SetSource("Fonts", "User1", "Courier 10,N");
  SetSource("Fonts", "User2", "Courier,N");
  ASSERT_TRUE(Run(true));
  EXPECT_EQ(Target("Styles", "User1"), mOtherFont + ",N");
  EXPECT_EQ(Target("Styles", "User2"), mOtherFont + ",N");
}

TEST_F(Preferences, AMissingFontEmptiesTheStyle) { EXPECT_EQ(Style(std::string(kMissing) + ",I"), ""); }

TEST_F(Preferences, AStyleWithoutAFontIsEmpty) { EXPECT_EQ(Style(",I"), ""); }

TEST_F(Preferences, AFontWithoutAnythingBehindItStays) { EXPECT_EQ(Style(mFont), mFont); }

TEST_F(Preferences, AnInstalledFontKeepsItsSpelling) {
  std::string upper = mFont;
  CharUpperA(upper.data());
  EXPECT_EQ(Style(upper + ",I"), upper + ",I");
}

TEST_F(Preferences, ASubstitutedFontIsReplaced) {
  const Substitution substitution(kMissing, mFont);
  EXPECT_EQ(Style(std::string(kMissing) + ",I,B"), WithFont(",I,B"));
}

TEST_F(Preferences, ASubstitutionIsFoundWithoutCase) {
  const Substitution substitution(kMissing, mFont);
  EXPECT_EQ(Style("vt font that is NOWHERE,I"), WithFont(",I"));
}

TEST_F(Preferences, ASubstitutionWithCharacterSetsCounts) {
  const Substitution substitution(std::string(kMissing) + ",204", mFont + ",0");
  EXPECT_EQ(Style(std::string(kMissing) + ",I"), WithFont(",I"));
}

TEST_F(Preferences, ASubstitutionWithoutCharacterSetComesFirst) {
  const Substitution other(std::string(kMissing) + ",161", mOtherFont + ",161");
  const Substitution substitution(kMissing, mFont);
  EXPECT_EQ(Style(std::string(kMissing) + ",I"), WithFont(",I"));
}

TEST_F(Preferences, ASubstitutionByAMissingFontEmptiesTheStyle) {
  const Substitution substitution(mFont, kMissing);
  EXPECT_EQ(Style(WithFont(",I")), "");
}

TEST_F(Preferences, AnotherCharacterSetOfTheSameFontIsNoSubstitution) {
  const Substitution substitution(mFont + ",0", mFont + ",204");
  EXPECT_EQ(Style(WithFont(",I")), WithFont(",I"));
}

TEST_F(Preferences, AnEmptySubstitutionCountsAsNone) {
  const Substitution substitution(mFont, "");
  EXPECT_EQ(Style(WithFont(",I")), WithFont(",I"));
}

TEST_F(Preferences, EveryStyleIsHandledOnce) {
  const Substitution there(kMissing, mFont);
  const Substitution back(mFont, mOtherFont);
  for (const char* key : {"Function", "Greek", "LCGreek", "Number", "Symbol", "Text", "Variable", "Vector"})
    SetSource("Fonts", key, std::string(kMissing) + ",I");
  ASSERT_TRUE(Run());
  // A second look at a written style would have replaced it once more.
  for (const char* key : {"Function", "Greek", "LCGreek", "Number", "Symbol", "Text", "Variable", "Vector"})
    EXPECT_EQ(Target("Styles", key), WithFont(",I")) << key;
}

TEST_F(Preferences, FilesAreConvertedToo) {
  const std::string source =
      mDir.Write("eqnedit.ini", "[Spacing]\r\nLineSpacing=150%\r\n[Fonts]\r\nText=" + mFont +
                                    ",N\r\nGreek=" + kMissing + ",N\r\nUser1=" + mFont + ",N\r\n");
  const std::string target = mDir.Join("product.ini");
  const std::string before = mDir.Read("eqnedit.ini");
  ASSERT_TRUE(ConvertPreferences(source.c_str(), target.c_str(), false));
  EXPECT_EQ(mDir.Read("eqnedit.ini"), before);
  const std::string text = mDir.Read("product.ini");
  EXPECT_NE(text.find("[Spacing]\r\nLineSpacing=150%\r\n"), std::string::npos) << text;
  EXPECT_NE(text.find("[Styles]\r\nText=" + mFont + ",N\r\nGreek=\r\nUser1=\r\n"), std::string::npos) << text;
  EXPECT_EQ(text.find("[Fonts]"), std::string::npos) << text;
}

TEST_F(Preferences, AKeyThatIsThereTwiceEnds) {
  const std::string source =
      mDir.Write("eqnedit.ini", std::string("[Fonts]\r\nText=") + kMissing + ",N\r\nText=" + kMissing +
                                    ",B\r\nZ=" + mFont + ",N\r\n");
  const std::string target = mDir.Join("product.ini");
  ASSERT_TRUE(ConvertPreferences(source.c_str(), target.c_str(), false));
  const std::string text = mDir.Read("product.ini");
  EXPECT_NE(text.find("[Styles]\r\nText=\r\n"), std::string::npos) << text;
  EXPECT_NE(text.find("Z=" + mFont + ",N\r\n"), std::string::npos) << text;
}

TEST_F(Preferences, AMissingSourceFails) {
  EXPECT_FALSE(Run());
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, kTarget));
  EXPECT_FALSE(ConvertPreferences(mDir.Join("none.ini").c_str(), kTargetStore, true));
  EXPECT_FALSE(RegistryKeyExists(HKEY_CURRENT_USER, kTarget));
}

TEST_F(Preferences, ATargetThatCannotBeOpenedFails) {
  MakeSource();
  EXPECT_FALSE(ConvertPreferences(kSourceStore, "REG*HKEY_NOWHERE\\x", true));
  EXPECT_FALSE(ConvertPreferences(kSourceStore, mDir.Join("no folder\\a.ini").c_str(), true));
}

TEST_F(Preferences, AnEmptySourceSucceeds) {
  MakeSource();
  EXPECT_TRUE(Run());
  EXPECT_FALSE(HasTarget("Styles"));
}

// ---- the task ----

TEST_F(Preferences, TaskTakesTheNewestServerWithAStore) {
  const RegistryGuard newer(HKEY_CURRENT_USER, "Software\\Quorvale\\KVRX5");
  AddServer("Equation.3", kClassA, "a");
  AddServer("Equation.KVRX5", kClassB, "b");
  SetRegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\KVRX5\\Preferences\\Sizes", "Full", "12 pt");
  SetRegistryString(HKEY_CURRENT_USER, "Software\\Quorvale\\KVRX5\\Preferences\\Fonts", "User1",
                    mFont + ",N");
  EXPECT_EQ(Task("convert_pref", "", 0), "");
  EXPECT_EQ(Task("convert_pref", "", 1),
            std::string("    Convert VT preferences: "
                        "REG*HKEY_CURRENT_USER\\Software\\Quorvale\\KVRX5\\Preferences to ") +
                kTargetStore + ", result: Success\n");
  EXPECT_EQ(Target("Sizes", "Full"), "12 pt");
  EXPECT_EQ(Target("Styles", "User1"), mFont + ",N");  // the product's own keep their user styles
}

TEST_F(Preferences, TaskPassesOverServersWithoutAStore) {
  AddServer("Equation.KVRX36", kClassA, "a");
  AddServer("Equation.COEE2", kClassB, "b");
  AppSetVariable("WinDir", mDir.Path().c_str());
  mDir.Write("Eqnedit.ini", "[Fonts]\r\nUser1=" + mFont + ",N\r\n");
  EXPECT_EQ(Task("convert_pref", "", 1), "    Convert VT preferences: " + mDir.Join("Eqnedit.ini") + " to " +
                                             kTargetStore + ", result: Success\n");
  EXPECT_EQ(Target("Styles", "User1"), "");
}

TEST_F(Preferences, TaskLogsAFailureAndTriesNoOtherServer) {
  const RegistryGuard newer(HKEY_CURRENT_USER, "Software\\Quorvale\\KVRX5");
  AddServer("Equation.KVRX5", kClassA, "a");
  AddServer("Equation.COEE2", kClassB, "b");
  AppSetVariable("WinDir", mDir.Path().c_str());
  mDir.Write("Eqnedit.ini", "[Sizes]\r\nFull=12 pt\r\n");
  EXPECT_EQ(Task("convert_pref", "", 1),
            std::string("    Convert VT preferences: "
                        "REG*HKEY_CURRENT_USER\\Software\\Quorvale\\KVRX5\\Preferences to ") +
                kTargetStore + ", result: Fail\n");
  EXPECT_FALSE(HasTarget("Sizes"));
}

TEST_F(Preferences, TaskWithoutServersDoesNothing) { EXPECT_EQ(Task("convert_pref", "", 1), ""); }

TEST_F(Preferences, TaskRunsOnceInARun) {
  Task("convert_pref", "", 1);
  AddServer("Equation.COEE2", kClassA, "a");
  AssertRecorder rec;
  EXPECT_EQ(Task("convert_pref", "", 1), "");
  EXPECT_EQ(rec.Only(), "! convertYet");
}

TEST_F(Preferences, TaskNeedsNoArguments) {
  int32_t pass = 1;
  EXPECT_EQ(TaskDispatch("$convert_pref", nullptr, &pass), 1);
}

}  // namespace
