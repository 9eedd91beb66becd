#include "script/leftovers.h"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<std::string>;

TEST(Leftovers, FoldersComeBackWithWhatLayThere) {
  const LeftoverNotes notes =
      ParseLeftoverNotes(FolderNote("C:\\one", {}) + FolderNote("C:\\two", {"ver1.tmp", "VER2.TMP"}) +
                         FolderNote("\\\\server\\share", {}));
  ASSERT_EQ(notes.folders.size(), 3u);
  EXPECT_EQ(notes.folders[0].dir, "C:\\one");
  EXPECT_TRUE(notes.folders[0].keep.empty());
  EXPECT_EQ(notes.folders[1].dir, "C:\\two");
  EXPECT_EQ(notes.folders[1].keep, (Names{"ver1.tmp", "VER2.TMP"}));
  EXPECT_TRUE(notes.folders[2].keep.empty());
}

TEST(Leftovers, AForgottenFileIsNoLeftover) {
  const LeftoverNotes notes = ParseLeftoverNotes(FileNote("C:\\~a") + FileNote("C:\\~b") +
                                                 ForgetNote("C:\\~a") + ForgetNote("C:\\~c"));
  EXPECT_EQ(notes.files, (Names{"C:\\~b"}));
}

TEST(Leftovers, AnUnfinishedLineDoesNotCount) {
  const std::string text = FileNote("C:\\~a") + FolderNote("C:\\one", {"ver1.tmp"});
  const LeftoverNotes notes = ParseLeftoverNotes(std::string_view(text).substr(0, text.size() - 1));
  EXPECT_EQ(notes.files, (Names{"C:\\~a"}));
  EXPECT_TRUE(notes.folders.empty());
}

TEST(Leftovers, RelativePathsAndUnknownLinesAreSkipped) {
  const LeftoverNotes notes = ParseLeftoverNotes("D one\nF ~a\nQ C:\\x\nF\nF \n\n\nFC:\\~a\nF C:\\~b\n");
  EXPECT_TRUE(notes.folders.empty());
  EXPECT_EQ(notes.files, (Names{"C:\\~b"}));
  EXPECT_TRUE(ParseLeftoverNotes("").files.empty());
}

TEST(Leftovers, NamesOfTheInstallFunction) {
  for (const char* name : {"ver1.tmp", "verABCD.tmp", "VER0f9.TMP"})
    EXPECT_TRUE(IsInstallTempName(name)) << name;
  for (const char* name :
       {"ver.tmp", "ver12345.tmp", "verxyz.tmp", "version.tmp", "ver1.txt", "aver1.tmp", "", "ver1.tmp2"})
    EXPECT_FALSE(IsInstallTempName(name)) << name;
}

TEST(Leftovers, OwnTemporaryNames) {
  EXPECT_TRUE(IsOwnTempPath("C:\\d\\~a.dll", nullptr));
  EXPECT_FALSE(IsOwnTempPath("C:\\~d\\a.dll", nullptr));
  EXPECT_FALSE(IsOwnTempPath("C:\\d\\", nullptr));
  EXPECT_FALSE(IsOwnTempPath("~a", nullptr));
}

}  // namespace
