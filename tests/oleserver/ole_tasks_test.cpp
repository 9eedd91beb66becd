// The equation-server tasks, run by name: when they act, what they do and what they log.
#include "oleserver/ole_fixture.h"
#include "ui/answerer.h"

namespace {

constexpr char kUnknownArgs[] = "The arguments for the task %s in Setup.inf are unknown.\n";
constexpr char kRegisteringText[] =
    "Modification des donn\xe9"
    "es OLE et des associations de fichiers\n";

std::string Unknown(const std::string& task) {
  std::string text = kUnknownArgs;
  return text.replace(text.find("%s"), 2, task);
}

class OleTasks : public OleTest {
 protected:
  void SetUp() override {
    OleTest::SetUp();
    SetMessageTitles(256, 257, 258, 260);
    BeSilent();
  }
  // A program of the product that notes its arguments.
  std::string AddProduct() {
    const std::string path = mDir.Join("Veltrane.exe");
    EXPECT_TRUE(CopyFileA(HelperPath("note_run.exe").c_str(), path.c_str(), FALSE));
    return path;
  }
  // The arguments of the product's one run, once it has ended.
  std::string Noted() {
    EXPECT_TRUE(
        WaitUntil([&] { return mDir.Has("Veltrane.exe.ran") && !mDir.Read("Veltrane.exe.ran").empty(); }));
    const std::string line = mDir.Read("Veltrane.exe.ran");
    const size_t blank = line.find(' ');
    return blank == std::string::npos ? line : line.substr(blank + 1);
  }
  // Waits until the product's program can be deleted again, so that no run of it is left.
  void WaitForProduct() {
    EXPECT_TRUE(WaitUntil([&] { return DeleteFileA(mDir.Join("Veltrane.exe").c_str()) != 0; }));
  }
  std::string Command(const std::string& word) { return mDir.Join("Veltrane.exe") + " -" + word; }
};

TEST_F(OleTasks, RegisterRunsTheProductAfterItsInstallation) {
  AddProduct();
  const std::string log = Task("register", "", 1);
  EXPECT_EQ(Noted(), "-install\r\n");
  const std::string head =
      kRegisteringText + ("OLE Registration command: " + Command("install") + " = Success ");
  ASSERT_EQ(log.substr(0, head.size()), head);
  EXPECT_GT(atoi(log.substr(head.size()).c_str()), 32);
  WaitForProduct();
}

TEST_F(OleTasks, RegisterDoesNothingBeforeTheCopy) {
  AddProduct();
  EXPECT_EQ(Task("register", "", 0), "");
  EXPECT_FALSE(mDir.Has("Veltrane.exe.ran"));
}

TEST_F(OleTasks, RegisterRunsTheProductBeforeItsRemovalAndWaits) {
  AddProduct();
  ::Run().install = false;
  EXPECT_EQ(Task("register", "", 1), "");
  const DWORD start = GetTickCount();
  const std::string log = Task("register", "", 0);
  EXPECT_GE(GetTickCount() - start, 3990u);
  EXPECT_EQ(Noted(), "-remove\r\n");
  const std::string head =
      kRegisteringText + ("OLE Registration command: " + Command("remove") + " = Success ");
  ASSERT_EQ(log.substr(0, head.size()), head);
  WaitForProduct();
}

TEST_F(OleTasks, RegisterReportsAMissingProgramOfAnInstallation) {
  EXPECT_EQ(Task("register", "", 1),
            kRegisteringText + ("OLE Registration command: " + Command("install") + " = Fail: Error =  2\n") +
                "Veltrane ne peut pas effectuer son enregistrement OLE. \nVeuillez contacter Quorvale.\n\n");
}

TEST_F(OleTasks, RegisterShowsTheFailure) {
  ::Run().setupFlags = 0;
  Answerer answerer("Erreur de Installation de Veltrane 6.0c", [](HWND box) { Press(box, IDOK); });
  Task("register", "", 1);
}

TEST_F(OleTasks, RegisterReportsAMissingFolder) {
  AppSetVariable("ProgDir", mDir.Join("gone").c_str());
  const std::string log = Task("register", "", 1);
  EXPECT_NE(log.find("\\gone\\Veltrane.exe -install = Fail: Error =  "), std::string::npos) << log;
}

TEST_F(OleTasks, RegisterReportsAProgramThatDoesNotRun) {
  mDir.Write("Veltrane.exe", "no program");
  const std::string log = Task("register", "", 1);
  EXPECT_NE(log.find("Veltrane.exe -install = Fail: Error =  "), std::string::npos) << log;
  EXPECT_NE(log.find("ne peut pas effectuer son enregistrement OLE"), std::string::npos) << log;
}

TEST_F(OleTasks, UnregisteringAProgramThatIsGoneSucceedsAtOnce) {
  ::Run().install = false;
  const DWORD start = GetTickCount();
  const std::string log = Task("register", "", 0);
  EXPECT_LT(GetTickCount() - start, 3900u);
  EXPECT_EQ(log, kRegisteringText + ("OLE Registration command: " + Command("remove") + " = Success 2\n"));
}

TEST_F(OleTasks, UnregisteringInAFolderThatIsGoneSucceeds) {
  ::Run().install = false;
  AppSetVariable("ProgDir", mDir.Join("gone").c_str());
  const std::string log = Task("register", "", 0);
  EXPECT_NE(log.find("Veltrane.exe -remove = Success "), std::string::npos) << log;
  EXPECT_EQ(log.find("enregistrement"), std::string::npos) << log;
}

TEST_F(OleTasks, RegisterNeedsAPass) {
  AssertRecorder rec;
  EXPECT_EQ(Task("register", "", -1), "");
  EXPECT_EQ(rec.Only(), "data");
}

TEST_F(OleTasks, RegisterNeedsNoArguments) {
  int32_t pass = 1;
  EXPECT_EQ(TaskDispatch("$register", nullptr, &pass), 1);
}

TEST_F(OleTasks, AllAutoConvertsTakesOverWhatMayBeTakenOver) {
  AddServer("Equation.3", kClassA, "a");
  AddServer("Equation.KVRX5", kClassB, "b");
  AddServer("Equation.KVRX7", kClassC, "newer");
  EXPECT_EQ(Task("set_all_autoconverts", "True", 1), "");
  EXPECT_EQ(ConvertsTo(kClassA), "");
  EXPECT_EQ(Task("set_all_autoconverts", "True", 0), "");
  EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
  EXPECT_EQ(ConvertsTo(kClassB), kOwnClass);
  EXPECT_EQ(ConvertsTo(kClassC), "");
}

TEST_F(OleTasks, AllAutoConvertsTurnsOffWithFalseOnly) {
  AddServer("Equation.3", kClassA, "a");
  Task("set_all_autoconverts", "", 0);
  EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
  Task("set_all_autoconverts", "fALSE", 0);
  EXPECT_EQ(ConvertsTo(kClassA), kNoClass);
  Task("set_all_autoconverts", "No", 0);
  EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
}

TEST_F(OleTasks, OneAutoConvertSetsTheNamedServer) {
  AddServer("Equation.3", kClassA, "a");
  AddServer("Equation.2", kClassB, "b");
  EXPECT_EQ(Task("set_one_autoconvert", "equation.3", 1), "");
  EXPECT_EQ(ConvertsTo(kClassA), "");
  EXPECT_EQ(Task("set_one_autoconvert", "equation.3", 0), "");
  EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
  EXPECT_EQ(ConvertsTo(kClassB), "");
  EXPECT_EQ(Task("set_one_autoconvert", "\"Equation.3\",False", 0), "");
  EXPECT_EQ(ConvertsTo(kClassA), kNoClass);
  Task("set_one_autoconvert", "\"Equation.3\" , True", 0);
  EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
}

TEST_F(OleTasks, OneAutoConvertSetsANewerReleaseToo) {
  AddServer("Equation.KVRX7", kClassA, "newer");
  Task("set_one_autoconvert", "Equation.KVRX7,True", 0);
  EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
}

TEST_F(OleTasks, OneAutoConvertOfAnUnknownServerDoesNothing) {
  AddServer("Equation.3", kClassA, "a");
  EXPECT_EQ(Task("set_one_autoconvert", "Equation.9", 0), "");
  EXPECT_EQ(ConvertsTo(kClassA), "");
}

TEST_F(OleTasks, OneAutoConvertNeedsAServer) {
  EXPECT_EQ(Task("set_one_autoconvert", "", 0), Unknown("set_one_autoconvert"));
}

TEST_F(OleTasks, ManagerWithAnotherWordIsLogged) {
  EXPECT_EQ(Task("run_ole_mgr", "Maybe", 1), Unknown("run_ole_mgr"));
  EXPECT_EQ(Task("run_ole_mgr", "", 1), Unknown("run_ole_mgr"));
  EXPECT_EQ(Task("run_ole_mgr", "Maybe", 0), "");
}

TEST_F(OleTasks, SilentManagerShowsNothing) {
  const std::string text =
      "Modification des donn\xe9"
      "es OLE\n";
  EXPECT_EQ(Task("run_ole_mgr", "True", 1), text);
  EXPECT_EQ(Task("run_ole_mgr", "\"false\"", 1), text);
  EXPECT_EQ(VisibleDialogs(), 0);
}

TEST_F(OleTasks, ManagerOpensForBothWords) {
  ::Run().setupFlags = 0;
  for (const char* word : {"True", "FALSE"}) {
    Answerer answerer("Gestionnaire de conversion", [](HWND dialog) { Press(dialog, IDCANCEL); });
    EXPECT_EQ(Task("run_ole_mgr", word, 1),
              "Modification des donn\xe9"
              "es OLE\n");
  }
}

TEST_F(OleTasks, PassRulesAskForAPass) {
  for (const char* task : {"set_all_autoconverts", "set_one_autoconvert", "run_ole_mgr", "convert_pref"}) {
    AssertRecorder rec;
    EXPECT_EQ(Task(task, "True", -1), "");
    EXPECT_EQ(rec.Only(), "data") << task;
  }
}

TEST_F(OleTasks, TasksWithArgumentsAskForThem) {
  for (const char* task : {"set_all_autoconverts", "set_one_autoconvert", "run_ole_mgr"}) {
    AssertRecorder rec;
    int32_t pass = std::string(task) == "run_ole_mgr" ? 1 : 0;
    EXPECT_EQ(TaskDispatch((std::string("$") + task).c_str(), nullptr, &pass), 1);
    EXPECT_EQ(rec.Only(), "args") << task;
  }
}

}  // namespace
