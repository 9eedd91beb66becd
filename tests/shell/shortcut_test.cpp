// Shell links and program groups: what is written is read back by another program.
#include "shell/shortcut.h"

#include <windows.h>
#include <shellapi.h>
#include <shlobj.h>

#include "platform/folders.h"
#include "support/process.h"
#include "tasks/infproc.h"
#include "ui/answerer.h"
#include "ui/ui_fixture.h"

namespace {

constexpr char kGroup[] = "Veltrane Test \xe9";
constexpr char kLongName[] = "Veltrane Test of long names";

class ShortcutTest : public UiTest {
 public:
  // The shell keeps what it opens at the first link and at the first folder.
  static void SetUpTestSuite() {
    TempDir dir;
    LinkRecord link;
    link.desc = link.pathname = "C:\\a.exe";
    static_cast<void>(CreateLinkFile(link, dir.Join("a.lnk").c_str()));
    Str folder;
    static_cast<void>(GetShortcutFolder(folder));
    DeleteByShell(dir.MakeFolder("sub"));
  }

 protected:
  void SetUp() override {
    UiTest::SetUp();
    ResetLinks();
    Str folder;
    ASSERT_TRUE(GetShortcutFolder(folder));
    mPrograms = folder.Chars();
    ASSERT_FALSE(mPrograms.empty());
    for (const char* name : {kGroup, "Veltrane", kLongName, "VtSingle.lnk"})
      ASSERT_FALSE(PathExists(mPrograms + "\\" + name)) << "left by another test: " << name;
    static_cast<void>(Log());
  }
  void TearDown() override {
    for (const char* name : {kGroup, "Veltrane", kLongName, "VtSub"}) DeleteTree(mPrograms + "\\" + name);
    DeleteFileA((mPrograms + "\\VtSingle.lnk").c_str());
    ResetLinks();
    UiTest::TearDown();
  }

  std::string Group(const std::string& name = "") const {
    return mPrograms + "\\" + kGroup + (name.empty() ? "" : "\\" + name);
  }
  std::string Task(const std::string& name, const std::string& args, int32_t pass = 1) {
    EXPECT_EQ(TaskDispatch(("$" + name).c_str(), args.c_str(), pass < 0 ? nullptr : &pass), 1);
    return Log();
  }
  // What another program reads from a link.
  static std::string Read(const std::string& path) {
    const ProcessResult result = RunProcess(Quoted(HelperPath("read_link.exe")) + " " + Quoted(path));
    EXPECT_EQ(result.exitCode, 0u) << path;
    std::string text;
    for (const char ch : result.output)
      if (ch != '\r') text += ch;
    return text;
  }
  static std::string LinkText(const std::string& path, const std::string& description,
                              const std::string& arguments, const std::string& icon) {
    return "path: " + path + "\ndescription: " + description + "\narguments: " + arguments +
           "\nicon: " + icon + "\nfolder: \nhotkey: 0\n";
  }
  // The log of a group's creation, without the line that the status text writes.
  static std::string WithoutFirstLine(const std::string& log) { return log.substr(log.find('\n') + 1); }
  std::string Success() const { return "Successfully created program group folder, " + Group() + ".\n"; }

  std::string mPrograms;

