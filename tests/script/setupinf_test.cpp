#include "script/setupinf.h"

#include "script_fixture.h"

namespace {

std::vector<std::string> gCalls;
int32_t gResult = 1;
int32_t gNewSize = -1;
void (*gDuringCall)(const char* key) = nullptr;

int32_t OnFile(const char* key, int32_t disk, const char* source, const char* dest, int64_t& size,
               void* context) {
  gCalls.push_back("file " + std::string(key) + "|" + std::to_string(disk) + "|" + source + "|" + dest + "|" +
                   std::to_string(size) + (context != nullptr ? "|context" : ""));
  if (gNewSize >= 0) size = gNewSize;
  if (gDuringCall != nullptr) gDuringCall(key);
  return gResult;
}
int32_t Note(const char* kind, const char* key, const char* value, void* context) {
  gCalls.push_back(std::string(kind) + " " + key + "|" + value + (context != nullptr ? "|context" : ""));
  if (gDuringCall != nullptr) gDuringCall(key);
  return gResult;
}
int32_t OnTask(const char* key, const char* args, void* context) { return Note("task", key, args, context); }
int32_t OnRegistry(const char* key, const char* value, void* context) {
  return Note("reg", key, value, context);
}
int32_t OnVariable(const char* key, const char* value, void* context) {
  return Note("var", key, value, context);
}

constexpr InfHandlers kAll = {OnFile, OnTask, OnRegistry, OnVariable};

using Calls = std::vector<std::string>;

class SetupInf : public ScriptTest {
 protected:
  void SetUp() override {
    ScriptTest::SetUp();
    gCalls.clear();
    gResult = 1;
    gNewSize = -1;
    gDuringCall = nullptr;
  }
  void TearDown() override {
    Script().Close();
    ScriptTest::TearDown();
  }
  std::string InfPath() const { return mDir.Join("setup.inf"); }
  void OpenScript(const std::string& text, bool readOnly = true) {
    mDir.Write("setup.inf", text);
    ASSERT_EQ(Script().Open(InfPath().c_str(), readOnly), kInfOK);
  }
  static InfResult RunMain(void* context = nullptr) { return Script().DoSection("main", kAll, context); }
};

TEST_F(SetupInf, OpenFailsForAMissingScript) {
  EXPECT_EQ(Script().Open(mDir.Join("none.inf").c_str(), true), kInfFail);
  EXPECT_FALSE(Script().IsOpen());
}

TEST_F(SetupInf, OpenTwiceAssertsAndFails) {
  OpenScript("[main]\n");
  AssertRecorder recorder;
  EXPECT_EQ(Script().Open(InfPath().c_str(), true), kInfFail);
  EXPECT_EQ(recorder.Only(), "! mIsOpen");
  EXPECT_TRUE(Script().IsOpen());
}

TEST_F(SetupInf, OpenWithoutAPathAsserts) {
  AssertRecorder recorder;
  EXPECT_EQ(Script().Open(nullptr, true), kInfFail);
  EXPECT_EQ(recorder.Only(), "path");
}

TEST_F(SetupInf, ClosedScriptsAssertAndDoNothing) {
  AssertRecorder recorder;
  Script().Close();  // closing a closed script is no fault
  EXPECT_TRUE(recorder.Texts().empty());
  EXPECT_NE(Script().SectionExists("main"), kInfOK);
  EXPECT_NE(Script().DoSection("main", kAll, nullptr), kInfOK);
  EXPECT_NE(Script().DoItem("main", "a", kAll, nullptr), kInfOK);
  EXPECT_NE(Script().ProcessLine("a", "b", kAll, nullptr), kInfOK);
  EXPECT_EQ(recorder.Texts(), Calls(4, "mIsOpen"));
  EXPECT_TRUE(gCalls.empty());
}

TEST_F(SetupInf, ReopenedAfterClose) {
  OpenScript("[main]\n");
  Script().Close();
  EXPECT_FALSE(Script().IsOpen());
  EXPECT_EQ(Script().Open(InfPath().c_str(), true), kInfOK);
}

TEST_F(SetupInf, NullTextsAssert) {
  OpenScript("[main]\n");
  AssertRecorder recorder;
  EXPECT_NE(Script().SectionExists(nullptr), kInfOK);
  EXPECT_NE(Script().DoSection(nullptr, kAll, nullptr), kInfOK);
  EXPECT_NE(Script().DoItem("main", nullptr, kAll, nullptr), kInfOK);
  EXPECT_NE(Script().ProcessLine(nullptr, "", kAll, nullptr), kInfOK);
  EXPECT_NE(Script().ProcessLine("", nullptr, kAll, nullptr), kInfOK);
  EXPECT_EQ(recorder.Texts(), (Calls{"section", "section", "key", "key", "value"}));
}

TEST_F(SetupInf, SectionExistsInAnyCase) {
  OpenScript("[Main]\n");
  EXPECT_EQ(Script().SectionExists("main"), kInfOK);
  EXPECT_EQ(Script().SectionExists("other"), kInfNoSection);
}

TEST_F(SetupInf, EachLineKindGoesToItsHandlerInFileOrder) {
  OpenScript(
      "[main]\n; "
      "comment\nName=Value\n$task=a,b\n+HKEY_CURRENT_USER\\S\\V=data\n-HKEY_CURRENT_USER\\S\\V\nKey1\n"
      "[files]\nKey1=2,src\\a,<ProgDir>\\a,77\n");
  int32_t pass = 0;
  EXPECT_EQ(RunMain(&pass), kInfOK);
  EXPECT_EQ(
      gCalls,
      (Calls{"var Name|Value|context", "task $task|a,b|context", "reg +HKEY_CURRENT_USER\\S\\V|data|context",
             "reg -HKEY_CURRENT_USER\\S\\V||context", "file Key1|2|src\\a|" + Prog("a") + "|77|context"}));
}

TEST_F(SetupInf, LinesWithoutAHandlerAreSkipped) {
  OpenScript("[main]\nName=Value\n$task=a\n+HKEY_CURRENT_USER\\S\\V=d\nMissingFile\n");
  EXPECT_EQ(Script().DoSection("main", InfHandlers(), nullptr), kInfOK);
  EXPECT_TRUE(gCalls.empty());
}

TEST_F(SetupInf, AMissingSectionIsLogged) {
  OpenScript("[main]\n");
  EXPECT_EQ(Script().DoSection("nothing", kAll, nullptr), kInfNoSection);
  EXPECT_EQ(Log(), "DoSection fail: section \"nothing\" not found.\n");
}

TEST_F(SetupInf, AnEmptySectionIsDone) {
  OpenScript("[main]\n; only a comment\n[other]\nA=B\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_TRUE(gCalls.empty());
  EXPECT_EQ(Log(), "");
}

TEST_F(SetupInf, ANestedSectionRunsAtItsPlaceAndTheWalkGoesOn) {
  OpenScript("[main]\nA=1\n&Other\nB=2\n[Other]\nC=3\nD=4\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var A|1", "var C|3", "var D|4", "var B|2"}));
}

