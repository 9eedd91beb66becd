#include "installer/vtinstal.h"

#include <gtest/gtest.h>

#include <string>

#include "base/runstate.h"
#include "messages/app_vars.h"
#include "script/files.h"
#include "script/setupinf.h"
#include "support/registry_guard.h"
#include "support/temp_dir.h"

namespace {

TEST(ModeSectionTest, FollowsTheInstallAndWorkstationFlags) {
  EXPECT_STREQ(ModeSection(), "easy_install");
  ::Run().setupFlags = kWorkstation;
  EXPECT_STREQ(ModeSection(), "wkstation_install");
  ::Run().install = false;
  EXPECT_STREQ(ModeSection(), "wkstation_remove");
  ::Run().setupFlags = 0;
  EXPECT_STREQ(ModeSection(), "remove");
}

class SectionPass : public AppVarsTest {
 protected:
  SectionPass() : mGuard(HKEY_CURRENT_USER, "Software\\VeltraneTest") {}
  void SetUp() override {
    AppVarsTest::SetUp();
    AppSetVariable("InstallFromDir", mRoot.Path().c_str());
    mRoot.Write("here.txt", "x");
    const std::string path = mRoot.Write("setup.inf",
                                         "[main]\r\nX=1\r\nfile\r\n"
                                         "+HKEY_CURRENT_USER\\Software\\VeltraneTest\\Value=yes\r\n"
                                         "$file_sys=delete,<InstallFromDir>\\here.txt\r\n"
                                         "[files]\r\nfile=1,a.txt,C:\\dest\\a.txt,5\r\n");
    ASSERT_TRUE(PrepareFileList());
    ASSERT_EQ(Script().Open(path.c_str(), true), kInfOK);
  }
  void TearDown() override {
    Script().Close();
    static_cast<void>(PrepareFileList());
    AppVarsTest::TearDown();
  }
  bool HasValue() const { return RegistryString(HKEY_CURRENT_USER, mGuard.Path(), "Value").has_value(); }

  RegistryGuard mGuard;
  TempDir mRoot;
};

TEST_F(SectionPass, CollectingPass) {
  EXPECT_TRUE(RunSectionPass("main", 0, kFileLines | kTaskLines | kVariableLines));
  EXPECT_EQ(GetNumFiles(), 1);
  EXPECT_TRUE(AppVariableExists("X"));
  EXPECT_FALSE(HasValue());
  EXPECT_FALSE(mRoot.Has("here.txt"));  // the task acts in the first pass
}

TEST_F(SectionPass, ExecutingPass) {
  EXPECT_TRUE(RunSectionPass("main", 1, kTaskLines | kRegistryLines | kVariableLines));
  EXPECT_EQ(GetNumFiles(), 0);
  EXPECT_TRUE(AppVariableExists("X"));
  EXPECT_TRUE(HasValue());
  EXPECT_TRUE(mRoot.Has("here.txt"));
}

TEST_F(SectionPass, MissingSectionFails) { EXPECT_FALSE(RunSectionPass("none", 0, kVariableLines)); }

}  // namespace
