#include "script/fullpath.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/fs.h"
#include "support/temp_dir.h"

namespace {

class FullPathTest : public testing::Test {
 protected:
  std::string Short(const std::string& path) const {
    char text[MAX_PATH] = "";
    EXPECT_GT(GetShortPathNameA(path.c_str(), text, MAX_PATH), 0u) << path;
    EXPECT_STRNE(text, path.c_str()) << "no short name";
    return text;
  }

  TempDir mDir;
  std::string mFolder = mDir.MakeFolder("a long folder name");
};

TEST_F(FullPathTest, ShortNamesBecomeLongOnes) {
  EXPECT_EQ(FullLongPath(Short(mFolder).c_str()), FullLongPath(mFolder.c_str()));
}

TEST_F(FullPathTest, ShortNameThatIsGoneStaysAsItIs) {
  const std::string gone = mDir.Join("GONE~1.TXT");
  EXPECT_EQ(FullLongPath(gone.c_str()), gone.c_str());
}

TEST_F(FullPathTest, RelativePathsAreThoseOfTheCurrentFolder) {
  Str former;
  ASSERT_TRUE(FS::GetCurDir(former));
  ASSERT_TRUE(FS::SetCurDir(mDir.Path().c_str()));
  EXPECT_TRUE(IsSamePath("a long folder name\\x", (mFolder + "\\x").c_str()));
  EXPECT_TRUE(IsSamePath(".\\a long folder name\\..\\x", mDir.Join("x").c_str()));
  EXPECT_TRUE(FS::SetCurDir(former));
}

TEST_F(FullPathTest, SamePathHasManySpellings) {
  EXPECT_TRUE(IsSamePath(mFolder.c_str(), Short(mFolder).c_str()));
  EXPECT_TRUE(IsSamePath(mFolder.c_str(), mDir.Join("A LONG Folder Name").c_str()));
  EXPECT_TRUE(IsSamePath(mDir.Join("x\\..\\y").c_str(), mDir.Join("y").c_str()));
  EXPECT_TRUE(IsSamePath((mFolder + "\\").c_str(), mFolder.c_str()));
}

TEST_F(FullPathTest, OtherPathsAreNotTheSame) {
  EXPECT_FALSE(IsSamePath(mFolder.c_str(), mDir.Path().c_str()));
  EXPECT_FALSE(IsSamePath(mFolder.c_str(), (mFolder + "x").c_str()));
}

TEST_F(FullPathTest, FolderHoldsItselfAndWhatLiesBelow) {
  EXPECT_TRUE(HoldsPath(mFolder.c_str(), mFolder.c_str()));
  EXPECT_TRUE(HoldsPath((mFolder + "\\").c_str(), mFolder.c_str()));
  EXPECT_TRUE(HoldsPath(mFolder.c_str(), (mFolder + "\\x\\y").c_str()));
  EXPECT_TRUE(HoldsPath(Short(mFolder).c_str(), (mFolder + "\\x").c_str()));
}

TEST_F(FullPathTest, FolderDoesNotHoldItsNeighboursAndParents) {
  EXPECT_FALSE(HoldsPath(mFolder.c_str(), (mFolder + "x").c_str()));
  EXPECT_FALSE(HoldsPath((mFolder + "\\x").c_str(), mFolder.c_str()));
}

}  // namespace