TEST_F(SetupInf, ANestedSectionRunsWhateverItsValue) {
  OpenScript("[main]\n&Other=anything\n[Other]\nC=3\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var C|3"}));
}

TEST_F(SetupInf, HandlersThatMoveTheStoreDoNotDisturbTheWalk) {
  OpenScript("[main]\nA=1\nB=2\nB=2\nC=3\n[Other]\nX=9\nY=8\n");
  gDuringCall = [](const char*) {
    EXPECT_EQ(Script().SectionExists("Other"), kInfOK);
    EXPECT_EQ(Script().SectionExists("nothing"), kInfNoSection);
  };
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var A|1", "var B|2", "var B|2", "var C|3"}));
}

TEST_F(SetupInf, ASectionMayRunTheSameSectionTwice) {
  OpenScript("[main]\n&Other\n&Other\n[Other]\nC=3\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var C|3", "var C|3"}));
}

TEST_F(SetupInf, AMissingNestedSectionFailsTheChain) {
  OpenScript("[main]\nA=1\n&Gone\nB=2\n");
  EXPECT_EQ(RunMain(), kInfNoSection);
  EXPECT_EQ(gCalls, (Calls{"var A|1"}));
  EXPECT_EQ(Log(),
            "DoSection fail: section \"Gone\" not found.\n"
            "The section \"main\" stopped at the line \"&Gone\".\n");
}

TEST_F(SetupInf, AnAmpersandAloneNamesNoSection) {
  OpenScript("[main]\n&\n");
  EXPECT_EQ(RunMain(), kInfNoSection);
}

TEST_F(SetupInf, OptionalSectionsFollowTheirVariable) {
  OpenScript("[main]\n&Opt?\nB=2\n[Opt]\nC=3\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var B|2"})) << "missing";
  gCalls.clear();
  AppSetVariable("do_Opt", "0");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var B|2"})) << "0";
  gCalls.clear();
  AppSetVariable("do_Opt", "1");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var C|3", "var B|2"})) << "1";
}