 private:
  static void ResetLinks() {
    // Ends what a former test gathered: a refused group starts the gathering anew.
    CreateProgramGroup("");
  }
  static void DeleteByShell(const std::string& folder) {
    std::string list = folder + '\0';
    SHFILEOPSTRUCTA operation = {};
    operation.wFunc = FO_DELETE;
    operation.pFrom = list.c_str();
    operation.fFlags = FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOERRORUI;
    EXPECT_EQ(SHFileOperationA(&operation), 0);
  }
};

TEST_F(ShortcutTest, ProgramsFolderIsThatOfAllUsers) {
  char path[MAX_PATH] = "";
  ASSERT_TRUE(SHGetSpecialFolderPathA(nullptr, path, CSIDL_COMMON_PROGRAMS, FALSE));
  EXPECT_EQ(mPrograms, path);
}

TEST_F(ShortcutTest, GroupIsMadeWithItsLinks) {
  EXPECT_EQ(Task("add_icon",
                 "Editeur,Ouvre l'\xe9"
                 "diteur,C:\\vt\\Veltrane.exe,-x \"a b\",C:\\vt\\icons.dll,-3"),
            "");
  EXPECT_EQ(Task("add_icon", "Aide,Aide de Veltrane,C:\\vt\\Veltrane.hlp"), "");
  EXPECT_FALSE(PathExists(Group()));
  const std::string log = Task("add_icon_group", kGroup);
  EXPECT_EQ(WithoutFirstLine(log), Success());
  EXPECT_NE(log.find(kGroup), std::string::npos) << log;
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>({"Aide.lnk", "Editeur.lnk"}));
  EXPECT_EQ(Read(Group("Editeur.lnk")), LinkText("C:\\vt\\Veltrane.exe",
                                                 "Ouvre l'\xe9"
                                                 "diteur",
                                                 "-x \"a b\"", "C:\\vt\\icons.dll,-3"));
  EXPECT_EQ(Read(Group("Aide.lnk")), LinkText("C:\\vt\\Veltrane.hlp", "Aide de Veltrane", "", ",0"));
}

TEST_F(ShortcutTest, EachFieldIsExpandedByItself) {
  AppSetVariable("ProgDir", "C:\\vt,1");
  AppSetVariable("Icon", "5");
  Task("add_icon", "<AppName>,<AppName> <MajVersion>,<ProgDir>\\a.exe,<ProgDir>,<ProgDir>\\i.dll,<Icon>");
  Task("add_icon_group", kGroup);
  EXPECT_EQ(Read(Group("Veltrane.lnk")),
            LinkText("C:\\vt,1\\a.exe", "Veltrane 6", "C:\\vt,1", "C:\\vt,1\\i.dll,5"));
}

TEST_F(ShortcutTest, ABlankFieldLeavesItOut) {
  Task("add_icon", "a,b,C:\\c.exe, ,C:\\i.dll,2");
  Task("add_icon", "d,e,C:\\f.exe,-x, ,2");
  Task("add_icon_group", kGroup);
  EXPECT_EQ(Read(Group("a.lnk")), LinkText("C:\\c.exe", "b", "", "C:\\i.dll,2"));
  EXPECT_EQ(Read(Group("d.lnk")), LinkText("C:\\f.exe", "e", "-x", ",0"));
}

TEST_F(ShortcutTest, AnIconNumberThatIsNoneIsZero) {
  Task("add_icon", "a,b,C:\\c.exe,-x,C:\\i.dll,abc");
  Task("add_icon", "d,b,C:\\c.exe,-x,C:\\i.dll");
  Task("add_icon_group", kGroup);
  EXPECT_EQ(Read(Group("a.lnk")), LinkText("C:\\c.exe", "b", "-x", "C:\\i.dll,0"));
  EXPECT_EQ(Read(Group("d.lnk")), LinkText("C:\\c.exe", "b", "-x", "C:\\i.dll,0"));
}

TEST_F(ShortcutTest, GroupWithoutLinksIsAnEmptyFolder) {
  EXPECT_EQ(WithoutFirstLine(Task("add_icon_group", kGroup)), Success());
  EXPECT_TRUE(IsFolder(Group()));
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>());
}

TEST_F(ShortcutTest, TheNextGroupStartsWithoutLinks) {
  Task("add_icon", "a,b,C:\\c.exe");
  Task("add_icon_group", kGroup);
  Task("add_icon_group", kLongName);
  EXPECT_EQ(NamesIn(mPrograms + "\\" + kLongName), std::vector<std::string>());
}

TEST_F(ShortcutTest, ALinkThatFailsIsLoggedAndTheNextIsMade) {
  const std::string target = "C:\\" + std::string(260, 'x');
  Task("add_icon", "a,a description," + target + ",-x,C:\\i.dll,7");
  Task("add_icon", "b,description,C:\\c.exe");
  EXPECT_EQ(WithoutFirstLine(Task("add_icon_group", kGroup)),
            Success() + "    Installation de Veltrane 6.0c couldn't create the following link file: " +
                Group("a.lnk") + ".\n      desc:      a description\n      pathname:\t" + target +
                "\n      args:      -x\n      iconPath:  C:\\i.dll\n      iconIndex: 7\n");
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>({"b.lnk"}));
}

