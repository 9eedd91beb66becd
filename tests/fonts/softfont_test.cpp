// Printer soft fonts in the Windows profile.
#include "fonts/softfont.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "base/runstate.h"
#include "font_fixture.h"
#include "support/process.h"
#include "support/wait.h"

namespace {

constexpr char kSection[] = "VTPCL,LPT9:";

class SoftFont : public FontTest {
 protected:
  void SetUp() override {
    FontTest::SetUp();
    ::Run().install = false;
    Clean();
  }
  void TearDown() override {
    Clean();
    FontTest::TearDown();
  }

  // A printer of the profile.
  void AddPrinter(const std::string& name, const std::string& device) {
    mPrinters.push_back(name);
    WriteProfileStringA("PrinterPorts", name.c_str(), (device + ",15,45").c_str());
    WriteProfileStringA("Devices", name.c_str(), device.c_str());
  }
  void Set(const char* key, const std::string& value) { Set(kSection, key, value); }
  void Set(const std::string& section, const char* key, const std::string& value) {
    mSections.push_back(section);
    WriteProfileStringA(section.c_str(), key, value.c_str());
  }
  static std::string Get(const char* key, const std::string& section = kSection) {
    char text[1024] = "";
    GetProfileStringA(section.c_str(), key, "none", text, sizeof text);
    return text;
  }
  // A pair of files, and the line that names them.
  std::string Pair(const std::string& name, const char* ending = ".pfb") {
    return mDir.Write(name + ".pfm", "metrics") + "," + mDir.Write(name + ending, "font");
  }
  static void Edit(std::vector<const char*> names, const char* section = kSection) {
    EditSoftFonts(DO_REMOVE, names.data(), static_cast<int32_t>(names.size()), section,
                  {"Veltrane Printer", "VTPCL", "LPT9:"});
  }