TEST_F(SetupInf, AnOptionVariableMustBeZeroOrOne) {
  OpenScript("[main]\n&Opt?\nB=2\n[Opt]\nC=3\n");
  AppSetVariable("do_Opt", "yes");
  AssertRecorder recorder;
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(recorder.Only(), "value == \"0\" || value == \"1\"");
  EXPECT_EQ(gCalls, (Calls{"var B|2"}));
}

TEST_F(SetupInf, AQuestionMarkAloneIsAnOptionWithoutName) {
  OpenScript("[main]\n&?\nB=2\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var B|2"}));
}

TEST_F(SetupInf, AnOptionalSectionThatIsMissingFailsOnlyWhenWanted) {
  OpenScript("[main]\n&Gone?\n");
  EXPECT_EQ(RunMain(), kInfOK);
  AppSetVariable("do_Gone", "1");
  EXPECT_EQ(RunMain(), kInfNoSection);
}

TEST_F(SetupInf, ASectionThatRunsItselfEnds) {
  OpenScript("[main]\nA=1\n&main\n");
  EXPECT_EQ(RunMain(), kInfHandlerFailed);
  EXPECT_EQ(gCalls.size(), 50u);
  EXPECT_TRUE(Holds(Log(), "DoSection fail: section \"main\" is nested too deeply.\n"));
  gCalls.clear();
  EXPECT_EQ(RunMain(), kInfHandlerFailed) << "the depth is counted anew";
  EXPECT_EQ(gCalls.size(), 50u);
}

TEST_F(SetupInf, FiftyNestedSectionsRun) {
  std::string text;
  for (int i = 0; i < 50; ++i)
    text += "[s" + std::to_string(i) + "]\n" + (i < 49 ? "&s" + std::to_string(i + 1) : std::string("A=1")) +
            "\n";
  OpenScript(text);
  EXPECT_EQ(Script().DoSection("s0", kAll, nullptr), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var A|1"}));
}

TEST_F(SetupInf, AFailingHandlerEndsItsSectionAtOnce) {
  OpenScript("[main]\nA=1\nB=2\n");
  gResult = 0;
  EXPECT_EQ(RunMain(), kInfHandlerFailed);
  EXPECT_EQ(gCalls, (Calls{"var A|1"}));
  EXPECT_EQ(Log(), "The section \"main\" stopped at the line \"A\".\n");
}

TEST_F(SetupInf, AFailureInANestedSectionStopsTheWholeChain) {
  OpenScript("[main]\n&Other\nB=2\n[Other]\n$bad=\nC=3\n");
  gResult = 0;
  EXPECT_EQ(RunMain(), kInfHandlerFailed);
  EXPECT_EQ(gCalls, (Calls{"task $bad|"}));
}

TEST_F(SetupInf, AnyNonZeroResultIsSuccess) {
  OpenScript("[main]\nA=1\nB=2\n");
  gResult = -5;
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls.size(), 2u);
}

TEST_F(SetupInf, KeysAndValuesAreExpanded) {
  AppSetVariable("X", "tail");
  AppSetVariable("T", "$task");
  OpenScript("[main]\nName=Value<X>\n<X>Name=<Unknown>\n<T>=<X>\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var Name|Valuetail", "var tailName|<Unknown>", "task $task|tail"}));
}

TEST_F(SetupInf, AVariableSetByALineIsKnownToTheNext) {
  OpenScript("[main]\nA=1\nB=<A>2\n");
  EXPECT_EQ(Script().DoSection("main", {nullptr, nullptr, nullptr, VariableHandler}, nullptr), kInfOK);
  EXPECT_EQ(AppGetExpanded("B"), "12");
}

