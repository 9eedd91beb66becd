#include "installer/cmdline.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/runstate.h"

namespace {

using Args = std::vector<std::string>;

CommandLine Parse(const Args& args) { return ParseCommandLine(args); }
bool IsValid(const Args& args) { return Parse(args).valid; }

bool IsShiftJisLead(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9f) || (byte >= 0xe0 && byte <= 0xfc);
}

// ---- splitting ----

TEST(SplitCommandLine, ProgramNameAlone) { EXPECT_EQ(SplitCommandLine("Setup.exe"), Args({"Setup.exe"})); }

TEST(SplitCommandLine, EmptyTextHasAnEmptyProgramName) { EXPECT_EQ(SplitCommandLine(""), Args({""})); }

TEST(SplitCommandLine, QuotedProgramNameKeepsBackslashesAndBlanks) {
  EXPECT_EQ(SplitCommandLine("\"C:\\A b\\Setup.exe\" -Q"), Args({"C:\\A b\\Setup.exe", "-Q"}));
}

TEST(SplitCommandLine, BlanksAndTabsSeparate) {
  EXPECT_EQ(SplitCommandLine("s  -Q \t /R  "), Args({"s", "-Q", "/R"}));
}

TEST(SplitCommandLine, QuotesKeepBlanks) {
  EXPECT_EQ(SplitCommandLine("s -D \"C:\\Mes documents\" -Q"), Args({"s", "-D", "C:\\Mes documents", "-Q"}));
}

TEST(SplitCommandLine, QuoteInTheMiddleOfAnArgument) {
  EXPECT_EQ(SplitCommandLine("s C:/\"Mes documents\"/x"), Args({"s", "C:/Mes documents/x"}));
}

TEST(SplitCommandLine, EmptyArgument) {
  EXPECT_EQ(SplitCommandLine("s -D \"\" -Q"), Args({"s", "-D", "", "-Q"}));
}

TEST(SplitCommandLine, BackslashesAwayFromQuotesStand) {
  EXPECT_EQ(SplitCommandLine("s \\\\server\\share\\"), Args({"s", "\\\\server\\share\\"}));
}

TEST(SplitCommandLine, BackslashBeforeAQuoteGuardsIt) {
  EXPECT_EQ(SplitCommandLine("s \"C:\\X\\\""), Args({"s", "C:\\X\""}));
  EXPECT_EQ(SplitCommandLine("s \"C:\\X\\\\\" -Q"), Args({"s", "C:\\X\\", "-Q"}));
}

TEST(SplitCommandLine, TwoQuotesInsideQuotesAreOne) {
  EXPECT_EQ(SplitCommandLine("s \"a\"\"b\""), Args({"s", "a\"b"}));
}

TEST(SplitCommandLine, MissingClosingQuoteRunsToTheEnd) {
  EXPECT_EQ(SplitCommandLine("s \"a b"), Args({"s", "a b"}));
}

TEST(SplitCommandLine, SecondByteOfAPairIsNoBackslash) {
  EXPECT_EQ(SplitCommandLine("s \"C:\\\x83\x5c\" -Q", IsShiftJisLead), Args({"s", "C:\\\x83\x5c", "-Q"}));
}

TEST(SplitCommandLine, LeadByteAtTheEnd) {
  EXPECT_EQ(SplitCommandLine("s \x83", IsShiftJisLead), Args({"s", "\x83"}));
}

// ---- the switches ----

TEST(CommandLine, NoArgumentsIsANormalInstall) {
  const CommandLine line = Parse({});
  EXPECT_TRUE(line.valid);
  EXPECT_EQ(line.setupFlags, 0);
  EXPECT_FALSE(line.progDir);
  EXPECT_FALSE(line.installFromDir);
}

TEST(CommandLine, FolderSwitchD) {
  const CommandLine line = Parse({"-D", "C:\\X"});
  EXPECT_TRUE(line.valid);
  EXPECT_EQ(line.progDir, "C:\\X");
  EXPECT_FALSE(line.lockProgDir);
}