 private:
  void Clean() {
    for (const std::string& name : mPrinters) {
      WriteProfileStringA("PrinterPorts", name.c_str(), nullptr);
      WriteProfileStringA("Devices", name.c_str(), nullptr);
    }
    for (const std::string& section : mSections) WriteProfileStringA(section.c_str(), nullptr, nullptr);
  }
  std::vector<std::string> mPrinters;
  std::vector<std::string> mSections = {kSection};
};

std::string FewerLines() {
  return "The printer Veltrane Printer appears to have fewer softfont lines than the softfonts =... line "
         "indicates in win.ini.\n";
}

TEST_F(SoftFont, MatchingLinesGoTheOthersKeepTheirNumbers) {
  const std::string first = Pair("vtfont1");
  const std::string second = Pair("vtfont2");
  const std::string third = Pair("other");
  Set("softfonts", "3");
  Set("softfont1", first);
  Set("softfont2", second);
  Set("softfont3", third);
  Edit({"vtfont1.pfm", "vtfont2.pfb"});
  EXPECT_EQ(Get("softfonts"), "1");
  EXPECT_EQ(Get("softfont1"), "none");
  EXPECT_EQ(Get("softfont2"), "none");
  EXPECT_EQ(Get("softfont3"), third);
  EXPECT_EQ(Log(), "-WIN.INI [VTPCL,LPT9:] softfont1=" + first + "\n-WIN.INI [VTPCL,LPT9:] softfont2=" +
                       second + "\n+WIN.INI [VTPCL,LPT9:] softfonts=1\n");
  for (const char* name : {"vtfont1.pfm", "vtfont1.pfb", "vtfont2.pfm", "vtfont2.pfb"})
    EXPECT_FALSE(mDir.Has(name)) << name;
  EXPECT_TRUE(mDir.Has("other.pfm") && mDir.Has("other.pfb"));
}

TEST_F(SoftFont, AGapInTheNumbersIsWalkedOverAndTheDisagreementLogged) {
  Set("softfonts", "3");
  Set("softfont1", "c:\\a.pfm");
  Set("softfont2", "c:\\b.pfm");
  Set("softfont4", "c:\\vtfont1.pfm");
  Edit({"vtfont1.pfm"});
  EXPECT_EQ(Log(), "-WIN.INI [VTPCL,LPT9:] softfont4=c:\\vtfont1.pfm\n" + FewerLines() +
                       "+WIN.INI [VTPCL,LPT9:] softfonts=2\n");
  EXPECT_EQ(Get("softfont4"), "none");
  EXPECT_EQ(Get("softfonts"), "2");
}

TEST_F(SoftFont, ACountThatIsTooHighIsCorrectedWithTheNextRemoval) {
  Set("softfonts", "5");
  Set("softfont1", "c:\\a.pfm");
  Edit({"vtfont1.pfm"});
  EXPECT_EQ(Log(), FewerLines());
  EXPECT_EQ(Get("softfonts"), "5");
  Set("softfont2", "c:\\vtfont1.pfm");
  Edit({"vtfont1.pfm"});
  EXPECT_EQ(Log(), "-WIN.INI [VTPCL,LPT9:] softfont2=c:\\vtfont1.pfm\n" + FewerLines() +
                       "+WIN.INI [VTPCL,LPT9:] softfonts=1\n");
  EXPECT_EQ(Get("softfonts"), "1");
}

TEST_F(SoftFont, TheWalkGoesOverUpTo99MissingNumbers) {
  Set("softfonts", "1");
  Set("softfont100", "c:\\vtfont1.pfm");
  Edit({"vtfont1.pfm"});
  EXPECT_EQ(Get("softfont100"), "none");
  Set("softfonts", "1");
  Set("softfont101", "c:\\vtfont1.pfm");
  Edit({"vtfont1.pfm"});
  EXPECT_EQ(Get("softfont101"), "c:\\vtfont1.pfm");
  EXPECT_EQ(Get("softfonts"), "1");
}

TEST_F(SoftFont, MoreLinesThanTheCountAreAllTaken) {
  Set("softfonts", "1");
  Set("softfont1", "c:\\vtfont1.pfm");
  Set("softfont2", "c:\\vtfont1.pfm");
  Edit({"vtfont1.pfm"});
  EXPECT_EQ(Get("softfont2"), "none");
  EXPECT_EQ(Get("softfonts"), "0");
  EXPECT_FALSE(Contains(Log(), "fewer softfont lines"));
}

TEST_F(SoftFont, ALineWithOnePathDeletesOnlyThatFile) {
  mDir.Write("vtfont1.pfb", "font");
  const std::string line = mDir.Write("vtfont1.pfm", "metrics");
  Set("softfonts", "1");
  Set("softfont1", line);
  Edit({"vtfont1.pfm"});
  EXPECT_FALSE(mDir.Has("vtfont1.pfm"));
  EXPECT_TRUE(mDir.Has("vtfont1.pfb"));
  EXPECT_EQ(Get("softfonts"), "0");
}

TEST_F(SoftFont, NamesMatchInAnyCaseAnywhereInTheLine) {
  Set("softfonts", "2");
  Set("softfont1", "c:\\x.pfm,C:\\FONTS\\VTFONT1.PFB");
  Set("softfont2", "c:\\vtfont1\\x.pfm");
  Edit({"VtFont1.pfb"});
  EXPECT_EQ(Get("softfont1"), "none");
  EXPECT_EQ(Get("softfont2"), "c:\\vtfont1\\x.pfm");
}

TEST_F(SoftFont, FilesThatAreGoneAlreadyAreNoError) {
  Set("softfonts", "1");
  Set("softfont1", mDir.Join("vtfont1.pfm") + " , " + mDir.Join("vtfont1.pfb"));
  Edit({"vtfont1.pfm"});
  EXPECT_EQ(Get("softfonts"), "0");
}

TEST_F(SoftFont, WithoutAMatchNothingIsWritten) {
  Set("softfonts", "1");
  Set("softfont1", "c:\\x.pfm");
  Edit({"vtfont1.pfm"});
  EXPECT_EQ(Log(), "");
  EXPECT_EQ(Get("softfonts"), "1");
}

TEST_F(SoftFont, ACountBelowOneStopsBeforeTheLines) {
  for (const char* count : {"0", "-1", "", "none"}) {
    Set("softfonts", count);
    Set("softfont1", "c:\\vtfont1.pfm");
    Edit({"vtfont1.pfm"});
    EXPECT_EQ(Get("softfont1"), "c:\\vtfont1.pfm") << count;
    EXPECT_EQ(Log(), "") << count;
  }
}

TEST_F(SoftFont, AMissingSectionIsNoError) {
  Edit({"vtfont1.pfm"});
  EXPECT_EQ(Log(), "");
  EXPECT_EQ(Get("softfonts"), "none");
}

TEST_F(SoftFont, CartridgeLinesAreLeftAlone) {
  Set("softfonts", "1");
  Set("softfont1", "c:\\vtfont1.pfm");
  Set("cartridge1", "c:\\vtfont1.pfm");
  Edit({"vtfont1.pfm"});
  EXPECT_EQ(Get("cartridge1"), "c:\\vtfont1.pfm");
}

TEST_F(SoftFont, MoreThan16NamesAreAnInternalError) {
  Set("softfonts", "1");
  Set("softfont1", "c:\\vtfont1.pfm");
  Edit(std::vector<const char*>(16, "other.pfm"));
  AssertRecorder recorder;
  Edit(std::vector<const char*>(17, "vtfont1.pfm"));
  EXPECT_EQ(recorder.Only(), "numNames <= kMaxSoftFontNames");
  EXPECT_EQ(Get("softfont1"), "c:\\vtfont1.pfm");
}

TEST_F(SoftFont, AnotherOperationAsserts) {
  AssertRecorder recorder;
  EditSoftFonts(static_cast<SoftFontOperation>(2), nullptr, 0, kSection,
                {"Veltrane Printer", "VTPCL", "LPT9:"});
  EXPECT_EQ(recorder.Only(), "op == DO_REMOVE");
}

TEST_F(SoftFont, FilesStayInAWorkstationRunAndOnRequest) {
  for (const bool workstation : {true, false}) {
    ::Run().setupFlags = kQuiet | (workstation ? kWorkstation : 0);
    AppSetVariable("do_remove_keep_fonts", workstation ? "0" : "1");
    Set("softfonts", "1");
    Set("softfont1", Pair("vtfont1"));
    Edit({"vtfont1.pfm"});
    EXPECT_EQ(Get("softfont1"), "none");
    EXPECT_EQ(Get("softfonts"), "0");
    EXPECT_TRUE(mDir.Has("vtfont1.pfm") && mDir.Has("vtfont1.pfb"));
  }
}

TEST_F(SoftFont, ALongLineIsWalkedWithoutHarm) {
  const std::string line = "c:\\" + std::string(900, 'x') + "\\vtfont1.pfm";
  Set("softfonts", "1");
  Set("softfont1", line);
  Edit({"vtfont1.pfm"});
  EXPECT_EQ(Get("softfonts"), "0");
}

TEST_F(SoftFont, TheChangeIsBroadcastWithTheSection) {
  const std::string log = mDir.Join("window.log");
  ChildProcess window(Quoted(HelperPath("stand_in_window.exe")) + " ProfileWatcher Watcher -hidden -log " +
                      Quoted(log));
  ASSERT_TRUE(WaitUntil([&] { return window.Output().rfind("ready", 0) == 0; }));
  Edit({"vtfont1.pfm"});  // below 1
  EXPECT_TRUE(
      WaitUntil([&] { return PathExists(log) && ReadWholeFile(log) == "WM_WININICHANGE VTPCL,LPT9:\r\n"; }));
  Set("softfonts", "1");
  Set("softfont1", "c:\\vtfont1.pfm");
  Edit({"vtfont1.pfm"});
  EXPECT_TRUE(WaitUntil([&] {
    return ReadWholeFile(log) == "WM_WININICHANGE VTPCL,LPT9:\r\nWM_WININICHANGE VTPCL,LPT9:\r\n";
  }));
}

// ---- all printers ----

TEST_F(SoftFont, PrintersComeFromTheProfile) {
  AddPrinter("Veltrane A", "PSCRIPT,LPT9:");
  AddPrinter("Veltrane B", " HPPCL , FILE: ");
  WriteProfileStringA("Devices", "Veltrane B", nullptr);
  AddPrinter("Veltrane C", "");
  std::vector<std::string> found;
  for (const Printer& printer : ListPrinters())
    if (Contains(printer.name.Chars(), "Veltrane"))
      found.push_back(std::string(printer.name.Chars()) + "|" + printer.driver.Chars() + "|" +
                      printer.port.Chars());
  std::sort(found.begin(), found.end());
  ASSERT_EQ(found.size(), 3u);
  EXPECT_EQ(found[0], "Veltrane A|PSCRIPT|LPT9:");
  EXPECT_EQ(found[1], "Veltrane B|HPPCL|FILE:");
  EXPECT_EQ(found[2].substr(0, 11), "Veltrane C|");
}

// Each recognised driver with its section and one of the product's fonts.
struct DriverCase {
  const char* name;
  const char* driver;
  const char* section;
  const char* file;
  bool hasCounter;
};

class SoftFontDrivers : public SoftFont, public testing::WithParamInterface<DriverCase> {};

TEST_P(SoftFontDrivers, TheProductsLinesAreRemoved) {
  const DriverCase& given = GetParam();
  AddPrinter("Veltrane Printer", std::string(given.driver) + ",LPT9:");
  const std::string line = mDir.Write(given.file, "font");
  Set(given.section, "softfonts", "2");
  Set(given.section, "softfont1", "c:\\other.sfp");
  Set(given.section, "softfont2", line);
  if (given.hasCounter) Set(given.section, "fsvers", "41");
  RemoveSoftFonts();
  EXPECT_EQ(Get("softfonts", given.section), "1");
  EXPECT_EQ(Get("softfont1", given.section), "c:\\other.sfp");
  EXPECT_EQ(Get("softfont2", given.section), "none");
  EXPECT_EQ(Get("fsvers", given.section), given.hasCounter ? "42" : "none");
  const std::string section = given.section;
  std::string log =
      "-WIN.INI [" + section + "] softfont2=" + line + "\n+WIN.INI [" + section + "] softfonts=1\n";
  if (given.hasCounter) log += "+WIN.INI [" + section + "] fsvers=42\n";
  EXPECT_EQ(Log(), log);
  EXPECT_FALSE(PathExists(line));
}

INSTANTIATE_TEST_SUITE_P(
    Known, SoftFontDrivers,
    testing::Values(DriverCase{"PostScript", "PSCRIPT", "PostScript,LPT9", "vtfont4.pfb", false},
                    DriverCase{"LowerCase", "pscript", "PostScript,LPT9", "vtfont1.pfm", false},
                    DriverCase{"Pcl", "HPPCL", "HPPCL,LPT9:", "vtfont1.sfp", true},
                    DriverCase{"PclWithoutColon", "HPPCL", "HPPCL,LPT9", "vtfont2.sfp", true},
                    DriverCase{"Pcl5A", "HPPCL5A", "HPPCL5A,LPT9:", "vtfont3.sfl", true},
                    DriverCase{"Pcl5Ms", "HPPCL5MS", "HPPCL5MS,LPT9:", "vtfont3.sfl", true},
                    DriverCase{"Pcl5E", "HPPCL5E", "HPPCL5E,LPT9:", "vtfont3.sfl", true}),
    [](const auto& given) { return std::string(given.param.name); });

TEST_F(SoftFont, AnUnknownDriverIsLeftAlone) {
  AddPrinter("Veltrane Printer", "HPPCL6,LPT9:");
  Set("HPPCL6,LPT9:", "softfonts", "1");
  Set("HPPCL6,LPT9:", "softfont1", "c:\\vtfont1.sfp");
  Set("HPPCL6,LPT9:", "fsvers", "1");
  RemoveSoftFonts();
  EXPECT_EQ(Get("softfont1", "HPPCL6,LPT9:"), "c:\\vtfont1.sfp");
  EXPECT_EQ(Get("fsvers", "HPPCL6,LPT9:"), "1");
  EXPECT_EQ(Log(), "");
}

TEST_F(SoftFont, TheCounterBeginsAtOne) {
  AddPrinter("Veltrane Printer", "HPPCL,LPT9:");
  Set("HPPCL,LPT9:", "softfonts", "1");
  Set("HPPCL,LPT9:", "softfont1", "c:\\x.sfp");
  RemoveSoftFonts();
  EXPECT_EQ(Get("fsvers", "HPPCL,LPT9:"), "1");
}

TEST_F(SoftFont, APrinterWithoutSectionGetsNone) {
  AddPrinter("Veltrane Printer", "HPPCL,LPT9:");
  RemoveSoftFonts();
  EXPECT_EQ(Get("fsvers", "HPPCL,LPT9:"), "none");
  EXPECT_EQ(Get("fsvers", "HPPCL,LPT9"), "none");
  EXPECT_EQ(Log(), "");
}

TEST_F(SoftFont, AllPrintersAreVisited) {
  AddPrinter("Veltrane A", "PSCRIPT,LPT8:");
  AddPrinter("Veltrane B", "HPPCL5A,LPT9:");
  Set("PostScript,LPT8", "softfonts", "1");
  Set("PostScript,LPT8", "softfont1", "c:\\vtfont1.pfm");
  Set("HPPCL5A,LPT9:", "softfonts", "1");
  Set("HPPCL5A,LPT9:", "softfont1", "c:\\vtfont1.sfl");
  RemoveSoftFonts();
  EXPECT_EQ(Get("softfonts", "PostScript,LPT8"), "0");
  EXPECT_EQ(Get("softfonts", "HPPCL5A,LPT9:"), "0");
}

}  // namespace