TEST_F(SetupInf, AnEmptyValueMakesAFileLine) {
  OpenScript("[main]\nName=\n[files]\nName=1,a,C:\\d\\a,5\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"file Name|1|a|C:\\d\\a|5"}));
}

TEST_F(SetupInf, AValueThatExpandsToNothingMakesAFileLine) {
  AppSetVariable("Empty", "");
  OpenScript("[main]\nName=<Empty>\n[files]\nName=1,a,C:\\d\\a,5\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"file Name|1|a|C:\\d\\a|5"}));
}

TEST_F(SetupInf, AnUnknownFileKeyFails) {
  OpenScript("[main]\nName\nB=2\n[files]\nOther=1,a,C:\\d\\a,5\n");
  EXPECT_EQ(RunMain(), kInfNoItem);
  EXPECT_TRUE(gCalls.empty());
  EXPECT_EQ(Log(),
            "DoFileLine fail: no record \"Name\" in the section \"files\".\n"
            "The section \"main\" stopped at the line \"Name\".\n");
}

TEST_F(SetupInf, WithoutASectionFilesAFileLineFails) {
  OpenScript("[main]\nName\n");
  EXPECT_EQ(RunMain(), kInfNoSection);
}

TEST_F(SetupInf, ARecordWithTooFewFieldsFailsAndIsNamed) {
  OpenScript("[main]\nName\n[files]\nName=1,a,C:\\d\\a\n");
  EXPECT_EQ(RunMain(), kInfHandlerFailed);
  EXPECT_TRUE(gCalls.empty());
  EXPECT_EQ(Log(),
            "DoFileLine fail: the record \"Name=1,a,C:\\d\\a\" has less than four fields.\n"
            "The section \"main\" stopped at the line \"Name\".\n");
}

TEST_F(SetupInf, RecordNumbersThatAreNoneAreZero) {
  OpenScript("[main]\nName\n[files]\nName=disk,a,C:\\d\\a,size\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"file Name|0|a|C:\\d\\a|0"}));
  EXPECT_EQ(
      Log(),
      "DoFileLine: the size \"size\" of the file \"Name\" is no number. In Setup.inf: section \"main\", line "
      "\"Name\".\n");
}

TEST_F(SetupInf, SizesBeyond2GBAreHandedOver) {
  OpenScript("[main]\nName\n[files]\nName=4294967296,a,C:\\d\\a,4294967295\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"file Name|2147483647|a|C:\\d\\a|4294967295"}));
}

TEST_F(SetupInf, AFolderWithACommaStaysOneField) {
  AppSetVariable("ProgDir", "C:\\one, two");
  OpenScript("[main]\nName\n[files]\nName=1,<Sub>\\a,<ProgDir>\\a,5\n");
  AppSetVariable("Sub", "s");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"file Name|1|s\\a|C:\\one, two\\a|5"}));
}

TEST_F(SetupInf, AVariableMayBringFieldsOfARecord) {
  AppSetVariable("Tail", "C:\\d\\a,5");
  OpenScript("[main]\nName\n[files]\nName=1,a,<Tail>\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"file Name|1|a|C:\\d\\a|5"}));
}

TEST_F(SetupInf, ALongValueIsReadAsItsFirst511Characters) {
  OpenScript("[main]\nName=" + std::string(600, 'v') + "\nB=2\n");
  EXPECT_EQ(RunMain(), kInfOK);
  ASSERT_EQ(gCalls.size(), 2u) << "the rest of the long line is no line of its own";
  EXPECT_EQ(gCalls[0], "var Name|" + std::string(511, 'v'));
  EXPECT_EQ(gCalls[1], "var B|2");
}

TEST_F(SetupInf, ALongKeyIsReadAsItsFirst511CharactersAndKeepsItsValue) {
  OpenScript("[main]\n" + std::string(600, 'k') + "=v\n+" + std::string(600, 'r') + "=data\nB=2\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var " + std::string(511, 'k') + "|v", "reg +" + std::string(510, 'r') + "|data",
                           "var B|2"}));
}

TEST_F(SetupInf, ProcessLineCutsItsTextsAt511Characters) {
  OpenScript("[main]\n");
  EXPECT_EQ(Script().ProcessLine(std::string(600, 'k').c_str(), std::string(600, 'v').c_str(), kAll, nullptr),
            kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var " + std::string(511, 'k') + "|" + std::string(511, 'v')}));
}

TEST_F(SetupInf, ExpansionMayGoBeyond511Characters) {
  AppSetVariable("X", std::string(600, 'x').c_str());
  OpenScript("[main]\nName=<X>\n");
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"var Name|" + std::string(600, 'x')}));
}

TEST_F(SetupInf, DoItemRunsOneLine) {
  OpenScript("[main]\nA=1\n$task=x\nName=\n[files]\nName=1,a,C:\\d\\a,5\n");
  EXPECT_EQ(Script().DoItem("main", "$task", kAll, nullptr), kInfOK);
  EXPECT_EQ(Script().DoItem("MAIN", "a", kAll, nullptr), kInfOK);
  EXPECT_EQ(Script().DoItem("main", "Name", kAll, nullptr), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"task $task|x", "var a|1", "file Name|1|a|C:\\d\\a|5"}));
}