TEST_F(ShortcutTest, AFailureWithoutIconSaysSo) {
  Task("add_icon", "no\\such folder,d,C:\\c.exe");
  EXPECT_EQ(
      WithoutFirstLine(Task("add_icon_group", kGroup)),
      Success() + "    Installation de Veltrane 6.0c couldn't create the following link file: " +
          Group("no\\such folder.lnk") +
          ".\n      desc:      d\n      pathname:\tC:\\c.exe\n      args:      \n      iconPath:  <none>\n"
          "      iconIndex: 0\n");
}

TEST_F(ShortcutTest, TargetsAreTakenUpTo259Characters) {
  const std::string target = "C:\\" + std::string(256, 'x');
  Task("add_icon", "a,b," + target);
  EXPECT_EQ(WithoutFirstLine(Task("add_icon_group", kGroup)), Success());
  EXPECT_EQ(Read(Group("a.lnk")), LinkText(target, "b", "", ",0"));
}

TEST_F(ShortcutTest, PathsAreRefusedFrom260Characters) {
  const std::string text(260, 'x');
  for (const std::string& args : {text + ",b,C:\\c.exe", "a,b," + text, "a,b,C:\\c.exe,-x," + text}) {
    Task("add_icon", args);
    EXPECT_NE(Task("add_icon_group", kGroup).find("couldn't create the following link file"),
              std::string::npos);
  }
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>());
}

TEST_F(ShortcutTest, DescriptionAndArgumentsAreTakenUpTo259Characters) {
  const std::string text(259, 'x');
  Task("add_icon", "a," + text + ",C:\\c.exe," + text);
  Task("add_icon_group", kGroup);
  EXPECT_EQ(Read(Group("a.lnk")), LinkText("C:\\c.exe", text, text, ",0"));
}

TEST_F(ShortcutTest, ALongerDescriptionIsCutAndAsserted) {
  AssertRecorder rec;
  Task("add_icon", "a," + std::string(260, 'x') + ",C:\\c.exe");
  EXPECT_EQ(rec.Only(), "Str::Length(text) <= kMaxLinkText");
  Task("add_icon_group", kGroup);
  EXPECT_EQ(Read(Group("a.lnk")), LinkText("C:\\c.exe", std::string(259, 'x'), "", ",0"));
}

TEST_F(ShortcutTest, LongerArgumentsOfASingleLinkAreCutAndAsserted) {
  AssertRecorder rec;
  Task("create_link", "VtSingle,d,C:\\c.exe," + std::string(300, 'x'));
  EXPECT_EQ(rec.Only(), "Str::Length(text) <= kMaxLinkText");
  EXPECT_EQ(Read(mPrograms + "\\VtSingle.lnk"), LinkText("C:\\c.exe", "d", std::string(259, 'x'), ",0"));
}

TEST_F(ShortcutTest, ALinkPathOf260CharactersIsRefused) {
  Task("add_icon", std::string(259, 'x') + ",b,C:\\c.exe");
  EXPECT_NE(Task("add_icon_group", kGroup).find("couldn't create the following link file"),
            std::string::npos);
}

TEST_F(ShortcutTest, LinksNeedATargetAndADescription) {
  LinkRecord link;
  {
    AssertRecorder rec;
    EXPECT_FALSE(CreateLinkFile(link, mDir.Join("a.lnk").c_str()));
    EXPECT_EQ(rec.Texts(),
              std::vector<std::string>({"Str::Length(linkRec.pathname)", "Str::Length(linkRec.desc)"}));
  }
  link.pathname = "C:\\a.exe";
  AssertRecorder rec;
  EXPECT_FALSE(CreateLinkFile(link, mDir.Join("a.lnk").c_str()));
  EXPECT_EQ(rec.Only(), "Str::Length(linkRec.desc)");
  EXPECT_FALSE(mDir.Has("a.lnk"));
}

TEST_F(ShortcutTest, AMissingTargetFailsInAGroupToo) {
  Task("add_icon", "a");
  AssertRecorder rec;
  EXPECT_NE(Task("add_icon_group", kGroup).find("couldn't create the following link file"),
            std::string::npos);
  EXPECT_EQ(rec.Texts().size(), 2u);
}

