#include "script/files.h"

#include "script_fixture.h"

namespace {

class FileList : public ScriptTest {};

TEST_F(FileList, IsEmptyAtFirst) {
  EXPECT_EQ(GetNumFiles(), 0);
  EXPECT_EQ(NDisks(), 0);
  EXPECT_EQ(TotalFileSize(), 0u);
  EXPECT_EQ(FindFile("a"), -1);
}

TEST_F(FileList, CountsSizesAndDisks) {
  EXPECT_TRUE(AddFile("a", "C:\\d", "C:\\s\\a", 1, 10, false));
  EXPECT_TRUE(AddFile("b", "C:\\d", "C:\\s\\b", 3, 20, true));
  EXPECT_TRUE(AddFile("c", "C:\\d", "C:\\s\\c", 2, 30, false));
  EXPECT_EQ(GetNumFiles(), 3);
  EXPECT_EQ(NDisks(), 3);
  EXPECT_EQ(TotalFileSize(), 60u);
  EXPECT_EQ(GetFileRec(1).hidden, 1);
  EXPECT_STREQ(GetFileRec(2).srcPath, "C:\\s\\c");
}

TEST_F(FileList, SizesAddUpBeyond32Bits) {
  EXPECT_TRUE(AddFile("a", "C:\\d", "C:\\s\\a", 1, 0xFFFFFFFF, false));
  EXPECT_TRUE(AddFile("b", "C:\\d", "C:\\s\\b", 1, 0xFFFFFFFF, false));
  EXPECT_EQ(TotalFileSize(), 0x1FFFFFFFEull);
}

TEST_F(FileList, TheSameNameAndFolderInAnyCaseIsListedOnce) {
  EXPECT_TRUE(AddFile("File.TXT", "C:\\Dir", "C:\\s\\a", 1, 10, false));
  EXPECT_FALSE(AddFile("file.txt", "c:\\dIR", "C:\\s\\b", 5, 99, true));
  EXPECT_EQ(GetNumFiles(), 1);
  EXPECT_EQ(TotalFileSize(), 10u);
  EXPECT_EQ(NDisks(), 1);
}

TEST_F(FileList, AccentedNamesAreComparedWithoutCase) {
  EXPECT_TRUE(AddFile("\xe9t\xe9.txt", "C:\\d", "C:\\s\\a", 1, 10, false));
  EXPECT_FALSE(AddFile("\xc9T\xc9.TXT", "C:\\D", "C:\\s\\a", 1, 10, false));
  EXPECT_TRUE(AddFile("ete.txt", "C:\\d", "C:\\s\\a", 1, 10, false));
}

TEST_F(FileList, TheSameNameInAnotherFolderIsAnotherFile) {
  EXPECT_TRUE(AddFile("a", "C:\\one", "C:\\s\\a", 1, 10, false));
  EXPECT_TRUE(AddFile("a", "C:\\two", "C:\\s\\a", 1, 10, false));
  EXPECT_FALSE(AddFile("a", "C:\\two", "C:\\s\\a", 1, 10, false))
      << "the second of that name is a duplicate too";
  EXPECT_EQ(GetNumFiles(), 2);
}

TEST_F(FileList, FindsTheFirstOfAName) {
  AddFile("a", "C:\\one", "C:\\s\\1", 1, 1, false);
  AddFile("B", "C:\\one", "C:\\s\\2", 1, 1, false);
  AddFile("b", "C:\\two", "C:\\s\\3", 1, 1, false);
  EXPECT_EQ(FindFile("b"), 1);
  EXPECT_EQ(FindFile("A"), 0);
  EXPECT_EQ(FindFile("c"), -1);
}

TEST_F(FileList, RecordNumbersOutsideTheListAssert) {
  AddFile("a", "C:\\one", "C:\\s\\1", 1, 1, false);
  AssertRecorder recorder;
  EXPECT_STREQ(GetFileRec(-1).destName, "");
  EXPECT_STREQ(GetFileRec(1).destName, "");
  EXPECT_EQ(recorder.Texts(), (std::vector<std::string>{"recNum >= 0", "recNum < GetNumFiles()"}));
}

TEST_F(FileList, MissingTextsAssert) {
  AssertRecorder recorder;
  EXPECT_FALSE(AddFile(nullptr, "d", "s", 1, 1, false));
  EXPECT_FALSE(AddFile("n", nullptr, "s", 1, 1, false));
  EXPECT_FALSE(AddFile("n", "d", nullptr, 1, 1, false));
  EXPECT_EQ(recorder.Texts(), (std::vector<std::string>{"destName", "destDir", "srcPath"}));
  EXPECT_EQ(GetNumFiles(), 0);
}

TEST_F(FileList, PrepareEmptiesListAndTotals) {
  AddFile("a", "C:\\one", "C:\\s\\1", 4, 1, false);
  ASSERT_TRUE(PrepareFileList());
  EXPECT_EQ(GetNumFiles(), 0);
  EXPECT_EQ(NDisks(), 0);
  EXPECT_EQ(TotalFileSize(), 0u);
  EXPECT_TRUE(AddFile("a", "C:\\one", "C:\\s\\1", 4, 1, false));
}

TEST_F(FileList, ManyRecordsKeepTheirOrder) {
  for (int i = 0; i < 1000; ++i)
    ASSERT_TRUE(AddFile(std::to_string(i).c_str(), "C:\\one", "C:\\s\\1", 1, 1, false));
  for (int i = 0; i < 1000; ++i) {
    EXPECT_EQ(std::to_string(i), GetFileRec(i).destName);
    EXPECT_FALSE(AddFile(std::to_string(i).c_str(), "C:\\ONE", "C:\\s\\1", 1, 1, false));
  }
  EXPECT_EQ(GetNumFiles(), 1000);
}

}  // namespace