TEST_F(SetupInf, DoItemReportsWhatIsMissing) {
  OpenScript("[main]\nA=1\n");
  EXPECT_EQ(Script().DoItem("gone", "A", kAll, nullptr), kInfNoSection);
  EXPECT_EQ(Script().DoItem("main", "Z", kAll, nullptr), kInfNoItem);
  gResult = 0;
  EXPECT_EQ(Script().DoItem("main", "A", kAll, nullptr), kInfHandlerFailed);
}

TEST_F(SetupInf, ASizeChangedByTheHandlerIsWrittenBack) {
  OpenScript("[main]\nName\n[files]\nName=1,a,<ProgDir>\\a,5\n", false);
  gNewSize = 1234;
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"file Name|1|a|" + Prog("a") + "|5"}));
  Script().Close();
  EXPECT_TRUE(Holds(mDir.Read("setup.inf"), "Name=1,a,<ProgDir>\\a,1234\r\n"));
}

TEST_F(SetupInf, TheWalkGoesOnAfterASizeWasWrittenBack) {
  OpenScript("[main]\nOne\nTwo\n[files]\nOne=1,a,C:\\d\\a,5\nTwo=1,b,C:\\d\\b,6\n", false);
  gNewSize = 123456;
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"file One|1|a|C:\\d\\a|5", "file Two|1|b|C:\\d\\b|6"}));
}

TEST_F(SetupInf, AReadOnlyScriptKeepsItsSizes) {
  const std::string text = "[main]\nName\n[files]\nName=1,a,C:\\d\\a,5\n";
  OpenScript(text, true);
  gNewSize = 1234;
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(gCalls, (Calls{"file Name|1|a|C:\\d\\a|5", "file Name|1|a|C:\\d\\a|5"}));
  Script().Close();
  EXPECT_EQ(mDir.Read("setup.inf"), text);
}

TEST_F(SetupInf, AnUnchangedSizeIsNotWritten) {
  const std::string text = "[main]\nName\n[files]\nName=1,a,<ProgDir>\\a, 5\n";
  OpenScript(text, false);
  gNewSize = 5;
  EXPECT_EQ(RunMain(), kInfOK);
  Script().Close();
  EXPECT_TRUE(Holds(mDir.Read("setup.inf"), "Name=1,a,<ProgDir>\\a, 5\r\n"));
}

TEST_F(SetupInf, ThePlaceInWorkIsKnownDuringTheLine) {
  OpenScript("[main]\n&Other\nB=2\n[Other]\nC=3\n");
  static std::vector<std::string> places;
  places.clear();
  gDuringCall = [](const char*) { places.emplace_back(Script().Place().Chars()); };
  EXPECT_EQ(RunMain(), kInfOK);
  EXPECT_EQ(places, (Calls{"section \"Other\", line \"C\"", "section \"main\", line \"B\""}));
  EXPECT_EQ(Script().Place(), "");
}

TEST_F(SetupInf, AScriptOfItsOwnMayHaveNoLog) {
  VarList variables;
  SetupScript script(variables, nullptr);
  mDir.Write("own.inf", "[main]\n&gone\n");
  ASSERT_EQ(script.Open(mDir.Join("own.inf").c_str(), true), kInfOK);
  EXPECT_EQ(script.DoSection("main", kAll, nullptr), kInfNoSection);
  EXPECT_EQ(Log(), "");
}

TEST_F(SetupInf, TenThousandFileLinesAreGatheredQuickly) {
  std::string lines = "[main]\n";
  std::string records = "[files]\n";
  for (int i = 0; i < 10000; ++i) {
    const std::string number = std::to_string(i);
    lines += "File" + number + "\n";
    records += "File" + number + "=1,sub\\f" + number + ".txt,<ProgDir>\\sub\\f" + number + ".txt,10\n";
  }
  OpenScript(lines + records);
  const DWORD start = GetTickCount();
  EXPECT_EQ(Script().DoSection("main", {StandardFileHandler, nullptr, nullptr, nullptr}, nullptr), kInfOK);
  const DWORD milliseconds = GetTickCount() - start;
  EXPECT_EQ(GetNumFiles(), 10000);
  RecordProperty("milliseconds", static_cast<int>(milliseconds));
  EXPECT_LT(milliseconds, 2000u);  // a walk of quadratic cost takes minutes
}

}  // namespace