TEST_F(ShortcutTest, ALinkWithoutANameStaysInItsGroup) {
  Task("add_icon", " ,d,C:\\a.exe");
  Task("add_icon_group", kGroup);
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>{".lnk"});
  EXPECT_FALSE(PathExists(Group() + ".lnk"));
}

TEST_F(ShortcutTest, AReadOnlyLinkIsReplaced) {
  LinkRecord link;
  link.desc = "old";
  link.pathname = "C:\\a.exe";
  const std::string path = mDir.Join("a.lnk");
  ASSERT_TRUE(CreateLinkFile(link, path.c_str()));
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY);
  link.desc = "new";
  ASSERT_TRUE(CreateLinkFile(link, path.c_str()));
  EXPECT_EQ(Read(path), LinkText("C:\\a.exe", "new", "", ",0"));
}

TEST_F(ShortcutTest, ALinkInAMissingFolderFails) {
  LinkRecord link;
  link.desc = "d";
  link.pathname = "C:\\a.exe";
  EXPECT_FALSE(CreateLinkFile(link, mDir.Join("no folder\\a.lnk").c_str()));
}

TEST_F(ShortcutTest, GroupThatCannotBeMadeIsAnErrorAndLosesItsLinks) {
  WriteWholeFile(Group(), "a file");
  Task("add_icon", "a,b,C:\\c.exe");
  EXPECT_EQ(WithoutFirstLine(Task("add_icon_group", kGroup)),
            "##ERROR: Couldn't create program group folder, " + Group() + ".\n");
  ASSERT_TRUE(DeleteFileA(Group().c_str()));
  Task("add_icon_group", kGroup);
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>());
}

TEST_F(ShortcutTest, GroupThatExistsIsAddedTo) {
  Task("add_icon", "a,b,C:\\c.exe");
  Task("add_icon_group", kGroup);
  Task("add_icon", "b,b,C:\\c.exe");
  EXPECT_EQ(WithoutFirstLine(Task("add_icon_group", kGroup)), Success());
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>({"a.lnk", "b.lnk"}));
}

TEST_F(ShortcutTest, ReplacingAnOldVersionRemovesItsGroup) {
  CreateDirectoryA((mPrograms + "\\Veltrane").c_str(), nullptr);
  WriteWholeFile(mPrograms + "\\Veltrane\\old.lnk", "old");
  ::Run().oldVersionChoice = kOldVersionReplace;
  EXPECT_EQ(
      Task("add_icon_group", kGroup).find("Overwriting old app. Removing old \"Veltrane\" program group.\n"),
      0u);
  EXPECT_FALSE(PathExists(mPrograms + "\\Veltrane"));
  EXPECT_TRUE(PathExists(Group()));
}

TEST_F(ShortcutTest, OtherInstallationsKeepTheOldGroup) {
  CreateDirectoryA((mPrograms + "\\Veltrane").c_str(), nullptr);
  for (const int32_t choice : {0, 1, 3}) {
    ::Run().oldVersionChoice = choice;
    EXPECT_EQ(Task("add_icon_group", kGroup).find("Overwriting"), std::string::npos);
  }
  EXPECT_TRUE(PathExists(mPrograms + "\\Veltrane"));
}

TEST_F(ShortcutTest, GroupNameIsExpanded) {
  AppSetVariable("GroupName", kGroup);
  Task("add_icon_group", "<GroupName>");
  EXPECT_TRUE(IsFolder(Group()));
}

TEST_F(ShortcutTest, EmptyingDeletesLinksOnly) {
  Task("add_icon", "a,b,C:\\c.exe");
  Task("add_icon", "B,b,C:\\c.exe");
  Task("add_icon_group", kGroup);
  SetFileAttributesA(Group("a.lnk").c_str(), FILE_ATTRIBUTE_READONLY);
  MoveFileA(Group("B.lnk").c_str(), Group("B.LNK").c_str());
  WriteWholeFile(Group("other.txt"), "stays");
  CreateDirectoryA(Group("sub.lnk").c_str(), nullptr);
  WriteWholeFile(Group("sub.lnk\\deep.lnk"), "stays");
  EXPECT_EQ(Task("empty_icon_group", kGroup),
            std::string("Suppression des anciennes ic\xf4nes ") + kGroup + "\n");
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>({"other.txt", "sub.lnk"}));
  EXPECT_TRUE(PathExists(Group("sub.lnk\\deep.lnk")));
}