TEST(CommandLine, FolderSwitchDLLocks) {
  const CommandLine line = Parse({"-DL", "C:\\X"});
  EXPECT_TRUE(line.valid);
  EXPECT_EQ(line.progDir, "C:\\X");
  EXPECT_TRUE(line.lockProgDir);
}

TEST(CommandLine, FolderSwitchS) {
  const CommandLine line = Parse({"-S", "\\\\server\\share\\"});
  EXPECT_TRUE(line.valid);
  EXPECT_EQ(line.installFromDir, "\\\\server\\share");
  EXPECT_FALSE(line.progDir);
}

struct FlagCase {
  const char* name;
  uint8_t flags;
  bool lock;
};

class CommandLineFlag : public testing::TestWithParam<FlagCase> {};

TEST_P(CommandLineFlag, SetsItsFlagsByEitherSignInAnyCase) {
  const FlagCase& param = GetParam();
  std::string lower = param.name;
  for (char& ch : lower) ch = static_cast<char>(tolower(ch));
  for (const std::string& text :
       {"-" + std::string(param.name), "/" + std::string(param.name), "-" + lower}) {
    const CommandLine line = Parse({text});
    EXPECT_TRUE(line.valid) << text;
    EXPECT_EQ(line.setupFlags, param.flags) << text;
    EXPECT_EQ(line.lockProgDir, param.lock) << text;
    EXPECT_FALSE(line.installNoDlg);
    EXPECT_FALSE(line.noROMacroErrs);
    EXPECT_FALSE(line.raiseAssertion);
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, CommandLineFlag,
                         testing::Values(FlagCase{"W", kWorkstation, false}, FlagCase{"R", kRemove, true},
                                         FlagCase{"RS", kRemove | kKeepSelf, true},
                                         FlagCase{"OLEMGR", kOleMgrOnly, false}));

TEST(CommandLine, SwitchI) {
  EXPECT_TRUE(Parse({"/i"}).installNoDlg);
  EXPECT_TRUE(IsValid({"/i"}));
}

TEST(CommandLine, SwitchC) {
  EXPECT_TRUE(Parse({"-C"}).noROMacroErrs);
  EXPECT_TRUE(IsValid({"-C"}));
}

TEST(CommandLine, SwitchAssert) {
  EXPECT_TRUE(Parse({"-Assert"}).raiseAssertion);
  EXPECT_TRUE(IsValid({"-Assert"}));
}

TEST(CommandLine, AllSwitchesTogether) {
  const CommandLine line = Parse({"-W", "/rs", "-dl", "C:\\A", "-s", "D:\\B", "-i", "-c", "-assert"});
  EXPECT_TRUE(line.valid);
  EXPECT_EQ(line.setupFlags, kWorkstation | kRemove | kKeepSelf);
  EXPECT_EQ(line.progDir, "C:\\A");
  EXPECT_EQ(line.installFromDir, "D:\\B");
}

// ---- folders ----

TEST(CommandLineFolder, OneTrailingBackslashIsRemoved) {
  EXPECT_EQ(Parse({"-d", "C:\\Dest\\"}).progDir, "C:\\Dest");
  EXPECT_EQ(Parse({"-d", "C:\\Dest\\\\"}).progDir, "C:\\Dest\\");
}

TEST(CommandLineFolder, DriveStaysARoot) {
  EXPECT_EQ(Parse({"-D", "C:\\"}).progDir, "C:\\");
  EXPECT_EQ(Parse({"-S", "d:"}).installFromDir, "d:\\");
}

TEST(CommandLineFolder, LeftOverQuoteIsDropped) {
  EXPECT_EQ(Parse({"-D", "C:\\X\""}).progDir, "C:\\X");
  EXPECT_EQ(Parse({"-D", "C:\""}).progDir, "C:\\");
}

TEST(CommandLineFolder, BackslashAsSecondByteStays) {
  const Args args = {"-D", "C:\\\x83\x5c"};
  EXPECT_EQ(ParseCommandLine(args, IsShiftJisLead).progDir, "C:\\\x83\x5c");
  EXPECT_EQ(ParseCommandLine(args).progDir, "C:\\\x83");
}

TEST(CommandLineFolder, MayBeginWithAMinus) {
  const CommandLine line = Parse({"-D", "-Q"});
  EXPECT_TRUE(line.valid);
  EXPECT_EQ(line.progDir, "-Q");
  EXPECT_EQ(line.setupFlags, 0);
}

TEST(CommandLineFolder, IsTakenAsItStands) {
  EXPECT_EQ(Parse({"-D", "C:\\\xc9quations, 100% \xe9t\xe9"}).progDir, "C:\\\xc9quations, 100% \xe9t\xe9");
  EXPECT_EQ(Parse({"-D", ""}).progDir, "");
}

// ---- what makes it invalid ----

TEST(CommandLineInvalid, ArgumentWithoutSign) {
  EXPECT_FALSE(IsValid({"setup.inf"}));
  EXPECT_FALSE(IsValid({"Q"}));
  EXPECT_FALSE(IsValid({""}));
}

TEST(CommandLineInvalid, UnknownSwitch) {
  EXPECT_FALSE(IsValid({"-X"}));
  EXPECT_FALSE(IsValid({"/QQ"}));
  EXPECT_FALSE(IsValid({"-OLEMG"}));
}

TEST(CommandLineInvalid, SignAlone) {
  EXPECT_FALSE(IsValid({"-"}));
  EXPECT_FALSE(IsValid({"/"}));
}

TEST(CommandLineInvalid, TwoSigns) { EXPECT_FALSE(IsValid({"--R"})); }

TEST(CommandLineInvalid, TextGluedToASwitch) { EXPECT_FALSE(IsValid({"-DC:\\X"})); }

TEST(CommandLineInvalid, BlankInsideASwitch) { EXPECT_FALSE(IsValid({"-R "})); }

TEST(CommandLineInvalid, FolderMissing) {
  EXPECT_FALSE(IsValid({"-D"}));
  EXPECT_FALSE(IsValid({"-DL"}));
  EXPECT_FALSE(IsValid({"-R", "-S"}));
}

TEST(CommandLineInvalid, SecondDestination) {
  EXPECT_FALSE(IsValid({"-D", "A", "-D", "B"}));
  EXPECT_FALSE(IsValid({"-D", "A", "-DL", "B"}));
  EXPECT_FALSE(IsValid({"-DL", "A", "-D", "B"}));
}

TEST(CommandLineInvalid, SecondSource) { EXPECT_FALSE(IsValid({"-S", "A", "-S", "B"})); }

TEST(CommandLineInvalid, SilentAlone) { EXPECT_FALSE(IsValid({"-Q"})); }

TEST(CommandLineInvalid, SilentWithSourceOnly) { EXPECT_FALSE(IsValid({"-Q", "-S", "C:\\X"})); }

TEST(CommandLineInvalid, SilentWorkstation) {
  EXPECT_FALSE(IsValid({"-Q", "-W", "-D", "C:\\X"}));
  EXPECT_FALSE(IsValid({"-W", "-R", "-Q"}));
}

TEST(CommandLineInvalid, ParsingStopsAtTheFirstBadArgument) {
  const CommandLine line = Parse({"-R", "bad", "-W", "-D", "C:\\X"});
  EXPECT_FALSE(line.valid);
  EXPECT_EQ(line.setupFlags, kRemove);
  EXPECT_TRUE(line.lockProgDir);
  EXPECT_FALSE(line.progDir);
}

TEST(CommandLineInvalid, SilenceBeforeTheBadArgumentCounts) {
  EXPECT_EQ(Parse({"-Q", "bad"}).setupFlags, kQuiet);
  EXPECT_EQ(Parse({"bad", "-Q"}).setupFlags, 0);
}

TEST(CommandLineValid, SilentForms) {
  EXPECT_TRUE(IsValid({"/q", "/r"}));
  EXPECT_TRUE(IsValid({"-RS", "-Q"}));
  EXPECT_TRUE(IsValid({"-Q", "-D", "C:\\X"}));
  EXPECT_TRUE(IsValid({"-Q", "-DL", "C:\\X"}));
}

TEST(CommandLineValid, RepeatedFlags) {
  EXPECT_TRUE(IsValid({"-R", "-R"}));
  EXPECT_TRUE(IsValid({"-Q", "-q", "-R", "-RS"}));
}

}  // namespace