TEST_F(ShortcutTest, EmptyingAMissingGroupIsLogged) {
  EXPECT_EQ(WithoutFirstLine(Task("empty_icon_group", kGroup)),
            std::string("    Failed: couldn't empty the ") + kGroup + " program group.\n");
}

TEST_F(ShortcutTest, EmptyingAnEmptyGroupSucceeds) {
  Task("add_icon_group", kGroup);
  EXPECT_EQ(WithoutFirstLine(Task("empty_icon_group", kGroup)), "");
}

TEST_F(ShortcutTest, EmptyingALinkInUseIsLogged) {
  Task("add_icon_group", kGroup);
  WriteWholeFile(Group("a.lnk"), "a");
  WriteWholeFile(Group("b.lnk"), "b");
  ChildProcess holder(Quoted(HelperPath("hold_file.exe")) + " " + Quoted(Group("a.lnk")) + " none");
  ASSERT_TRUE(WaitUntil([&] { return holder.Output().rfind("ready", 0) == 0; }));
  EXPECT_EQ(WithoutFirstLine(Task("empty_icon_group", kGroup)),
            std::string("    Failed: couldn't empty the ") + kGroup + " program group.\n");
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>({"a.lnk"}));
}

TEST_F(ShortcutTest, RemovingDeletesAllThatIsInTheGroup) {
  Task("add_icon", "a,b,C:\\c.exe");
  Task("add_icon_group", kGroup);
  CreateDirectoryA(Group("sub").c_str(), nullptr);
  WriteWholeFile(Group("sub\\other.txt"), "goes");
  SetFileAttributesA(Group("sub\\other.txt").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(Task("remove_icon_group", kGroup),
            std::string("Suppression des anciennes ic\xf4nes ") + kGroup + "\n");
  EXPECT_FALSE(PathExists(Group()));
  EXPECT_TRUE(IsFolder(mPrograms));
}

TEST_F(ShortcutTest, RemovingAMissingGroupIsLogged) {
  EXPECT_EQ(WithoutFirstLine(Task("remove_icon_group", kGroup)),
            std::string("    Couldn't delete the ") + kGroup + " program group (maybe it didn't exist).\n");
}

TEST_F(ShortcutTest, RemovingAFileIsRefused) {
  WriteWholeFile(Group(), "a file");
  EXPECT_NE(Task("remove_icon_group", kGroup).find("    Couldn't delete the "), std::string::npos);
  EXPECT_TRUE(DeleteFileA(Group().c_str()));
}

TEST_F(ShortcutTest, NamesThatLeaveTheProgramsFolderAreRefused) {
  WriteWholeFile(mPrograms + "\\VtSingle.lnk", "stays");
  for (const char* name : {"", "..", "a\\..", "..\\Programs", "C:\\windows", "C:x", "\\windows", ".", ". .",
                           ".\\", ".\\.", "\\\\server\\share", "a/../..", "*", "?"}) {
    for (const char* task : {"add_icon_group", "empty_icon_group", "remove_icon_group"}) Task(task, name);
    EXPECT_TRUE(PathExists(mPrograms + "\\VtSingle.lnk")) << name;
  }
  EXPECT_EQ(WithoutFirstLine(Task("remove_icon_group", "..")),
            "##ERROR:     \"..\" is no name of a program group.\n");
}

TEST_F(ShortcutTest, DotsInsideANameAreNoWayOut) {
  EXPECT_EQ(WithoutFirstLine(Task("add_icon_group", std::string(kGroup) + "\\1..2")),
            "Successfully created program group folder, " + Group("1..2") + ".\n");
}

TEST_F(ShortcutTest, ARefusedGroupLosesItsLinks) {
  Task("add_icon", "a,b,C:\\c.exe");
  Task("add_icon_group", "..\\x");
  Task("add_icon_group", kGroup);
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>());
}

TEST_F(ShortcutTest, SingleLinkGoesIntoTheProgramsFolder) {
  EXPECT_EQ(Task("create_link", "VtSingle,d,C:\\a.exe,-x,C:\\i.dll,3"), "");
  EXPECT_EQ(Read(mPrograms + "\\VtSingle.lnk"), LinkText("C:\\a.exe", "d", "-x", "C:\\i.dll,3"));
}

TEST_F(ShortcutTest, SingleLinkKeepsItsExtension) {
  EXPECT_EQ(Task("create_link", "VtSingle.LNK,d,C:\\a.exe"), "");
  EXPECT_TRUE(PathExists(mPrograms + "\\VtSingle.lnk"));
  EXPECT_FALSE(PathExists(mPrograms + "\\VtSingle.LNK.lnk"));
}

TEST_F(ShortcutTest, SingleLinkAtAFullPathMakesItsFolder) {
  AppSetVariable("Here", mDir.Path().c_str());
  EXPECT_EQ(Task("create_link", "<Here>\\new\\sub\\Mon lien 1.0,d,C:\\a.exe"), "");
  EXPECT_EQ(Read(mDir.Join("new\\sub\\Mon lien 1.0.lnk")), LinkText("C:\\a.exe", "d", "", ",0"));
}

TEST_F(ShortcutTest, SingleLinkInASubfolderOfThePrograms) {
  EXPECT_EQ(Task("create_link", "VtSub\\a,d,C:\\a.exe"), "");
  EXPECT_TRUE(PathExists(mPrograms + "\\VtSub\\a.lnk"));
}

TEST_F(ShortcutTest, SingleLinkFailuresAreLogged) {
  WriteWholeFile(mDir.Join("file"), "a file");
  EXPECT_EQ(Task("create_link", mDir.Join("file\\a") + ",d,C:\\a.exe"),
            "    Couldn't create link file " + mDir.Join("file\\a.lnk") + ".\n");
  const std::string target = "C:\\" + std::string(300, 'x');
  EXPECT_EQ(Task("create_link", mDir.Join("a.lnk") + ",d," + target),
            "    Couldn't create link file " + mDir.Join("a.lnk") + ".\n");
  EXPECT_EQ(Task("create_link", " ,d,C:\\a.exe"), "    Couldn't create link file .lnk.\n");
  AssertRecorder rec;
  EXPECT_EQ(Task("create_link", mDir.Join("a")),
            "    Couldn't create link file " + mDir.Join("a.lnk") + ".\n");
  EXPECT_EQ(rec.Texts().size(), 2u);
}

TEST_F(ShortcutTest, LinksWithoutAnyFieldAreLogged) {
  for (const char* task : {"add_icon", "create_link"})
    EXPECT_EQ(Task(task, ""),
              std::string("The arguments for the task ") + task + " in Setup.inf are unknown.\n");
}

TEST_F(ShortcutTest, TasksActInPass1Only) {
  EXPECT_EQ(Task("add_icon", "a,b,C:\\c.exe", 0), "");
  EXPECT_EQ(Task("add_icon_group", kGroup, 0), "");
  EXPECT_FALSE(PathExists(Group()));
  Task("add_icon_group", kGroup);
  EXPECT_EQ(NamesIn(Group()), std::vector<std::string>());
  WriteWholeFile(Group("a.lnk"), "a");
  EXPECT_EQ(Task("empty_icon_group", kGroup, 0), "");
  EXPECT_EQ(Task("remove_icon_group", kGroup, 0), "");
  EXPECT_EQ(Task("create_link", "VtSingle,d,C:\\a.exe", 0), "");
  EXPECT_TRUE(PathExists(Group("a.lnk")));
  EXPECT_FALSE(PathExists(mPrograms + "\\VtSingle.lnk"));
}

TEST_F(ShortcutTest, TasksNeedAPassAndArguments) {
  for (const char* task :
       {"add_icon", "add_icon_group", "empty_icon_group", "remove_icon_group", "create_link"}) {
    {
      AssertRecorder rec;
      EXPECT_EQ(Task(task, "a", -1), "");
      EXPECT_EQ(rec.Only(), "data") << task;
    }
    AssertRecorder rec;
    int32_t pass = 1;
    EXPECT_EQ(TaskDispatch((std::string("$") + task).c_str(), nullptr, &pass), 1);
    EXPECT_EQ(rec.Only(), "args") << task;
  }
}

}  // namespace
